#include "gui_lib/Skin/SkinReload.h"

#include <algorithm>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/SkinFile.h"
#include "gui_lib/Skin/SkinTableCache.h"
#include "gui_lib/Skin/StateInfo.h"
#include "gui_lib/widget/Widget.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace gui::skin {

namespace {

/// Calls `function` with each of the names, which end in line ends.
template <class Function>
void forEachName(qor::string const& names, Function const& function) {
    for (std::size_t start = 0; start < names.size();) {
        std::size_t const end = names.find('\n', start);
        function(std::string_view(names).substr(start, end - start));
        start = end + 1;
    }
}

}  // namespace

// --- What a skin remembers ---

Skin*& Skin::getFirstNamed_() {
    static Skin* first = nullptr;
    return first;
}

Skin*& Skin::getLastNamed_() {
    static Skin* last = nullptr;
    return last;
}

void Skin::setLoadedName(qor::basic_string<char> const& name) {
    if (name.empty() || name.find('\n') != qor::string::npos)
        return;
    if (names_.empty()) {
        addName_(name + "\n");
        return;
    }
    // Read again, it counts from where it is now.
    qor::string names;
    forEachName(names_, [&](std::string_view known) {
        if (known != name)
            names.append(known).append(1, '\n');
    });
    forgetNames_();
    addName_(names + name + "\n");
}

qor::basic_string<char> Skin::getLoadedName() const {
    qor::string last;
    forEachName(names_, [&last](std::string_view name) { last = name; });
    return last;
}

void Skin::addName_(qor::basic_string<char> names) {
    names_ = std::move(names);
    previousNamed_ = getLastNamed_();
    (previousNamed_ ? previousNamed_->nextNamed_ : getFirstNamed_()) = this;
    getLastNamed_() = this;
}

void Skin::forgetNames_() {
    if (names_.empty())
        return;
    names_.clear();
    (previousNamed_ ? previousNamed_->nextNamed_ : getFirstNamed_()) = nextNamed_;
    (nextNamed_ ? nextNamed_->previousNamed_ : getLastNamed_()) = previousNamed_;
    previousNamed_ = nextNamed_ = nullptr;
}

void Skin::setAllChanged() {
    setTextChanged();
    setSizeChanged();
    updateWidget(true);
}

// --- The reload ---

SkinReload* SkinReload::running_ = nullptr;

SkinReload::SkinReload(lua_State* L, int held) : state_(L), held_(held), scratch_(QOR_lua_open("skin values")) {}

SkinReload::~SkinReload() {
    running_ = nullptr;
    QOR_lua_close(scratch_);
}

bool SkinReload::run(qor::string const& file, qor::string& error) {
    qor::LuaStackGuard const guard(state_);
    lua_checkstack(state_, 16);
    // What has used the budget up may be mended in the new file.
    auto const renewBudget = [this] { qor::setLuaLimits(state_, qor::getLuaLimits(state_)); };
    renewBudget();
    findNames_();
    pushTables_(false, error);
    readAll_(&Content::before);
    renewBudget();
    error.clear();
    int const height = lua_gettop(state_);
    {
        SkinFile skinFile(state_);
        bool succeeded = skinFile.run(file, error);
        if (succeeded && qor::luaGetGlobal(state_, "Skin") != LUA_TTABLE) {
            error.format("%s: the file leaves no global table Skin", file.c_str());
            succeeded = false;
        }
        if (!succeeded || !pushTables_(true, error)) {
            // Nothing that the file did may hold for the skin in force.
            renewBudget();
            return false;
        }
        SkinTableCache::clear(state_);
        readAll_(&Content::after);
        skinFile.keep();
    }
    hold_(height);
    apply_();
    return true;
}

// The results of the new file, which lie above `height`, take the places of the old ones.
void SkinReload::hold_(int height) {
    int const count = lua_gettop(state_) - height;
    if (held_ < 1 || held_ > height)
        return;
    for (int i = 1; i < held_; ++i) {
        if (i <= count)
            lua_pushvalue(state_, height + i);
        else
            lua_pushnil(state_);
        lua_replace(state_, i);
    }
    qor::luaGetGlobal(state_, "Skin");
    lua_replace(state_, held_);
}

void SkinReload::findNames_() {
    for (Skin const* skin = Skin::getFirstNamed_(); skin; skin = skin->nextNamed_)
        forEachName(skin->names_, [this](std::string_view name) { names_.emplace_back(name); });
    std::sort(names_.begin(), names_.end());
    names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
}

// Pushes a table of what the functions in use return now. False for the first that fails, if all are `wanted`.
bool SkinReload::pushTables_(bool wanted, qor::string& error) {
    lua_createtable(state_, 0, static_cast<int>(names_.size()));
    for (qor::string const& name : names_) {
        lua_pushlstring(state_, name.data(), name.size());
        if (!SkinFile::callFunction(state_, name, error) && wanted)
            return false;
        lua_rawset(state_, -3);
    }
    return true;
}

// Lets every skin read its tables, which are fields of the table on the top of the stack, for one side.
void SkinReload::readAll_(std::unique_ptr<Data> Content::*side) {
    SkinTableCache::SkinFileScope const scope;
    running_ = this;
    side_ = side;
    int const tables = lua_gettop(state_);
    for (Skin* skin = Skin::getFirstNamed_(); skin; skin = skin->nextNamed_) {
        if (skin->data)
            contents_[skin->data];
        forEachName(skin->names_, [&](std::string_view name) {
            lua_pushlstring(state_, name.data(), name.size());
            lua_rawget(state_, tables);
            if (lua_istable(state_, -1))
                skin->loadSkin_(state_);
            lua_settop(state_, tables);
        });
    }
    running_ = nullptr;
}

/// Null if the class has no function of its own for that: another class has other looks.
std::unique_ptr<Data> SkinReload::makeNew_(Data const& source) {
    std::unique_ptr<Data> made = source.makeNew_();
    Data const& fresh = *made;
    return typeid(fresh) == typeid(source) ? std::move(made) : nullptr;
}

void SkinReload::read(lua_State* L, Data& target) {
    std::unique_ptr<Data>& content = contents_[&target].*side_;
    if (!content)
        content = makeNew_(target);
    // A class that makes none is read as at first, over what is there.
    Data* const reader = content ? content.get() : side_ == &Content::after ? &target : nullptr;
    if (!reader)
        return;
    reader->loadParams(L);
    reader->loadStates(L);
    reader->setLoaded();
}

void SkinReload::apply_() {
    for (auto& [data, content] : contents_) {
        for (std::unique_ptr<Data>* const side : {&content.before, &content.after})
            if (!*side)
                *side = makeNew_(*data);
        if (content.before && content.after)
            data->reload_(*content.before, *content.after, scratch_);
    }
}

}  // namespace gui::skin
