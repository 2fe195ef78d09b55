#pragma once

#include <functional>
#include <memory>

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

struct lua_State;

namespace gui {
class WidgetHandler;
}

namespace host::lua {

class LuaCallback;
struct Property;

/// What the bindings keep for one Lua state: the functions that widgets call, and what was wrong so far.
/// Lifetime: shared by the state and by each callback. It is the token that tells callbacks whether the state still
/// lives: `state` is null from the moment in which the state begins to close.
class Bindings : public std::enable_shared_from_this<Bindings> {
public:
    /// The one of the state, made at the first call. Call it from the main coroutine first.
    static Bindings& open(lua_State* L);
    /// Null where the module was not opened. L may be null.
    static Bindings* find(lua_State* L);

    /// The main coroutine, or null once it closes.
    lua_State* state() const { return state_; }

    // --- Errors ---
    /// Logs the text and keeps it, unless it was the last to be reported.
    void report(qor::string const& text);
    qor::vector<qor::string> takeErrors();

    // --- Functions that widgets call ---
    /// Keeps the value at `index` until `release`; the reference is above 0.
    int keep(lua_State* L, int index);
    /// Pushes what was kept.
    void push(lua_State* L, int reference) const;
    void release(int reference);
    /// How many values are kept.
    int getKeptCount() const { return keptCount_; }

    using CallbackList = qor::vector<LuaCallback*>;
    qor::hash_map<gui::WidgetHandler const*, CallbackList>& callbacks() { return callbacks_; }

    /// The properties that a file has set on a window, for the file that replaces its contents.
    using PropertyList = qor::vector<Property const*>;
    PropertyList& propertiesOf(gui::WidgetHandler const* window) { return properties_[window]; }
    /// The callback that holds the picture of a view, if it shows one of a file.
    std::weak_ptr<std::function<void()>>& pictureOf(gui::WidgetHandler const* view) { return pictures_[view]; }
    /// Forgets the widgets that have died.
    void forgetDead();

private:
    explicit Bindings(lua_State* L);

    lua_State* state_;
    qor::vector<qor::string> errors_;
    qor::string lastReport_;
    int keptCount_ = 0;
    qor::hash_map<gui::WidgetHandler const*, CallbackList> callbacks_;
    qor::hash_map<gui::WidgetHandler const*, PropertyList> properties_;
    qor::hash_map<gui::WidgetHandler const*, std::weak_ptr<std::function<void()>>> pictures_;
};

}  // namespace host::lua
