#include "gui_lib/widget/Container.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "host/lua/Builder.h"
#include "host/lua/ClassList.h"
#include "host/lua/Objects.h"
#include "platform/qor/Truncate.h"

#include <lua.hpp>

namespace host::lua {

namespace {

using gui::Container;
using gui::Widget;
using D = Define<Container>;

/// Moves a widget that lives already. Raises an error where that cannot be.
void moveHere(lua_State* L, Widget& child, Container& self, ClassBinding const& inserter, int place) {
    for (Widget const* up = &self; up; up = gui::WidgetHandler::get(up->getParent()))
        if (up == &child)
            raise(L, "a widget cannot be inserted into itself or into what it holds");
    if (!child.getParent())
        raise(L, "a window cannot be inserted; insert what it holds");
    inserter.insert(self, &child, place);
}

/// self:insert(description or widget, place): place counts from 1; the end if it is left out.
int insert(lua_State* L, Container& self) {
    ClassBinding const& binding = *findClassOf({&self});
    ClassBinding const* const inserter = binding.findInserter();
    if (!inserter)
        raise(L, qor::string("a ") + binding.getConstructor() + " holds no widgets; a Panel does");
    int const place = gui::saturatingSubtract(qor::truncateToInt(luaL_optnumber(L, 3, 0)), 1);
    lua_settop(L, 3);
    gui::WidgetHandler* const handler = self.getHandler();
    Object living;
    if (readObject(L, 2, living) && living.widget) {
        moveHere(L, *living.widget, self, *inserter, place);
        lua_settop(L, 2);
        return 1;
    }
    if (!findDescription(L, 2))
        raise(L, qor::string("insert wants a widget, as in self:insert(Static { text = \"Name\" }), not a ") +
                     luaL_typename(L, 2));
    luaL_where(L, 1);
    qor::string const position = lua_tostring(L, -1);
    Builder builder(L);
    Widget* const child = builder.make(2, position);
    if (!child || !gui::WidgetHandler::get(handler) || !builder.insert(child, self, place, position))
        return 0;
    builder.anchor(child, self, place);
    gui::WidgetHandler* const made = child->getHandler();
    builder.finish();
    pushObject(L, {gui::WidgetHandler::get(made)});
    return 1;
}

int clear(lua_State* L, Container& self) {
    ClassBinding const& binding = *findClassOf({&self});
    ClassBinding const* const inserter = binding.findInserter();
    if (!inserter || !inserter->clear)
        raise(L, qor::string("a ") + binding.getConstructor() + " holds no widgets");
    auto* const layout = dynamic_cast<gui::AnchorLayout*>(gui::LayoutHandler::get(self.getLayout()));
    while (layout && layout->getAnchorInfoCount() > 0)
        layout->removeAnchorInfo(0);
    inserter->clear(self);
    return 0;
}

void pushChildren(lua_State* L, Object object) {
    Container const& self = as<Container>(object);
    lua_newtable(L);
    for (int i = 0; i < self.getWidgetCount(); ++i) {
        pushObject(L, {self.getWidget(i)});
        lua_rawseti(L, -2, i + 1);
    }
}

}  // namespace

void addContainer(ClassList& list) {
    ClassBinding& container = list.emplace_back(D::binding("Container", "Widget", [] { return new Container; }));
    container.properties = {
        {"layout", "a layout, as in VertLayout { gap = 8 } or \"vert\", or false for none",
         [](lua_State* L, Object object) {
             pushObject(L, {nullptr, gui::LayoutHandler::get(as<Container>(object).getLayout())});
         },
         [](lua_State* L, int index, Object object) { return assignLayout(L, index, as<Container>(object)); },
         Stage::ByBuilder},
        {"children", "", pushChildren, nullptr},
    };
    container.methods = {
        D::method("insert", [](lua_State* L, Container& self) { return insert(L, self); }),
        D::method("clear", [](lua_State* L, Container& self) { return clear(L, self); }),
        D::method("updateLayout",
                  [](lua_State*, Container& self) {
                      self.updateLayout(true);
                      return 0;
                  }),
    };

    ClassBinding panel = Define<gui::Panel>::binding("Panel", "Container", [] { return new gui::Panel; });
    Define<gui::Panel>::addChildren(panel);
    list.push_back(std::move(panel));
}

}  // namespace host::lua
