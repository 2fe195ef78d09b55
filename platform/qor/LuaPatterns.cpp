// The string functions that search by patterns. Every step of a match draws on the script's instruction budget, so that
// a pattern whose cost explodes ends in an error instead of hanging the program.

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

#include "platform/qor/LuaState.h"

#include <lua.hpp>

namespace qor {

namespace {

constexpr int mostCaptures = 32;
constexpr int mostDepth = 200;
constexpr unsigned stepsPerCharge = 256;

using Text = std::string_view;

Text checkText(lua_State* L, int index) {
    size_t length = 0;
    char const* const data = luaL_checklstring(L, index, &length);
    return Text(data, length);
}

/// One search of a subject by a pattern. Positions are indexes; `none` stands for no match.
class Matcher {
public:
    static constexpr size_t none = size_t(-1);

    Matcher(lua_State* L, Text subject, Text pattern) : L_(L), subject_(subject), pattern_(pattern) {}

    /// The end of a match that begins at `at`, or none.
    size_t matchAt(size_t at) {
        level_ = 0;
        depth_ = 0;
        return match_(at, 0);
    }

    int getCaptureCount() const { return level_; }

    /// Pushes capture `index`, or the whole match where there are no captures.
    void pushCapture(int index, size_t begin, size_t end) {
        if (index >= level_) {
            if (index != 0)
                luaL_error(L_, "invalid capture index");
            push_(begin, end - begin);
            return;
        }
        Capture const& capture = captures_[size_t(index)];
        if (capture.kind == Kind::Open)
            luaL_error(L_, "unfinished capture");
        if (capture.kind == Kind::Position)
            lua_pushinteger(L_, lua_Integer(capture.begin + 1));
        else
            push_(capture.begin, capture.length);
    }

    /// Pushes all captures; the whole match, if wanted, where there are none. Returns how many.
    int pushCaptures(size_t begin, size_t end, bool wholeIfNone) {
        int const count = level_ == 0 && wholeIfNone ? 1 : level_;
        luaL_checkstack(L_, count, "too many captures");
        for (int i = 0; i < count; ++i)
            pushCapture(i, begin, end);
        return count;
    }

private:
    enum class Kind { Open, Closed, Position };
    struct Capture {
        size_t begin;
        size_t length;
        Kind kind;
    };

    void push_(size_t begin, size_t length) { lua_pushlstring(L_, subject_.data() + begin, length); }

    void step_() {
        if (++steps_ % stepsPerCharge == 0)
            chargeLua(L_, stepsPerCharge);
    }

    // Where the single-character item at `at` ends.
    size_t itemEnd_(size_t at) const {
        char const first = pattern_[at++];
        if (first == '%') {
            if (at >= pattern_.size())
                luaL_error(L_, "malformed pattern (ends with '%%')");
            return at + 1;
        }
        if (first != '[')
            return at;
        if (at < pattern_.size() && pattern_[at] == '^')
            ++at;
        // A "]" in the first place stands for itself.
        for (bool isFirst = true;; isFirst = false) {
            if (at >= pattern_.size())
                luaL_error(L_, "malformed pattern (missing ']')");
            char const next = pattern_[at++];
            if (next == ']' && !isFirst)
                return at;
            if (next == '%' && at++ >= pattern_.size())
                luaL_error(L_, "malformed pattern (missing ']')");
        }
    }

    static bool isInClass_(unsigned char c, unsigned char letter) {
        bool result = false;
        switch (std::tolower(letter)) {
            case 'a':
                result = std::isalpha(c);
                break;
            case 'c':
                result = std::iscntrl(c);
                break;
            case 'd':
                result = std::isdigit(c);
                break;
            case 'l':
                result = std::islower(c);
                break;
            case 'p':
                result = std::ispunct(c);
                break;
            case 's':
                result = std::isspace(c);
                break;
            case 'u':
                result = std::isupper(c);
                break;
            case 'w':
                result = std::isalnum(c);
                break;
            case 'x':
                result = std::isxdigit(c);
                break;
            case 'z':
                result = c == 0;
                break;
            default:
                return letter == c;
        }
        return std::isupper(letter) ? !result : result;
    }

    // The set from "[" at `begin` up to its "]" before `end`.
    bool isInSet_(unsigned char c, size_t begin, size_t end) {
        size_t at = begin + 1;
        size_t const last = end - 1;
        bool const negated = pattern_[at] == '^';
        at += negated;
        while (at < last) {
            step_();
            auto const first = static_cast<unsigned char>(pattern_[at]);
            if (first == '%') {
                if (isInClass_(c, static_cast<unsigned char>(pattern_[at + 1])))
                    return !negated;
                at += 2;
            } else if (at + 2 < last && pattern_[at + 1] == '-') {
                if (first <= c && c <= static_cast<unsigned char>(pattern_[at + 2]))
                    return !negated;
                at += 3;
            } else {
                if (first == c)
                    return !negated;
                ++at;
            }
        }
        return negated;
    }

    bool isItem_(size_t at, size_t item, size_t itemEnd) {
        step_();
        if (at >= subject_.size())
            return false;
        auto const c = static_cast<unsigned char>(subject_[at]);
        switch (pattern_[item]) {
            case '.':
                return true;
            case '%':
                return isInClass_(c, static_cast<unsigned char>(pattern_[item + 1]));
            case '[':
                return isInSet_(c, item, itemEnd);
            default:
                return static_cast<unsigned char>(pattern_[item]) == c;
        }
    }

    size_t match_(size_t at, size_t item) {
        if (++depth_ > mostDepth)
            luaL_error(L_, "pattern too complex");
        size_t const end = matchHere_(at, item);
        --depth_;
        return end;
    }

    size_t matchHere_(size_t at, size_t item) {
        while (item < pattern_.size()) {
            step_();
            char const first = pattern_[item];
            if (first == '(') {
                bool const isPosition = item + 1 < pattern_.size() && pattern_[item + 1] == ')';
                return openCapture_(at, item + (isPosition ? 2 : 1), isPosition ? Kind::Position : Kind::Open);
            }
            if (first == ')')
                return closeCapture_(at, item + 1);
            if (first == '$' && item + 1 == pattern_.size())
                return at == subject_.size() ? at : none;
            if (first == '%' && item + 1 < pattern_.size() && isSpecial_(pattern_[item + 1])) {
                if (!matchSpecial_(at, item))
                    return none;
                continue;
            }
            size_t const itemEnd = itemEnd_(item);
            char const suffix = itemEnd < pattern_.size() ? pattern_[itemEnd] : '\0';
            if (suffix == '*' || suffix == '+')
                return matchMost_(at, item, itemEnd, suffix == '+' ? 1 : 0);
            if (suffix == '-')
                return matchLeast_(at, item, itemEnd);
            bool const matches = isItem_(at, item, itemEnd);
            if (suffix == '?') {
                if (matches) {
                    size_t const end = match_(at + 1, itemEnd + 1);
                    if (end != none)
                        return end;
                }
                item = itemEnd + 1;
                continue;
            }
            if (!matches)
                return none;
            ++at;
            item = itemEnd;
        }
        return at;
    }

    static bool isSpecial_(char letter) {
        return letter == 'b' || letter == 'f' || std::isdigit(static_cast<unsigned char>(letter));
    }

    // A balanced pair, a frontier or a back reference; moves both positions behind it.
    bool matchSpecial_(size_t& at, size_t& item) {
        char const letter = pattern_[item + 1];
        if (letter == 'b')
            return matchBalanced_(at, item);
        if (letter == 'f')
            return matchFrontier_(at, item);
        int const index = letter - '1';
        if (index < 0 || index >= level_ || captures_[size_t(index)].kind == Kind::Open)
            luaL_error(L_, "invalid capture index");
        Capture const& capture = captures_[size_t(index)];
        // A position is no text, so nothing equals it.
        if (capture.kind == Kind::Position)
            return false;
        size_t const length = capture.length;
        chargeLua(L_, length / 16);
        if (subject_.size() - at < length || subject_.compare(at, length, subject_.substr(capture.begin, length)) != 0)
            return false;
        at += length;
        item += 2;
        return true;
    }

    bool matchBalanced_(size_t& at, size_t& item) {
        if (item + 3 >= pattern_.size())
            luaL_error(L_, "unbalanced pattern");
        char const open = pattern_[item + 2];
        char const close = pattern_[item + 3];
        if (at >= subject_.size() || subject_[at] != open)
            return false;
        size_t nesting = 1;
        for (size_t i = at + 1; i < subject_.size(); ++i) {
            step_();
            if (subject_[i] == close) {
                if (--nesting == 0) {
                    at = i + 1;
                    item += 4;
                    return true;
                }
            } else if (subject_[i] == open) {
                ++nesting;
            }
        }
        return false;
    }

    bool matchFrontier_(size_t& at, size_t& item) {
        size_t const set = item + 2;
        if (set >= pattern_.size() || pattern_[set] != '[')
            luaL_error(L_, "missing '[' after '%%f' in pattern");
        size_t const setEnd = itemEnd_(set);
        auto const before = at == 0 ? '\0' : subject_[at - 1];
        auto const after = at < subject_.size() ? subject_[at] : '\0';
        if (isInSet_(static_cast<unsigned char>(before), set, setEnd) ||
            !isInSet_(static_cast<unsigned char>(after), set, setEnd))
            return false;
        item = setEnd;
        return true;
    }

    size_t matchMost_(size_t at, size_t item, size_t itemEnd, size_t least) {
        size_t count = 0;
        while (isItem_(at + count, item, itemEnd))
            ++count;
        for (; count + 1 > least; --count) {
            size_t const end = match_(at + count, itemEnd + 1);
            if (end != none)
                return end;
            if (count == 0)
                break;
        }
        return none;
    }

    size_t matchLeast_(size_t at, size_t item, size_t itemEnd) {
        while (true) {
            size_t const end = match_(at, itemEnd + 1);
            if (end != none)
                return end;
            if (!isItem_(at, item, itemEnd))
                return none;
            ++at;
        }
    }

    size_t openCapture_(size_t at, size_t item, Kind kind) {
        if (level_ >= mostCaptures)
            luaL_error(L_, "too many captures");
        captures_[size_t(level_++)] = {at, 0, kind};
        size_t const end = match_(at, item);
        if (end == none)
            --level_;
        return end;
    }

    size_t closeCapture_(size_t at, size_t item) {
        int index = level_ - 1;
        while (index >= 0 && captures_[size_t(index)].kind != Kind::Open)
            --index;
        if (index < 0)
            luaL_error(L_, "invalid pattern capture");
        Capture& capture = captures_[size_t(index)];
        capture.length = at - capture.begin;
        capture.kind = Kind::Closed;
        size_t const end = match_(at, item);
        if (end == none)
            capture.kind = Kind::Open;
        return end;
    }

    lua_State* L_;
    Text subject_;
    Text pattern_;
    std::array<Capture, mostCaptures> captures_;
    int level_ = 0;
    int depth_ = 0;
    unsigned steps_ = 0;
};

// --- The functions ---

size_t readStart(lua_State* L, int index, size_t length) {
    lua_Number const wanted = luaL_optnumber(L, index, 1);
    lua_Number const from = wanted < 0 ? wanted + lua_Number(length) : wanted - 1;
    return from > 0 ? size_t(std::min(from, lua_Number(length))) : 0;
}

int findPlain(lua_State* L, Text subject, Text wanted, size_t start) {
    chargeLua(L, 1 + (subject.size() - start) / 8);
    auto const* const found =
        static_cast<char const*>(memmem(subject.data() + start, subject.size() - start, wanted.data(), wanted.size()));
    if (!found) {
        lua_pushnil(L);
        return 1;
    }
    auto const at = lua_Integer(found - subject.data());
    lua_pushinteger(L, at + 1);
    lua_pushinteger(L, at + lua_Integer(wanted.size()));
    return 2;
}

int search(lua_State* L, bool wantsPlace) {
    Text const subject = checkText(L, 1);
    Text pattern = checkText(L, 2);
    size_t at = readStart(L, 3, subject.size());
    bool const plain = wantsPlace && (lua_toboolean(L, 4) || pattern.find_first_of("^$*+?.([%-") == Text::npos);
    if (plain)
        return findPlain(L, subject, pattern, at);
    bool const anchored = pattern.starts_with('^');
    Matcher matcher(L, subject, pattern.substr(anchored));
    do {
        size_t const end = matcher.matchAt(at);
        if (end == Matcher::none)
            continue;
        if (!wantsPlace)
            return matcher.pushCaptures(at, end, true);
        lua_pushinteger(L, lua_Integer(at + 1));
        lua_pushinteger(L, lua_Integer(end));
        return 2 + matcher.pushCaptures(at, end, false);
    } while (at++ < subject.size() && !anchored);
    lua_pushnil(L);
    return 1;
}

int find(lua_State* L) { return search(L, true); }
int match(lua_State* L) { return search(L, false); }

int matchNext(lua_State* L) {
    Text const subject = checkText(L, lua_upvalueindex(1));
    Matcher matcher(L, subject, checkText(L, lua_upvalueindex(2)));
    for (auto at = size_t(lua_tonumber(L, lua_upvalueindex(3))); at <= subject.size(); ++at) {
        size_t const end = matcher.matchAt(at);
        if (end == Matcher::none)
            continue;
        lua_pushnumber(L, lua_Number(end == at ? end + 1 : end));
        lua_replace(L, lua_upvalueindex(3));
        return matcher.pushCaptures(at, end, true);
    }
    return 0;
}

int matchAll(lua_State* L) {
    luaL_checkstring(L, 1);
    luaL_checkstring(L, 2);
    lua_settop(L, 2);
    lua_pushnumber(L, 0);
    lua_pushcclosure(L, matchNext, 3);
    return 1;
}

/// Collects a result outside Lua's memory, under the same limit.
class Collector {
public:
    explicit Collector(lua_State* L) : L_(L), most_(getLuaLimits(L).memoryBytes) {}

    void add(Text text) {
        if (text.size() > most_ - text_.size())
            luaL_error(L_, "resulting string too large");
        chargeLua(L_, text.size() / 32);
        text_.append(text);
    }
    Text get() const { return text_; }
    void push() const { lua_pushlstring(L_, text_.data(), text_.size()); }

private:
    lua_State* L_;
    size_t most_;
    string text_;
};

void addTemplate(lua_State* L, Collector& result, Matcher& matcher, size_t begin, size_t end) {
    Text const subject = checkText(L, 1);
    Text const replacement = checkText(L, 3);
    for (size_t i = 0; i < replacement.size(); ++i) {
        size_t const percent = std::min(replacement.find('%', i), replacement.size());
        result.add(replacement.substr(i, percent - i));
        i = percent + 1;
        if (percent >= replacement.size())
            break;
        char const letter = i < replacement.size() ? replacement[i] : '\0';
        if (letter == '0') {
            result.add(subject.substr(begin, end - begin));
        } else if (std::isdigit(static_cast<unsigned char>(letter))) {
            matcher.pushCapture(letter - '1', begin, end);
            result.add(checkText(L, -1));
            lua_pop(L, 1);
        } else {
            result.add(Text(&letter, 1));
        }
    }
}

void addReplacement(lua_State* L, Collector& result, Matcher& matcher, size_t begin, size_t end) {
    int const type = lua_type(L, 3);
    if (type == LUA_TNUMBER || type == LUA_TSTRING) {
        addTemplate(L, result, matcher, begin, end);
        return;
    }
    if (type == LUA_TFUNCTION) {
        lua_pushvalue(L, 3);
        lua_call(L, matcher.pushCaptures(begin, end, true), 1);
    } else {
        matcher.pushCapture(0, begin, end);
        lua_gettable(L, 3);
    }
    if (!lua_toboolean(L, -1))
        result.add(checkText(L, 1).substr(begin, end - begin));
    else if (lua_isstring(L, -1))
        result.add(checkText(L, -1));
    else
        luaL_error(L, "invalid replacement value (a %s)", luaL_typename(L, -1));
    lua_pop(L, 1);
}

int substitute(lua_State* L) {
    Text const subject = checkText(L, 1);
    Text const pattern = checkText(L, 2);
    int const type = lua_type(L, 3);
    luaL_argcheck(L, type == LUA_TNUMBER || type == LUA_TSTRING || type == LUA_TFUNCTION || type == LUA_TTABLE, 3,
                  "string/function/table expected");
    if (type == LUA_TNUMBER)
        lua_tostring(L, 3);
    lua_Number const most = luaL_optnumber(L, 4, lua_Number(subject.size() + 1));
    bool const anchored = pattern.starts_with('^');
    Matcher matcher(L, subject, pattern.substr(anchored));
    Collector result(L);
    lua_Integer count = 0;
    size_t at = 0;
    while (lua_Number(count) < most) {
        size_t const end = matcher.matchAt(at);
        if (end != Matcher::none) {
            ++count;
            addReplacement(L, result, matcher, at, end);
        }
        if (end != Matcher::none && end > at)
            at = end;
        else if (at < subject.size())
            result.add(subject.substr(at++, 1));
        else
            break;
        if (anchored)
            break;
    }
    if (at < subject.size())
        result.add(subject.substr(at));
    result.push();
    lua_pushinteger(L, count);
    return 2;
}

int repeat(lua_State* L) {
    Text const text = checkText(L, 1);
    lua_Number const count = luaL_checknumber(L, 2);
    if (text.empty() || !(count >= 1)) {
        lua_pushliteral(L, "");
        return 1;
    }
    if (count * lua_Number(text.size()) > lua_Number(getLuaLimits(L).memoryBytes))
        luaL_error(L, "resulting string too large");
    size_t const size = size_t(count) * text.size();
    Collector result(L);
    result.add(text);
    while (result.get().size() < size) {
        // What is there so far, once more; a copy, since the text grows.
        string const again(result.get().substr(0, size - result.get().size()));
        result.add(again);
    }
    result.push();
    return 1;
}

}  // namespace

void openLuaPatterns(lua_State* L) {
    lua_getglobal(L, LUA_STRLIBNAME);
    struct Entry {
        char const* name;
        lua_CFunction function;
    };
    for (Entry const& entry : {Entry{"find", find}, Entry{"match", match}, Entry{"gmatch", matchAll},
                               Entry{"gfind", matchAll}, Entry{"gsub", substitute}, Entry{"rep", repeat}}) {
        lua_pushcfunction(L, entry.function);
        lua_setfield(L, -2, entry.name);
    }
    // There is nothing to load bytecode with.
    lua_pushnil(L);
    lua_setfield(L, -2, "dump");
    lua_pop(L, 1);
}

}  // namespace qor
