#pragma once

#include <functional>
#include <type_traits>
#include <utility>

#include "gui_lib/layouts/Layout.h"
#include "gui_lib/widget/Widget.h"
#include "host/lua/Values.h"
#include "platform/qor/Containers.h"

struct lua_State;

/// How a class of the toolkit looks from window files: its constructor, properties, callbacks and methods. Each class
/// has one such description, made in a file of host/lua/classes and named in host/lua/ClassList.cpp.
namespace host::lua {

/// A widget or a layout.
struct Object {
    gui::Widget* widget = nullptr;
    gui::Layout* layout = nullptr;
};

template <class Class>
Class& as(Object const& object) {
    if constexpr (std::is_base_of_v<gui::Layout, Class>)
        return static_cast<Class&>(*object.layout);
    else
        return static_cast<Class&>(*object.widget);
}

/// When a property of a file is set: before the widget has children; when the whole tree stands; with the callbacks; at
/// the very end. Some are handled by the builder itself and are set by their functions only while the window lives.
enum class Stage { Early, Late, Callbacks, Final, ByBuilder };

struct Property {
    char const* name;
    /// What a value must be, in words.
    char const* wants;
    /// Pushes one value. Null: it can only be set.
    void (*push)(lua_State* L, Object object);
    /// False, with nothing changed, if the value is not what is wanted. Null: it can only be read.
    bool (*assign)(lua_State* L, int index, Object object);
    Stage stage = Stage::Early;
};

enum class EventKind { Widget, Mouse, Wheel, Keyboard, HotKey };

/// A callback under a name of its own: `word` is its name in the toolkit.
struct Event {
    char const* name;
    EventKind kind;
    char const* word;
};

/// The arguments begin at index 2; returns how many results it has pushed, and may raise an error.
struct Method {
    char const* name;
    int (*call)(lua_State* L, Object object);
};

struct ClassBinding {
    /// The type word of the class.
    char const* word = "";
    /// The name of the constructor in window files; the word if this is empty.
    char const* constructor = "";
    /// Type word of the class whose properties, events and methods it has too; empty for none.
    char const* base = "";
    bool (*matches)(Object object) = nullptr;
    /// Null where a file cannot make one.
    Object (*make)() = nullptr;
    /// Null where no children can be given.
    void (*insert)(gui::Widget& parent, gui::Widget* child, int index) = nullptr;
    void (*clear)(gui::Widget& parent) = nullptr;
    qor::vector<Property> properties = {};
    qor::vector<Event> events = {};
    qor::vector<Method> methods = {};

    char const* getConstructor() const { return *constructor ? constructor : word; }
    bool isLayout() const;
    ClassBinding const* getBase() const;
    /// These look at the bases too and answer null where there is none.
    Property const* findProperty(std::string_view name) const;
    Event const* findEvent(std::string_view name) const;
    Method const* findMethod(std::string_view name) const;
    ClassBinding const* findInserter() const;
};

/// All, bases first.
qor::vector<ClassBinding> const& getClassBindings();
/// By type word; null for an unknown one.
ClassBinding const* findClass(std::string_view word);
/// That of the object's class, or of the nearest class that it derives from. Null only for an empty object.
ClassBinding const* findClassOf(Object const& object);
/// The name nearest to a wrong one, or an empty text where none is near.
qor::string findSimilar(std::string_view wrong, qor::vector<std::string_view> const& names);
/// Every name that a file may give to an object of the class.
qor::vector<std::string_view> getMemberNames(ClassBinding const& binding);

/// Pushes the handle of an object, or nil for an empty one.
void pushObject(lua_State* L, Object const& object);

/// Makes the parts of a ClassBinding from members of the class or from functions without captures.
template <class Class>
struct Define {
    /// `get` and `set` are member functions: property<&Static::getAngle, &Static::setAngle>("angle").
    template <auto get, auto set>
    static Property property(char const* name, Stage stage = Stage::Early) {
        using Type = std::decay_t<decltype(std::invoke(get, std::declval<Class&>()))>;
        return {name, Value<Type>::wants,
                [](lua_State* L, Object object) { Value<Type>::push(L, std::invoke(get, as<Class>(object))); },
                [](lua_State* L, int index, Object object) {
                    Type value{};
                    if (!Value<Type>::read(L, index, value))
                        return false;
                    std::invoke(set, as<Class>(object), value);
                    return true;
                },
                stage};
    }

    /// `Type get(Class&)` and `void set(Class&, Type const&)`.
    template <class Get, class Set>
    static Property property(char const* name, Get, Set, Stage stage = Stage::Early) {
        using Type = std::decay_t<decltype(Get{}(std::declval<Class&>()))>;
        Property result = readOnly(name, Get{});
        result.wants = Value<Type>::wants;
        result.assign = [](lua_State* L, int index, Object object) {
            Type value{};
            if (!Value<Type>::read(L, index, value))
                return false;
            Set{}(as<Class>(object), value);
            return true;
        };
        result.stage = stage;
        return result;
    }

    /// `Type get(Class&)`.
    template <class Get>
    static Property readOnly(char const* name, Get) {
        using Type = std::decay_t<decltype(Get{}(std::declval<Class&>()))>;
        return {name, "", [](lua_State* L, Object object) { Value<Type>::push(L, Get{}(as<Class>(object))); }, nullptr};
    }

    /// `Widget* get(Class&)`, which may be null.
    template <class Get>
    static Property part(char const* name, Get) {
        return {name, "", [](lua_State* L, Object object) { pushObject(L, {Get{}(as<Class>(object))}); }, nullptr};
    }

    /// `int call(lua_State*, Class&)`.
    template <class Call>
    static Method method(char const* name, Call) {
        return {name, [](lua_State* L, Object object) { return Call{}(L, as<Class>(object)); }};
    }

    /// The word comes from the class itself, by the caller.
    static ClassBinding binding(char const* word, char const* base) {
        ClassBinding result;
        result.word = word;
        result.base = base;
        result.matches = [](Object object) {
            if constexpr (std::is_base_of_v<gui::Layout, Class>)
                return dynamic_cast<Class*>(object.layout) != nullptr;
            else
                return dynamic_cast<Class*>(object.widget) != nullptr;
        };
        return result;
    }

    /// `Class* make()`.
    template <class Make>
    static ClassBinding binding(char const* word, char const* base, Make) {
        ClassBinding result = binding(word, base);
        result.make = [] {
            Object object;
            if constexpr (std::is_base_of_v<gui::Layout, Class>)
                object.layout = Make{}();
            else
                object.widget = Make{}();
            return object;
        };
        return result;
    }

    /// Children by the class's own insertWidget and clear.
    static void addChildren(ClassBinding& binding) {
        binding.insert = [](gui::Widget& parent, gui::Widget* child, int index) {
            static_cast<Class&>(parent).insertWidget(child, index);
        };
        binding.clear = [](gui::Widget& parent) { static_cast<Class&>(parent).clear(); };
    }
};

}  // namespace host::lua
