#include <gtest/gtest.h>

#include <map>
#include <set>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/ClassBinding.h"
#include "host/lua/WindowResources.h"
#include "tests/resources/ResourceHost.h"

namespace {

using host::lua::ClassBinding;
using host::lua::Property;

/// Two values of each property, as Lua; the second is set while the widget lives. Written as they are read back.
std::map<std::string, std::pair<char const*, char const*>> const samples = {
    {"name", {"'it'", "'it'"}},
    {"text", {"'Größe %d'", "'other'"}},
    {"tooltip", {"'a hint'", "'$hint'"}},
    {"resourceString", {"'res'", "'source'"}},
    {"skin", {"'staticSkin'", "'panelSkin'"}},
    {"skinParams",
     {"{textLineHeight = 21}", "{textLineHeight = 22, focusRectColor = '0x11223344', minSize = {horz = 3, vert = 4}}"}},
    {"tooltipSkin", {"'tooltipSkin'", "'staticSkin'"}},
    {"checkLook", {"{color = '0x11223344'}", "{userTexSampler = 2, color = '0x11223344'}"}},
    {"effect", {"'alpha'", "'flickerQuads'"}},
    {"cursor", {"36", "39"}},
    {"picture", {"'tests/graphics/picture.png'", "'atlas/parts.png'"}},
    {"minSize", {"{11, 12}", "{13, 14}"}},
    {"maxSize", {"{411, 0}", "{0, 412}"}},
    {"insets", {"{1, 2, 3, 4}", "{5, 6, 7, 8}"}},
    {"textWrapping", {"true", "false"}},
    {"useEllipsis", {"true", "false"}},
    {"textLook", {"{fontSize = 17, color = '0x11223344'}", "{font = 'fonts/Inter-Medium.otf', fontSize = 17}"}},
    {"pictureLook", {"{color = '0x11223344'}", "{userTexSampler = 2, color = '0x11223344'}"}},
    {"bkgLook", {"{center_center = '0x11223344'}", "{left_top = '0x55667788', center_center = '0x11223344'}"}},
    {"zoom", {"2", "0.5"}},
    {"opacity", {"0.5", "0.25"}},
    {"drawToTarget", {"true", "false"}},
    {"position", {"{7, -9}", "{11, 12}"}},
    {"size", {"{190, 170}", "{211, 190}"}},
    {"tabOrder", {"3", "4"}},
    {"enabled", {"false", "true"}},
    {"anchors",
     {"{left = {'max', 3}, top = {'stretch', 0}, right = {'center', -2}, bottom = {'min', 0}}",
      "{left = {'min', 1}, top = {'min', 2}, right = {'max', 3}, bottom = {'max', 4}}"}},
    {"callbacks", {"{['widget change'] = f, ['some word'] = g}", "{['widget change'] = g, ['some word'] = f}"}},
    {"mouse", {"{down = f, ['double down'] = g, wheel = f}", "{down = g, ['double down'] = f, wheel = g}"}},
    {"keyboard", {"{down = f, char = g}", "{down = g, char = f}"}},
    {"visible", {"false", "true"}},
    {"focused", {"true", "false"}},
    {"layout", {"'horz'", "'form'"}},
    {"range", {"{-10, 290.5}", "{0, 400}"}},
    {"thumbValue", {"20", "25"}},
    {"step", {"2", "5"}},
    {"pageStep", {"30", "40"}},
    {"value", {"64", "66"}},
    {"vertMouseWheel", {"false", "true"}},
    {"horzMouseWheel", {"true", "false"}},
    {"vertStep", {"3", "4"}},
    {"horzStep", {"5", "6"}},
    {"vertPageStep", {"33", "44"}},
    {"horzPageStep", {"55", "66"}},
    {"vertValue", {"150", "160"}},
    {"horzValue", {"170", "180"}},
    {"state", {"1", "0"}},
    {"checked", {"true", "false"}},
    {"angle", {"30", "-12.5"}},
    {"pivotPoint", {"{5, 6}", "{7, 8}"}},
    {"surfaceId", {"1", "0"}},
    {"hasCursor", {"false", "true"}},
    {"draggable", {"false", "true"}},
    {"resizable", {"true", "false"}},
    {"clipResizeCursor", {"true", "false"}},
    {"asWidget", {"true", "false"}},
    {"hasCloseButton", {"false", "true"}},
    {"overlays", {"{Static 'a', Static 'b'}", "{Static 'a', Button 'c'}"}},
    {"hotKeys", {"{['ctrl+s'] = f, ['shift+page up'] = g}", "{['ctrl+s'] = g, ['shift+page up'] = f}"}},
    {"zOrder", {"2", "-3"}},
    {"transparentForUserInput", {"true", "false"}},
    {"lockFlow", {"false", "true"}},
    {"active", {"true", "false"}},
    {"gap", {"8", "3"}},
    {"horzGap", {"8", "3"}},
    {"vertGap", {"9", "4"}},
    {"horzAlign", {"{'max', 2}", "{'stretch', 0}"}},
    {"vertAlign", {"{'center', 0}", "{'min', 5}"}},
    {"captionsAlign", {"{{'max', 2}, {'center', 1}}", "{{'min', 0}, {'stretch', 0}}"}},
    {"fieldsAlign", {"{{'stretch', 0}, {'min', 1}}", "{{'max', 0}, {'max', 3}}"}},
    {"imageInfo", {"{file = 'x.png', userTexSampler = 2}", "{file = 'y.png', tileVertically = true}"}},
    {"buddy", {"false", "false"}},
};

/// TabGroupItem's state is no number.
std::pair<char const*, char const*> getSample(ClassBinding const& binding, Property const& property) {
    if (std::string(binding.word) == "TabGroupItem" && std::string(property.name) == "state")
        return {"true", "false"};
    auto const found = samples.find(property.name);
    if (found == samples.end()) {
        ADD_FAILURE() << "write a sample for the property " << property.name;
        return {"nil", "nil"};
    }
    return found->second;
}

/// Lua that tells whether a value is as it was written: functions f and g stand for themselves, widgets for their
/// texts, layouts for their types; keys that were not written do not count.
char const* const sameFunction = R"(
    f = f or function() end
    g = g or function() end
    function same(read, written)
        if type(written) == "table" and type(read) == "userdata" then return read.text == written.text end
        if type(written) == "string" and type(read) == "userdata" then return read.type == written end
        if type(written) ~= "table" or type(read) ~= "table" then
            return read == written or (read == nil and written == false)
        end
        for key, value in pairs(written) do
            if not same(read[key], value) then return false end
        end
        return true
    end
)";

bool hasSkin(ClassBinding const& binding) {
    gui::Widget* const widget = binding.make().widget;
    bool const has = widget && widget->getWidgetSkin();
    gui::Widget::destroy(widget);
    return has;
}

bool isWindow(ClassBinding const& binding) {
    for (ClassBinding const* step = &binding; step; step = step->getBase())
        if (std::string(step->word) == "WindowBase")
            return true;
    return false;
}

/// A file in which the property of the class has the value; what was made can be found as the local `it` of `checks`.
std::string writeFile(ClassBinding const& binding, std::string const& property, std::string const& value) {
    std::string made = std::string(binding.getConstructor()) + " { " + property + " = " + value;
    if (binding.isLayout())
        return std::string(sameFunction) + "return Window { size = {300, 300}, layout = " + made + " } }";
    if (property != "name")
        made += ", name = 'it'";
    if (property != "size" && property != "text" && property != "insets")
        made += ", size = {200, 180}";
    // Something to scroll.
    if (std::string(binding.word) == "ScrollPane")
        made += ", Button { size = {900, 900} }";
    made += " }";
    if (isWindow(binding))
        return std::string(sameFunction) + "return " + made;
    return std::string(sameFunction) + "return Window { size = {400, 400}, layout = 'anchor', " + made + " }";
}

/// The handle of what the file describes, from that of its window.
std::string writeAccess(ClassBinding const& binding) {
    return binding.isLayout() ? "w.layout" : isWindow(binding) ? "w" : "w:find('it')";
}

TEST(WindowResources, everyPropertyOfEveryClassIsReadAsItWasSet) {
    ResourceHost host;
    gui::GUI::get()->createSurface();
    for (ClassBinding const& binding : host::lua::getClassBindings()) {
        for (ClassBinding const* step = &binding; binding.make && step; step = step->getBase())
            for (Property const& property : step->properties) {
                std::string const name = property.name;
                bool const viewless = name == "hasCloseButton" && binding.findProperty("active");
                // Popups keep their children apart from what a layout could place; nothing else takes the focus away.
                if (!property.push || !property.assign || viewless || (name == "anchors" && isWindow(binding)))
                    continue;
                static std::set<std::string> const ofSkins = {
                    "minSize",     "maxSize", "insets", "textWrapping", "useEllipsis", "textLook",
                    "pictureLook", "bkgLook", "skin",   "skinParams",   "effect"};
                if (ofSkins.count(name) && !hasSkin(binding))
                    continue;
                bool const focusable = name != "tabOrder" || host::lua::as<gui::Widget>(binding.make()).getFocusable();
                if (!focusable)
                    continue;
                auto const [first, second] = getSample(*step, property);
                // A blocking window would not come back, and one on its way is not focused.
                gui::WindowBase* const window = host.make(writeFile(binding, name, first));
                ASSERT_TRUE(window) << binding.word << "." << name << "\n" << host.takeErrorText();
                std::string const access = writeAccess(binding);
                auto const expect = [&](char const* value) {
                    std::string const wanted = name == "overlays" ? "{{text = 'a'}}" : value;
                    EXPECT_TRUE(host.run(*window, std::string(sameFunction) + "local it = " + access +
                                                      " return same(it." + name + ", " + wanted + ")"))
                        << binding.word << "." << name << " is not " << value;
                };
                if (name != "callbacks" && name != "mouse" && name != "keyboard" && name != "hotKeys")
                    expect(first);
                bool const blocks = name == "visible" && binding.findProperty("lockFlow");
                if (!blocks && name != "overlays") {
                    EXPECT_TRUE(host.run(
                        *window, std::string(sameFunction) + access + "." + name + " = " + second + " return true"));
                    expect(second);
                }
                EXPECT_EQ(host.takeErrorText(), "") << binding.word << "." << name;
                gui::Widget::destroy(window);
            }
    }
}

TEST(WindowResources, everyClassOfTheZooHasABinding) {
    ResourceHost host;
    for (support::ZooAnimal const& animal : support::getZoo()) {
        gui::Widget* const widget = animal.make();
        ClassBinding const* const binding = host::lua::findClass(widget->getWidgetType());
        EXPECT_TRUE(binding) << "no binding for " << widget->getWidgetType();
        EXPECT_EQ(host::lua::findClassOf({widget}), binding) << animal.name;
        gui::Widget::destroy(widget);
    }
}

TEST(WindowResources, everyEventTakesAFunctionAndGivesItBack) {
    ResourceHost host;
    for (ClassBinding const& binding : host::lua::getClassBindings())
        for (ClassBinding const* step = &binding; binding.make && step; step = step->getBase())
            for (host::lua::Event const& event : step->events) {
                gui::WindowBase* const window = host.make(writeFile(binding, event.name, "f"));
                ASSERT_TRUE(window) << binding.word << host.takeErrorText();
                std::string const it = writeAccess(binding) + "." + event.name;
                EXPECT_TRUE(host.check(*window, "type(" + it + ") == 'function'")) << binding.word << "." << event.name;
                EXPECT_TRUE(host.run(*window, it + " = nil return " + it + " == nil"));
                gui::Widget::destroy(window);
                EXPECT_EQ(ResourceHost::countKept(), 0) << binding.word << "." << event.name;
            }
    EXPECT_EQ(host.takeErrorText(), "");
}

TEST(WindowResources, valuesAreTakenInEveryFormThatSkinsKnow) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(return Window {
        size = {horz = 300, vert = 200},
        layout = VertLayout { gap = 4, horzAlign = { type = "right", offset = 3 }, vertAlign = "middle" },
        Static "only a text" })");
    ASSERT_TRUE(window);
    EXPECT_EQ(host.takeErrorText(), "");
    EXPECT_EQ(window->getSize(), osg::Vec2i(300, 200));
    EXPECT_EQ(window->getWidget(0)->getText(), L"only a text");
    EXPECT_TRUE(host.check(*window, "w.layout.horzAlign[1] == 'max' and w.layout.horzAlign[2] == 3"));
    EXPECT_TRUE(host.check(*window, "w.layout.vertAlign[1] == 'center'"));
}

}  // namespace
