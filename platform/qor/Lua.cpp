#include "platform/qor/Lua.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <stdexcept>
#include <utility>

#include <locale.h>

#include "platform/qor/Log.h"
#include "platform/qor/LuaState.h"
#include "platform/qor/Paths.h"

#include <lua.hpp>

namespace qor {

namespace {

constexpr int hookInterval = 1000;
/// A new block of this many bytes costs as much as one instruction.
constexpr size_t bytesPerInstruction = 32;
constexpr size_t mostFileBytes = size_t(16) << 20;
constexpr int fileError = LUA_ERRERR + 1;

std::mutex defaultsLock;
LuaLimits defaultLimits;

double getSeconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

double getThreadSeconds() { return getSeconds(CLOCK_THREAD_CPUTIME_ID); }

// The same for the start of a call, at most a millisecond too much: the exact time is asked of the system, which costs
// more than a short call does.
double getStartSeconds() {
    constexpr double longestGuess = 0.001;
    thread_local double exact = 0;
    thread_local double asked = -longestGuess;
    double const now = getSeconds(CLOCK_MONOTONIC);
    if (now - asked > longestGuess || now < asked) {
        exact = getThreadSeconds();
        asked = now;
    }
    return exact + (now - asked);
}

void* allocate(void* context, void* block, size_t oldSize, size_t newSize) {
    auto* const state = static_cast<LuaState*>(context);
    if (newSize == 0) {
        state->memory -= oldSize;
        std::free(block);
        return nullptr;
    }
    if (newSize > oldSize && state->depth > 0) {
        if (state->memory - oldSize + newSize > state->limits.memoryBytes) {
            state->collectNext = true;
            writeLuaPosition(state->main, 0, state->memoryPosition, sizeof state->memoryPosition);
            return nullptr;
        }
        state->remaining -= int64_t((newSize - oldSize) / bytesPerInstruction);
    }
    void* const moved = std::realloc(block, newSize);
    if (moved)
        state->memory = state->memory - oldSize + newSize;
    return moved;
}

void onInstructions(lua_State* L, lua_Debug* record) {
    LuaState* const state = LuaState::of(L);
    if (!state || state->depth == 0)
        return;
    state->remaining -= lua_gethookcount(L);
    bool const late = state->limits.seconds > 0 && getThreadSeconds() > state->deadline;
    if (!state->spent && state->remaining >= 0 && !late)
        return;
    state->spend(L);
    lua_getinfo(L, "Sl", record);
    lua_pushfstring(L, "%s:%d: %s", record->short_src, record->currentline, state->getSpentText().c_str());
    lua_error(L);
}

int onPanic(lua_State* L) {
    char const* const text = lua_tostring(L, -1);
    qor_logf("VORLEX", 64, "Lua error outside a protected call: %s", text ? text : "(no text)");
    throw std::runtime_error(text ? text : "Lua error outside a protected call");
}

bool hasPosition(char const* text) {
    for (char const* colon = std::strchr(text, ':'); colon; colon = std::strchr(colon + 1, ':')) {
        size_t const digits = std::strspn(colon + 1, "0123456789");
        if (digits > 0 && colon[1 + digits] == ':')
            return true;
    }
    return false;
}

// Message handler: makes any error a text that begins with a position.
int explainError(lua_State* L) {
    char position[128];
    writeLuaPosition(L, 1, position, sizeof position);
    if (!lua_isstring(L, 1)) {
        lua_pushfstring(L, "%s(the error is a %s value)", position, luaL_typename(L, 1));
        return 1;
    }
    if (!hasPosition(lua_tostring(L, 1)))
        lua_pushfstring(L, "%s%s", position, lua_tostring(L, 1));
    return 1;
}

// Its address is the registry key of `explainError`, which each call would else make anew.
char const explainErrorKey = 0;

void keepExplainError(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&explainErrorKey));
    lua_pushcfunction(L, explainError);
    lua_rawset(L, LUA_REGISTRYINDEX);
}

void pushExplainError(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&explainErrorKey));
    lua_rawget(L, LUA_REGISTRYINDEX);
    // A state that others have opened has none.
    if (lua_isnil(L, -1)) {
        lua_pop(L, 1);
        lua_pushcfunction(L, explainError);
    }
}

// Puts a text where a failed call left its error object.
void settleError(lua_State* L, LuaState* state, int status) {
    if (status == LUA_ERRMEM && state) {
        string text;
        text.format("%snot enough memory: the limit of %s is %zu bytes", state->memoryPosition, state->name.c_str(),
                    state->limits.memoryBytes);
        lua_pop(L, 1);
        lua_pushstring(L, text.c_str());
    } else if (status < 0) {
        // Lua catches every exception; a foreign one leaves no error object.
        lua_pop(L, 1);
        lua_pushstring(L, "a C++ exception ended the call");
    } else if (!lua_isstring(L, -1)) {
        lua_pushfstring(L, "(the error is a %s value)", luaL_typename(L, -1));
        lua_remove(L, -2);
    }
}

int toAbsolute(lua_State* L, int index) {
    return index > 0 || index <= LUA_REGISTRYINDEX ? index : lua_gettop(L) + index + 1;
}

// One level of protection: memory is capped, time runs, numbers have a point.
class Protection {
public:
    Protection(LuaState* state, bool refill) : state_(state) {
        if (!state_)
            return;
        if (state_->depth == 0) {
            if (refill && !state_->spent)
                state_->remaining = int64_t(state_->limits.instructions);
            if (std::exchange(state_->collectNext, false))
                lua_gc(state_->main, LUA_GCCOLLECT, 0);
            state_->renewTime();
            state_->memoryPosition[0] = '\0';
        }
        ++state_->depth;
    }
    ~Protection() {
        if (state_)
            --state_->depth;
    }
    Protection(Protection const&) = delete;
    Protection& operator=(Protection const&) = delete;

private:
    LuaState* state_;
    NumericLocaleGuard locale_;
};

int callProtected(lua_State* L, int arguments, int results, int handler, bool refill) {
    LuaState* const state = LuaState::of(L);
    int status = 0;
    {
        Protection const protection(state, refill);
        status = lua_pcall(L, arguments, results, handler);
    }
    // Within another call there must be room for the message, or that call ends too.
    if (status == LUA_ERRMEM && state && state->depth > 0)
        lua_gc(L, LUA_GCCOLLECT, 0);
    if (status != 0)
        settleError(L, state, status);
    return status;
}

}  // namespace

LuaState* LuaState::of(lua_State* L) {
    void* context = nullptr;
    return lua_getallocf(L, &context) == allocate ? static_cast<LuaState*>(context) : nullptr;
}

void LuaState::renewTime() { deadline = getStartSeconds() + limits.seconds; }

void LuaState::spend(lua_State* L) {
    spent = true;
    lua_sethook(L, onInstructions, LUA_MASKCOUNT, 1);
    lua_sethook(main, onInstructions, LUA_MASKCOUNT, 1);
}

string LuaState::getSpentText() const {
    string text;
    text.format("%s used up its budget of %llu instructions or %g seconds", name.c_str(),
                static_cast<unsigned long long>(limits.instructions), limits.seconds);
    return text;
}

void writeLuaPosition(lua_State* L, int level, char* buffer, size_t size) {
    buffer[0] = '\0';
    lua_Debug record;
    for (; lua_getstack(L, level, &record); ++level) {
        lua_getinfo(L, "Sl", &record);
        if (record.currentline > 0) {
            std::snprintf(buffer, size, "%s:%d: ", record.short_src, record.currentline);
            return;
        }
    }
}

int loadLuaText(lua_State* L, char const* text, size_t size, char const* chunkName) {
    if (size > 0 && text[0] == LUA_SIGNATURE[0]) {
        lua_pushfstring(L, "%s: this is bytecode, only text is loaded", chunkName + (chunkName[0] == '@'));
        return LUA_ERRSYNTAX;
    }
    int status = 0;
    LuaState* const state = LuaState::of(L);
    {
        Protection const protection(state, false);
        status = luaL_loadbuffer(L, text, size, chunkName);
    }
    if (status != 0)
        settleError(L, state, status);
    return status;
}

int loadLuaFile(lua_State* L, char const* path) {
    string content;
    string error;
    noteLuaFile(L, path);
    if (!readFile(path, content, error, mostFileBytes)) {
        lua_pushlstring(L, error.data(), error.size());
        return fileError;
    }
    if (content.starts_with("\xEF\xBB\xBF"))
        content.erase(0, 3);
    if (content.starts_with("#"))
        content.erase(0, content.find('\n'));
    string const found = findFile(path);
    if (LuaState* const state = LuaState::of(L))
        state->askedFiles.erase(found);
    string const chunkName = "@" + found;
    return loadLuaText(L, content.data(), content.size(), chunkName.c_str());
}

// --- Limits ---

void setDefaultLuaLimits(LuaLimits const& limits) {
    std::lock_guard const guard(defaultsLock);
    defaultLimits = limits;
}

LuaLimits getDefaultLuaLimits() {
    std::lock_guard const guard(defaultsLock);
    return defaultLimits;
}

void setLuaLimits(lua_State* L, LuaLimits const& limits) {
    LuaState* const state = LuaState::of(L);
    if (!state)
        return;
    state->limits = limits;
    state->remaining = int64_t(limits.instructions);
    state->spent = false;
    state->renewTime();
    lua_sethook(L, onInstructions, LUA_MASKCOUNT, hookInterval);
    lua_sethook(state->main, onInstructions, LUA_MASKCOUNT, hookInterval);
}

LuaLimits getLuaLimits(lua_State* L) {
    LuaState const* const state = LuaState::of(L);
    return state ? state->limits : LuaLimits();
}

bool isLuaSpent(lua_State* L) {
    LuaState const* const state = LuaState::of(L);
    return state && state->spent;
}

bool isLuaRunning(lua_State* L) {
    LuaState const* const state = LuaState::of(L);
    return state && state->depth + state->pausedDepth > 0;
}

void addLuaCloseFunction(lua_State* L, std::function<void()> function) {
    if (LuaState* const state = LuaState::of(L))
        state->closeFunctions.push_back(std::move(function));
}

size_t getLuaMemory(lua_State* L) {
    LuaState const* const state = LuaState::of(L);
    return state ? state->memory : 0;
}

void chargeLua(lua_State* L, uint64_t instructions) {
    LuaState* const state = LuaState::of(L);
    if (!state || state->depth == 0)
        return;
    state->remaining -= int64_t(instructions < uint64_t(INT32_MAX) ? instructions : uint64_t(INT32_MAX));
    if (!state->spent && state->remaining >= 0)
        return;
    state->spend(L);
    luaL_error(L, "%s", state->getSpentText().c_str());
}

// --- Protected access ---

bool luaProtectedCall(lua_State* L, int index, void (*function)(void* context, lua_State* L), void* context,
                      string* error) {
    struct Call {
        void (*function)(void*, lua_State*);
        void* context;
    } call{function, context};
    int const top = lua_gettop(L);
    bool const hasValue = index != 0;
    if (hasValue)
        index = toAbsolute(L, index);
    if (!lua_checkstack(L, 4)) {
        if (error)
            *error = "the Lua stack is full";
        return false;
    }
    lua_pushcfunction(L, [](lua_State* state) {
        Call const inner = *static_cast<Call*>(lua_touserdata(state, 1));
        lua_remove(state, 1);
        inner.function(inner.context, state);
        return 0;
    });
    lua_pushlightuserdata(L, &call);
    if (hasValue)
        lua_pushvalue(L, index);
    bool const succeeded = callProtected(L, hasValue ? 2 : 1, 0, 0, false) == 0;
    if (!succeeded && error)
        *error = lua_tostring(L, -1);
    lua_settop(L, top);
    return succeeded;
}

namespace {

// Pushes table[key] for the key on the top of the stack, which it pops; without a metatable nothing can go wrong.
int getByTop(lua_State* L, int index) {
    if (!lua_istable(L, index)) {
        lua_pop(L, 1);
        lua_pushnil(L);
    } else if (!lua_getmetatable(L, index)) {
        lua_rawget(L, index);
    } else {
        lua_pop(L, 1);
        lua_pushcfunction(L, [](lua_State* state) {
            lua_gettable(state, 1);
            return 1;
        });
        lua_insert(L, -2);
        lua_pushvalue(L, index);
        lua_insert(L, -2);
        if (callProtected(L, 2, 1, 0, false) != 0) {
            lua_pop(L, 1);
            lua_pushnil(L);
        }
    }
    return lua_type(L, -1);
}

}  // namespace

int luaGetField(lua_State* L, int index, char const* key) {
    index = toAbsolute(L, index);
    lua_checkstack(L, 5);
    lua_pushstring(L, key);
    return getByTop(L, index);
}

int luaGetIndex(lua_State* L, int index, int key) {
    index = toAbsolute(L, index);
    lua_checkstack(L, 5);
    lua_pushinteger(L, key);
    return getByTop(L, index);
}

int luaGetGlobal(lua_State* L, char const* key) {
    lua_checkstack(L, 5);
    lua_pushvalue(L, LUA_GLOBALSINDEX);
    int const type = luaGetField(L, -1, key);
    lua_remove(L, -2);
    return type;
}

bool luaNext(lua_State* L, int index) {
    index = toAbsolute(L, index);
    lua_checkstack(L, 5);
    if (!lua_istable(L, index)) {
        lua_pop(L, 1);
        return false;
    }
    lua_pushcfunction(L, [](lua_State* state) { return lua_next(state, 1) ? 2 : 0; });
    lua_insert(L, -2);
    lua_pushvalue(L, index);
    lua_insert(L, -2);
    int const below = lua_gettop(L) - 3;
    if (callProtected(L, 2, LUA_MULTRET, 0, false) != 0)
        lua_settop(L, below);
    return lua_gettop(L) > below;
}

bool luaToString(lua_State* L, int index, string& text) {
    if (!lua_isstring(L, index))
        return false;
    NumericLocaleGuard const locale;
    lua_checkstack(L, 1);
    lua_pushvalue(L, index);
    size_t length = 0;
    char const* const data = lua_tolstring(L, -1, &length);
    text.assign(data, length);
    lua_pop(L, 1);
    return true;
}

bool luaToNumber(lua_State* L, int index, double& number) {
    NumericLocaleGuard const locale;
    if (!lua_isnumber(L, index))
        return false;
    number = lua_tonumber(L, index);
    return true;
}

LuaStackGuard::LuaStackGuard(lua_State* L) : state_(L), top_(lua_gettop(L)) {}
LuaStackGuard::~LuaStackGuard() { lua_settop(state_, top_); }

LuaPauseGuard::LuaPauseGuard(lua_State* L) : state_(L) {
    LuaState* const state = LuaState::of(L);
    if (!state)
        return;
    depth_ = std::exchange(state->depth, 0);
    state->pausedDepth += depth_;
    remaining_ = state->remaining;
    seconds_ = state->deadline - getThreadSeconds();
}

LuaPauseGuard::~LuaPauseGuard() {
    LuaState* const state = LuaState::of(state_);
    if (!state)
        return;
    state->depth = depth_;
    state->pausedDepth -= depth_;
    state->remaining = remaining_;
    state->deadline = getThreadSeconds() + seconds_;
}

NumericLocaleGuard::NumericLocaleGuard() {
    static locale_t const numbers = newlocale(LC_NUMERIC_MASK, "C", duplocale(LC_GLOBAL_LOCALE));
    previous_ = uselocale(numbers);
}
NumericLocaleGuard::~NumericLocaleGuard() { uselocale(static_cast<locale_t>(previous_)); }

}  // namespace qor

// --- The calls of Lua's own names ---

lua_State* QOR_lua_open(char const* name) {
    auto* const state = new qor::LuaState;
    state->name = name ? name : "Lua";
    state->limits = qor::getDefaultLuaLimits();
    state->main = lua_newstate(qor::allocate, state);
    if (!state->main)
        qor::fatal_out_of_memory("QOR_lua_open", sizeof(*state));
    lua_atpanic(state->main, qor::onPanic);
    // Garbage counts against the cap, so it must not pile up to the size of what is in use.
    lua_gc(state->main, LUA_GCSETPAUSE, 125);
    lua_gc(state->main, LUA_GCSETSTEPMUL, 400);
    qor::setLuaLimits(state->main, state->limits);
    qor::keepExplainError(state->main);
    return state->main;
}

int QOR_lua_loadfile(lua_State* L, char const* path) {
    lua_checkstack(L, 4);
    return qor::loadLuaFile(L, path ? path : "");
}

int QOR_lua_pcall(lua_State* L, int arguments, int results, int handler) {
    lua_checkstack(L, 4);
    if (handler != 0)
        return qor::callProtected(L, arguments, results, handler, true);
    int const base = lua_gettop(L) - arguments;
    qor::pushExplainError(L);
    lua_insert(L, base);
    int const status = qor::callProtected(L, arguments, results, base, true);
    lua_remove(L, base);
    return status;
}

void QOR_lua_close(lua_State* L) {
    if (!L)
        return;
    qor::LuaState* const state = qor::LuaState::of(L);
    for (size_t i = 0; state && i < state->closeFunctions.size(); ++i)
        state->closeFunctions[i]();
    lua_close(L);
    delete state;
}
