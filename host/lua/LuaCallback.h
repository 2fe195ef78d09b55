#pragma once

#include <memory>
#include <string_view>

#include "host/lua/ClassBinding.h"
#include "platform/qor/String.h"

namespace host::lua {

class Bindings;

/// A function of a window file that a widget calls. Each call runs protected and under the budget of the state; an
/// error is reported, and a function that used the budget up is not called again. At most one for each callback of a
/// widget: another takes its place. Lifetime: held by the widget's own table of callbacks; the function is let go with
/// it. It does nothing once the state closes.
class LuaCallback : public std::enable_shared_from_this<LuaCallback> {
public:
    /// What answers to the callback `word`; of a hot key it is "ctrl+alt+shift+key" with what of that is held.
    struct Slot {
        EventKind kind = EventKind::Widget;
        qor::string word;
        bool operator==(Slot const&) const = default;
    };

    /// The slot for a word of the toolkit or a hot key, or false if there is none of that name. Any word is a widget's.
    static bool findSlot(EventKind kind, std::string_view word, Slot& slot);

    /// Lets the widget call the function at `index`; nil lets go of the present one.
    static void attach(lua_State* L, int index, gui::Widget& widget, Slot const& slot);
    static void detachAll(lua_State* L, gui::Widget& widget);
    /// Pushes the function or nil.
    static void push(lua_State* L, gui::Widget const& widget, Slot const& slot);
    /// Pushes a table of all functions of a kind by their words.
    static void pushAll(lua_State* L, gui::Widget const& widget, EventKind kind);

    ~LuaCallback();
    LuaCallback(LuaCallback const&) = delete;
    LuaCallback& operator=(LuaCallback const&) = delete;

private:
    LuaCallback(std::shared_ptr<Bindings> bindings, gui::Widget& widget, Slot slot, int reference);

    static LuaCallback* find_(lua_State* L, gui::Widget const& widget, Slot const& slot);
    template <class Function, class Call>
    std::shared_ptr<std::function<Function>> makeEntry_(Call call);
    void enter_(gui::Widget& widget);
    bool runForKey_(int key, int value);
    void leave_();
    /// Out of the bindings' list, and the function goes.
    void letGo_();
    /// Calls the function with the widget and what `pushArguments(L)` pushes, whose number it returns. The result is
    /// the truth of the function's.
    template <class Push>
    bool run_(Push pushArguments);
    void onFailed_(lua_State* L, gui::WidgetHandler* handler);

    std::shared_ptr<Bindings> bindings_;
    gui::WidgetHandler* widget_;
    Slot slot_;
    /// 0 when the function was let go.
    int reference_;
    /// The std::function in the widget's table.
    std::weak_ptr<void> entry_;
};

/// Calls the function on the top of the stack, which it pops, with the widget; reports an error as that of `name`.
void callWithWidget(lua_State* L, gui::Widget& widget, char const* name);

}  // namespace host::lua
