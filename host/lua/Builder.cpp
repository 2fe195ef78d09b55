#include "host/lua/Builder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/Bindings.h"
#include "host/lua/LuaCallback.h"
#include "host/lua/Objects.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace host::lua {

namespace {

constexpr int mostDepth = 100;
constexpr int mostChildren = 1'000'000;
/// What a widget costs of the script's budget: by default one call makes no more than 25,000.
constexpr std::uint64_t widgetCost = 2000;
constexpr char const* createName = "onCreate";
constexpr char const* overlaysName = "overlays";

// Places in the metatable of a description.
enum Mark { MarkBinding = 1, MarkPosition = 2 };

qor::vector<ClassBinding const*> getChain(ClassBinding const& binding) {
    qor::vector<ClassBinding const*> chain;
    for (ClassBinding const* step = &binding; step; step = step->getBase())
        chain.insert(chain.begin(), step);
    return chain;
}

/// Pushes the raw field of the table at `index`.
void pushField(lua_State* L, int index, char const* key) {
    lua_pushstring(L, key);
    lua_rawget(L, index);
}

int absolute(lua_State* L, int index) { return index > 0 ? index : lua_gettop(L) + index + 1; }

Bindings& bindingsOf(lua_State* L) { return Bindings::open(L); }

/// Sets a layout's properties from its description, and reports what is wrong.
void assignToLayout(lua_State* L, int index, ClassBinding const& binding, Object const& layout,
                    qor::string const& position) {
    lua_pushnil(L);
    while (lua_next(L, index)) {
        // A copy, as lua_tostring turns a number into a text, and lua_next then no longer knows it.
        lua_pushvalue(L, -2);
        qor::string const name(lua_isstring(L, -1) ? lua_tostring(L, -1) : luaL_typename(L, -1));
        lua_pop(L, 1);
        Property const* const property = binding.findProperty(name);
        if (!property || !property->assign)
            bindingsOf(L).report(position + describeUnknown(binding, name));
        else if (!property->assign(L, -1, layout))
            bindingsOf(L).report(position + describeWrong(L, -1, binding, name, property->wants));
        lua_pop(L, 1);
    }
}

}  // namespace

// --- Descriptions ---

int describe(lua_State* L) {
    auto const& binding = *static_cast<ClassBinding const*>(lua_touserdata(L, lua_upvalueindex(1)));
    lua_settop(L, 1);
    if (lua_isnil(L, 1)) {
        lua_newtable(L);
        lua_replace(L, 1);
    } else if (lua_type(L, 1) == LUA_TSTRING && !binding.isLayout()) {
        lua_newtable(L);
        lua_pushvalue(L, 1);
        lua_setfield(L, 2, "text");
        lua_replace(L, 1);
    }
    qor::string position;
    if (!lua_istable(L, 1))
        raise(L, qor::string(binding.getConstructor()) + " wants a table, as in " + binding.getConstructor() + " { }");
    if (ClassBinding const* const other = findDescription(L, 1, &position))
        raise(L, qor::string("this table describes a ") + other->getConstructor() + " already; give " +
                     binding.getConstructor() + " one of its own");
    lua_createtable(L, 2, 1);
    lua_pushlightuserdata(L, const_cast<ClassBinding*>(&binding));
    lua_rawseti(L, -2, MarkBinding);
    luaL_where(L, 1);
    lua_rawseti(L, -2, MarkPosition);
    lua_pushboolean(L, 0);
    lua_setfield(L, -2, "__metatable");
    lua_setmetatable(L, 1);
    lua_settop(L, 1);
    return 1;
}

ClassBinding const* findDescription(lua_State* L, int index, qor::string* position) {
    qor::LuaStackGuard const guard(L);
    if (!lua_istable(L, index) || !lua_getmetatable(L, index))
        return nullptr;
    lua_rawgeti(L, -1, MarkBinding);
    // Scripts have no light userdata, so this mark cannot be theirs.
    if (!lua_islightuserdata(L, -1))
        return nullptr;
    auto const* const binding = static_cast<ClassBinding const*>(lua_touserdata(L, -1));
    lua_rawgeti(L, -2, MarkPosition);
    if (position)
        qor::luaToString(L, -1, *position);
    return binding;
}

// --- Layouts ---

gui::Layout* makeLayout(lua_State* L, int index) {
    index = absolute(L, index);
    qor::string position;
    ClassBinding const* binding = findDescription(L, index, &position);
    bool const described = binding != nullptr;
    if (lua_type(L, index) == LUA_TSTRING)
        binding = findClass(lua_tostring(L, index));
    if (!binding || !binding->isLayout() || !binding->make)
        return nullptr;
    luaL_checkstack(L, 10, "too many nested values");
    Object const object = binding->make();
    if (described)
        assignToLayout(L, index, *binding, object, position);
    return object.layout;
}

bool assignLayout(lua_State* L, int index, gui::Container& container) {
    if (lua_isnil(L, index) || (lua_isboolean(L, index) && !lua_toboolean(L, index))) {
        container.setLayout(nullptr);
        return true;
    }
    gui::Layout* const layout = makeLayout(L, index);
    if (!layout)
        return false;
    container.setLayout(layout->handler());
    return true;
}

// --- Builder ---

Builder::Builder(lua_State* L) : L_(L), bindings_(bindingsOf(L)) {
    luaL_checkstack(L, 40, "too many nested values");
    lua_newtable(L);
    descriptions_ = lua_gettop(L);
}

Builder::~Builder() {
    for (gui::WidgetHandler* const widget : owned_)
        gui::Widget::destroy(gui::WidgetHandler::get(widget));
}

void Builder::release(gui::Widget& widget) { std::erase(owned_, widget.getHandler()); }

void Builder::enter_(gui::Widget& widget, ClassBinding const& binding, int index, qor::string const& position) {
    entries_.push_back({widget.getHandler(), &binding, position});
    lua_pushvalue(L_, index);
    lua_rawseti(L_, descriptions_, static_cast<int>(entries_.size()));
}

gui::Widget* Builder::make(int index, qor::string const& outer) {
    qor::chargeLua(L_, widgetCost);
    luaL_checkstack(L_, 20, "descriptions are nested too deeply");
    index = absolute(L_, index);
    qor::string position;
    ClassBinding const* const binding = findDescription(L_, index, &position);
    if (!binding) {
        bindings_.report(outer + "a widget is wanted here, as in Static { text = \"Name\" }, not a " +
                         luaL_typename(L_, index));
        return nullptr;
    }
    if (binding->isLayout()) {
        bindings_.report(position + binding->getConstructor() +
                         " is a layout; write layout = " + binding->getConstructor() + " { }");
        return nullptr;
    }
    if (!binding->make || depth_ >= mostDepth) {
        bindings_.report(position + (depth_ >= mostDepth
                                         ? qor::string("widgets are nested too deeply, or hold themselves")
                                         : qor::string("a file cannot make a ") + binding->getConstructor()));
        return nullptr;
    }
    gui::Widget* const widget = binding->make().widget;
    owned_.push_back(widget->getHandler());
    ++depth_;
    auto const children = makeList(index, position);
    auto const overlays = makeList(index, position, overlaysName);
    --depth_;
    enter_(*widget, *binding, index, position);
    furnish_(*widget, children, overlays);
    return widget;
}

void Builder::furnish_(gui::Widget& widget, WidgetList const& children, WidgetList const& overlays) {
    // The entry of the widget is the last one now.
    Entry const entry = entries_.back();
    lua_rawgeti(L_, descriptions_, static_cast<int>(entries_.size()));
    int const index = lua_gettop(L_);
    checkKeys_(index, *entry.binding, entry.position);
    assign_(entry, index, Stage::Early);
    for (gui::WidgetHandler* const child : children)
        if (gui::WidgetHandler::get(entry.widget))
            insert(gui::WidgetHandler::get(child), widget, -1, entry.position);
    auto* const window = dynamic_cast<gui::WindowBase*>(gui::WidgetHandler::get(entry.widget));
    for (gui::WidgetHandler* const child : overlays)
        if (window && gui::WidgetHandler::get(entry.widget))
            insertOverlay(child, *window);
    if (gui::WidgetHandler::get(entry.widget))
        arrange_(entry, index, children);
    lua_pop(L_, 1);
}

void Builder::arrange_(Entry const& entry, int index, WidgetList const& children) {
    gui::Widget& widget = *gui::WidgetHandler::get(entry.widget);
    auto* const container = dynamic_cast<gui::Container*>(&widget);
    pushField(L_, index, "layout");
    Property const* const property = entry.binding->findProperty("layout");
    if (!lua_isnil(L_, -1) && property && !property->assign(L_, -1, {&widget}))
        bindings_.report(entry.position + describeWrong(L_, -1, *entry.binding, "layout", property->wants));
    lua_pop(L_, 1);
    // A layout places the children at once, of which the program may be told.
    if (!gui::WidgetHandler::get(entry.widget))
        return;
    if (container)
        for (gui::WidgetHandler* const child : children)
            anchor(gui::WidgetHandler::get(child), *container, -1);
    pushField(L_, index, "size");
    // What is there already keeps its size.
    if (lua_isnil(L_, -1) && std::find(owned_.begin(), owned_.end(), entry.widget) != owned_.end())
        widget.setSize(widget.getPrefSize());
    lua_pop(L_, 1);
}

Builder::WidgetList Builder::makeList(int index, qor::string const& position, char const* key) {
    WidgetList children;
    luaL_checkstack(L_, 20, "descriptions are nested too deeply");
    lua_pushvalue(L_, index);
    if (key) {
        pushField(L_, index, key);
        lua_replace(L_, -2);
    }
    int const list = lua_gettop(L_);
    int count = 0;
    if (lua_istable(L_, list)) {
        // A condition may have left a hole.
        lua_pushnil(L_);
        for (; lua_next(L_, list); lua_pop(L_, 1))
            if (lua_type(L_, -2) == LUA_TNUMBER)
                count = std::max(count, static_cast<int>(std::min<double>(lua_tonumber(L_, -2), mostChildren)));
    }
    for (int i = 1; i <= count; ++i) {
        qor::chargeLua(L_, 1);
        lua_rawgeti(L_, list, i);
        if (lua_toboolean(L_, -1))
            if (gui::Widget* const child = make(lua_gettop(L_), position))
                children.push_back(child->getHandler());
        lua_pop(L_, 1);
    }
    lua_pop(L_, 1);
    return children;
}

bool Builder::insert(gui::Widget* child, gui::Widget& parent, int place, qor::string const& position) {
    if (!child)
        return false;
    gui::WidgetHandler* const handler = child->getHandler();
    ClassBinding const& binding = *findClassOf({&parent});
    ClassBinding const* const inserter = binding.findInserter();
    auto const* const window = dynamic_cast<gui::WindowBase*>(child);
    qor::string refused;
    if (!inserter)
        refused = qor::string(binding.getConstructor()) + " holds no widgets; a Panel does";
    else if (window && !window->getAsWidget())
        refused = qor::string(child->getWidgetType()) +
                  " is a window of its own; give it to open() or create(), or set asWidget = true";
    else
        inserter->insert(parent, child, place);
    child = gui::WidgetHandler::get(handler);
    if (child && refused.empty() && !child->getParent())
        refused = qor::string(binding.getConstructor()) + " shows no widgets; a BuddyWindow or a Window does";
    if (refused.empty()) {
        std::erase(owned_, handler);
        return child != nullptr;
    }
    bindings_.report(position + refused);
    std::erase(owned_, handler);
    gui::Widget::destroy(child);
    return false;
}

void Builder::insertOverlay(gui::WidgetHandler* child, gui::WindowBase& window) {
    if (gui::Widget* const overlay = gui::WidgetHandler::get(child)) {
        window.insertOverlayWidget(overlay, -1);
        std::erase(owned_, child);
    }
}

void Builder::clearOverlays(gui::WindowBase& window) {
    gui::WidgetHandler* const handler = window.getHandler();
    while (gui::WidgetHandler::get(handler) && window.getOverlayWidgetCount() > 0) {
        gui::Widget* const overlay = window.getOverlayWidget(0);
        window.removeOverlayWidget(overlay);
        gui::Widget::destroy(overlay);
    }
}

void Builder::anchor(gui::Widget* child, gui::Container& container, int place) {
    auto* const layout = dynamic_cast<gui::AnchorLayout*>(gui::LayoutHandler::get(container.getLayout()));
    if (!child || !child->getParent())
        return;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        Entry const& entry = entries_[i];
        if (entry.widget != child->getHandler())
            continue;
        lua_rawgeti(L_, descriptions_, static_cast<int>(i) + 1);
        pushField(L_, lua_gettop(L_), "anchors");
        gui::AnchorLayout::AnchorInfo info;
        if (!lua_isnil(L_, -1) && !layout)
            bindings_.report(entry.position + "'anchors' count in an AnchorLayout only; give the parent one");
        else if (!lua_isnil(L_, -1) && !Value<gui::AnchorLayout::AnchorInfo>::read(L_, -1, info))
            bindings_.report(entry.position + describeWrong(L_, -1, *entry.binding, "anchors",
                                                            Value<gui::AnchorLayout::AnchorInfo>::wants));
        lua_pop(L_, 2);
        if (layout)
            layout->insertAnchorInfo(info, place);
        return;
    }
}

// --- Properties ---

void Builder::checkKeys_(int index, ClassBinding const& binding, qor::string const& position) {
    // In the order of the alphabet, since that of a table changes from run to run.
    qor::set<qor::string> keys;
    lua_pushnil(L_);
    for (; lua_next(L_, index); lua_pop(L_, 1)) {
        int const type = lua_type(L_, -2);
        if (type == LUA_TSTRING)
            keys.insert(lua_tostring(L_, -2));
        else if (type == LUA_TNUMBER)
            checkPlace_(binding, position);
        else
            bindings_.report(position + "a " + lua_typename(L_, type) + " names nothing in a " +
                             binding.getConstructor());
    }
    for (qor::string const& key : keys)
        checkKey_(key, binding, position);
}

// The key lies below the top of the stack.
void Builder::checkPlace_(ClassBinding const& binding, qor::string const& position) {
    double const place = lua_tonumber(L_, -2);
    if (place >= 1 && place <= mostChildren && place == std::floor(place))
        return;
    qor::string number;
    qor::luaToString(L_, -2, number);
    bindings_.report(position + "children are numbered from 1 on; " + number + " is none of a " +
                     binding.getConstructor() + "'s");
}

void Builder::checkKey_(std::string_view key, ClassBinding const& binding, qor::string const& position) {
    if (key == createName)
        return;
    Property const* const property = binding.findProperty(key);
    if (property && property->assign)
        return;
    if (binding.findEvent(key))
        return;
    if (property)
        bindings_.report(position + "'" + qor::string(key) + "' of a " + binding.getConstructor() +
                         " can only be read");
    else if (binding.findMethod(key))
        bindings_.report(position + "'" + qor::string(key) + "' is called, as in self:" + qor::string(key) + "()");
    else
        bindings_.report(position + describeUnknown(binding, key));
}

void Builder::assign_(Entry const& entry, int index, Stage stage) {
    for (ClassBinding const* const step : getChain(*entry.binding))
        for (Property const& property : step->properties) {
            if (property.stage != stage || !property.assign)
                continue;
            gui::Widget* const widget = gui::WidgetHandler::get(entry.widget);
            if (!widget)
                return;
            pushField(L_, index, property.name);
            if (!lua_isnil(L_, -1) && !property.assign(L_, lua_gettop(L_), {widget}))
                bindings_.report(entry.position + describeWrong(L_, -1, *entry.binding, property.name, property.wants));
            lua_pop(L_, 1);
        }
}

void Builder::attach_(Entry const& entry, int index) {
    for (ClassBinding const* const step : getChain(*entry.binding))
        for (Event const& event : step->events) {
            gui::Widget* const widget = gui::WidgetHandler::get(entry.widget);
            if (!widget)
                return;
            pushField(L_, index, event.name);
            if (lua_isfunction(L_, -1))
                LuaCallback::attach(L_, lua_gettop(L_), *widget, {event.kind, event.word});
            else if (lua_toboolean(L_, -1))
                bindings_.report(entry.position + describeWrong(L_, -1, *entry.binding, event.name, "a function"));
            lua_pop(L_, 1);
        }
}

void Builder::finish() {
    auto const forEach = [this](auto function) {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            lua_rawgeti(L_, descriptions_, static_cast<int>(i) + 1);
            if (gui::WidgetHandler::get(entries_[i].widget))
                function(entries_[i], lua_gettop(L_));
            lua_pop(L_, 1);
        }
    };
    forEach([this](Entry const& entry, int index) { assign_(entry, index, Stage::Late); });
    forEach([this](Entry const& entry, int index) {
        assign_(entry, index, Stage::Callbacks);
        attach_(entry, index);
    });
    forEach([this](Entry const& entry, int index) {
        pushField(L_, index, createName);
        if (lua_isfunction(L_, -1)) {
            callWithWidget(L_, *gui::WidgetHandler::get(entry.widget), createName);
            return;
        }
        if (lua_toboolean(L_, -1))
            bindings_.report(entry.position + describeWrong(L_, -1, *entry.binding, createName, "a function"));
        lua_pop(L_, 1);
    });
    forEach([this](Entry const& entry, int index) { assign_(entry, index, Stage::Final); });
}

// --- Windows that are there already ---

void Builder::remember(gui::WindowBase& window, ClassBinding const& binding, int index) {
    bindings_.forgetDead();
    auto& set = bindings_.propertiesOf(window.getHandler());
    set.clear();
    index = absolute(L_, index);
    for (ClassBinding const* step = &binding; step; step = step->getBase())
        for (Property const& property : step->properties) {
            pushField(L_, index, property.name);
            if (!lua_isnil(L_, -1) && property.push && property.assign && property.stage != Stage::ByBuilder &&
                property.stage != Stage::Callbacks)
                set.push_back(&property);
            lua_pop(L_, 1);
        }
}

// What the last file has set and this one does not goes back to what a new window has.
void Builder::reset_(gui::WindowBase& window, ClassBinding const& binding, int index) {
    gui::WidgetHandler* const handler = window.getHandler();
    Bindings::PropertyList const set = bindings_.propertiesOf(handler);
    Object fresh;
    for (Property const* const property : set) {
        pushField(L_, index, property->name);
        bool const stays = !lua_isnil(L_, -1);
        lua_pop(L_, 1);
        if (stays || property->stage == Stage::Final || !binding.make ||
            binding.findProperty(property->name) != property)
            continue;
        if (!fresh.widget) {
            fresh = binding.make();
            owned_.push_back(fresh.widget->getHandler());
        }
        if (!gui::WidgetHandler::get(handler))
            return;
        property->push(L_, fresh);
        property->assign(L_, lua_gettop(L_), {&window});
        lua_pop(L_, 1);
    }
}

void Builder::fill(gui::WindowBase& window, int index) {
    index = absolute(L_, index);
    gui::WidgetHandler* const handler = window.getHandler();
    ClassBinding const& binding = *findClassOf({&window});
    qor::string position;
    ClassBinding const& described = *findDescription(L_, index, &position);
    if (!described.matches({&window}))
        bindings_.report(position + "this describes a " + described.getConstructor() + ", but the window is a " +
                         binding.getConstructor() + " and stays one; make it anew to change that");
    WidgetList const children = makeList(index, position);
    WidgetList const overlays = makeList(index, position, overlaysName);

    LuaCallback::detachAll(L_, window);
    clearOverlays(window);
    if (gui::WidgetHandler::get(handler))
        binding.findInserter()->clear(window);
    if (gui::WidgetHandler::get(handler))
        window.setLayout(nullptr);
    if (gui::WidgetHandler::get(handler))
        reset_(window, binding, index);
    if (!gui::WidgetHandler::get(handler))
        return;
    enter_(window, binding, index, position);
    furnish_(window, children, overlays);
    if (!gui::WidgetHandler::get(handler))
        return;
    remember(window, binding, index);
    finish();
}

}  // namespace host::lua
