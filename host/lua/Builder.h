#pragma once

#include "host/lua/ClassBinding.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace gui {
class Container;
class WidgetHandler;
class WindowBase;
}  // namespace gui

namespace host::lua {

class Bindings;

/// Descriptions: what constructors of window files give. A description is the table that the file wrote, with a mark
/// that tells its class and where it stands. No widget exists before it is built.
/// The function of a constructor; its first upvalue is the ClassBinding as light userdata.
int describe(lua_State* L);
/// The class that the table at `index` describes; null for any other value. `position` gets "file:line: ".
ClassBinding const* findDescription(lua_State* L, int index, qor::string* position = nullptr);

/// A new layout from a description or from a type word at `index`; null for any other value. What is wrong in it is
/// reported.
gui::Layout* makeLayout(lua_State* L, int index);
/// Gives the container the layout at `index`, or none for nil and false. False for any other value.
bool assignLayout(lua_State* L, int index, gui::Container& container);

/// Widgets from descriptions. What is wrong in one is reported, and the rest is built.
/// Order: first the trees are made, from the leaves up, without any callback; `finish` then sets what needs the whole
/// tree, puts the callbacks in place, and shows. A tree that was not taken over when the builder ends, or when a Lua
/// error passes through, is destroyed. Needs to run inside a protected call.
class Builder {
public:
    explicit Builder(lua_State* L);
    ~Builder();
    Builder(Builder const&) = delete;
    Builder& operator=(Builder const&) = delete;

    using WidgetList = qor::vector<gui::WidgetHandler*>;

    /// A parentless widget from the description at `index`, or null, which was reported, at `outer` if the value is no
    /// description. Owned by the builder until someone takes it.
    gui::Widget* make(int index, qor::string const& outer);
    /// The same for each item of a list, and for those of the list under a key of the table, if one is given.
    WidgetList makeList(int index, qor::string const& outer, char const* key = nullptr);
    /// Inserts a widget, which its parent owns from now on. Where that cannot be it is reported at the position, and
    /// the widget is destroyed.
    bool insert(gui::Widget* child, gui::Widget& parent, int place, qor::string const& position);
    void insertOverlay(gui::WidgetHandler* child, gui::WindowBase& window);
    static void clearOverlays(gui::WindowBase& window);
    /// Gives the anchors that are described for a child made here to its container's layout, if that is of this kind.
    void anchor(gui::Widget* child, gui::Container& container, int place);
    /// Ends the ownership of a window.
    void release(gui::Widget& widget);
    void finish();

    /// Replaces contents and properties of a window by those described at `index`. The new contents are made before the
    /// old ones go.
    void fill(gui::WindowBase& window, int index);
    /// Notes which properties are described at `index`, for the next `fill`.
    void remember(gui::WindowBase& window, ClassBinding const& binding, int index);

private:
    /// One widget, with its description in the table at `descriptions_`, under its number from 1 on.
    struct Entry {
        gui::WidgetHandler* widget;
        ClassBinding const* binding;
        qor::string position;
    };

    void enter_(gui::Widget& widget, ClassBinding const& binding, int index, qor::string const& position);
    /// Early properties, children and layout of the widget that was entered last.
    void furnish_(gui::Widget& widget, WidgetList const& children, WidgetList const& overlays);
    void arrange_(Entry const& entry, int index, WidgetList const& children);
    void checkKeys_(int index, ClassBinding const& binding, qor::string const& position);
    void checkKey_(std::string_view key, ClassBinding const& binding, qor::string const& position);
    void checkPlace_(ClassBinding const& binding, qor::string const& position);
    void assign_(Entry const& entry, int index, Stage stage);
    void attach_(Entry const& entry, int index);
    void reset_(gui::WindowBase& window, ClassBinding const& binding, int index);

    lua_State* L_;
    Bindings& bindings_;
    int descriptions_;
    int depth_ = 0;
    qor::vector<Entry> entries_;
    /// Those without a parent.
    qor::vector<gui::WidgetHandler*> owned_;
};

}  // namespace host::lua
