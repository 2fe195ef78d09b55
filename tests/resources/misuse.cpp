#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/WindowBase.h"
#include "tests/resources/ResourceHost.h"
#include "tests/support/LogCapture.h"

namespace {

struct Misuse {
    /// Stands in line 3 of the file, as a child of the window or a property of it.
    char const* line;
    /// The report begins with "FILE:3: ", and goes on so.
    char const* report;
};

Misuse const misuses[] = {
    {"Button { tezt = 'x' }", "'tezt' is unknown to a Button; did you mean 'text'?"},
    {"Button { TEXT = 'x' }", "'TEXT' is unknown to a Button; did you mean 'text'?"},
    {"Button { qwertyuiop = 1 }", "'qwertyuiop' is unknown to a Button; docs/resources.md lists"},
    {"Button { onChnage = print }", "'onChnage' is unknown to a Button; did you mean 'onChange'?"},
    {"Button { size = 'big' }", "'size' of a Button wants two numbers, as in {320, 240}, not \"big\""},
    {"Button { size = {1} }", "'size' of a Button wants two numbers, as in {320, 240}; this table is something else"},
    {"Button { size = setmetatable({}, {__index = error}) }", "'size' of a Button wants two numbers"},
    {"Button { zoom = 0 / 0 }", "'zoom' of a Button wants a number, not a number"},
    {"Button { enabled = 1 }", "'enabled' of a Button wants true or false, not a number"},
    {"Button { text = {} }", "'text' of a Button wants a text"},
    {"Button { onChange = 'print' }", "'onChange' of a Button wants a function, not \"print\""},
    {"Button { onCreate = 3 }", "'onCreate' of a Button wants a function, not a number"},
    {"Button { skinParams = {minSiez = {horz = 1, vert = 2}} }",
     "'skinParams' of a Button wants a table, as the params"},
    {"Button { tooltipSkin = {} }", "'tooltipSkin' of a Button wants the name of a skin, or false for none"},
    {"Button { effect = {'alpha', duration = 'long'} }", "'effect' of a Button wants the name of an effect, a table"},
    {"TextureView { picture = {} }", "'picture' of a TextureView wants a picture file that can be read"},
    {"Button { parent = 1 }", "'parent' of a Button can only be read"},
    {"Button { find = 1 }", "'find' is called, as in self:find()"},
    {"Button { mouse = {dwon = print} }", "'mouse' of a Button wants a table of functions by the words"},
    {"Button { anchors = {left = 'max'} }", "'anchors' count in an AnchorLayout only; give the parent one"},
    {"Button { anchors = 5 }", "'anchors' count in an AnchorLayout only"},
    {"Button { [true] = 1 }", "a boolean names nothing in a Button"},
    {"Panel { [0] = Static 'x' }", "children are numbered from 1 on; 0 is none of a Panel's"},
    {"Panel { Static 'x', [2.5] = Static 'x' }", "children are numbered from 1 on; 2.5 is none of a Panel's"},
    {"Button { Static 'x' }", "Button holds no widgets; a Panel does"},
    {"Panel { layout = 'hroz' }", "'layout' of a Panel wants a layout, as in VertLayout { gap = 8 } or \"vert\""},
    {"Panel { layout = VertLayout { gpa = 3 } }", "'gpa' is unknown to a VertLayout; did you mean 'gap'?"},
    {"Panel { layout = VertLayout { gap = true } }", "'gap' of a VertLayout wants a number, not a boolean"},
    {"Panel { layout = Button { } }", "'layout' of a Panel wants a layout"},
    {"Panel { VertLayout { } }", "VertLayout is a layout; write layout = VertLayout { }"},
    {"Panel { 'text' }", "a widget is wanted here, as in Static { text = \"Name\" }, not a string"},
    {"Panel { print }", "a widget is wanted here, as in Static { text = \"Name\" }, not a function"},
    {"Panel { Window { } }", "Window is a window of its own; give it to open() or create(), or set asWidget = true"},
    {"PopupWindow { asWidget = true, Static 'x' }", "PopupWindow shows no widgets; a BuddyWindow or a Window does"},
    {"BuddyWindow { asWidget = true, buddy = 5 }", "'buddy' of a BuddyWindow wants a widget that lives already"},
    {"hotKeys = {['ctrl+nokey'] = print}", "'hotKeys' of a Window wants functions by their keys"},
    {"overlays = {5}", "a widget is wanted here, as in Static { text = \"Name\" }, not a number"},
};

TEST(WindowResources, eachMisuseInAFileIsOneLineAndTheRestIsBuilt) {
    for (Misuse const& misuse : misuses) {
        ResourceHost host;
        int const widgets = ResourceHost::countWidgets();
        support::LogCapture log;
        gui::WindowBase* const window =
            host.make(std::string("return Window {\n    Static { name = 'before' },\n    ") + misuse.line +
                      ",\n    Static { name = 'after' } }");
        ASSERT_TRUE(window) << misuse.line << log.dump();
        std::vector<std::string> errors = host.takeErrors();
        ASSERT_EQ(errors.size(), 1u) << misuse.line << log.dump();
        // What stands in the window's own table is told by the line where the window begins.
        errors[0].replace(0, 7, errors[0].starts_with("FILE:1:") ? "FILE:3:" : errors[0].substr(0, 7));
        EXPECT_EQ(errors[0].find(std::string("FILE:3: ") + misuse.report), 0u) << errors[0];
        EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
        EXPECT_TRUE(window->findWidgetByName(L"before") && window->findWidgetByName(L"after"));
        gui::Widget::destroy(window);
        EXPECT_EQ(ResourceHost::countWidgets(), widgets) << misuse.line;
    }
}

/// Run in a function of the file, in line 4 of it; `w` is the window, `b` a button, `p` the panel that holds it.
Misuse const liveMisuses[] = {
    {"b.tezt = 'x'", "'tezt' is unknown to a Button; did you mean 'text'?"},
    {"local x = b.tezt", "'tezt' is unknown to a Button; did you mean 'text'?"},
    {"b.size = {}", "'size' of a Button wants two numbers"},
    {"b.parent = p", "'parent' of a Button can only be read"},
    {"b[1] = 2", "what a Button has is named by a text, not by a number"},
    {"b.onChange = 5", "'onChange' of a Button wants a function, or nil for none, not a number"},
    {"b.anchors = {left = 'max'}", "'anchors' count in an AnchorLayout only; give the parent one"},
    {"b:insert(Static 'x')", "'insert' is unknown to a Button"},
    {"p.insert(b, Static 'x')", "'insert' is unknown to a Button"},
    {"p.insert(Static 'x')", "'insert' is called with a colon, as in self:insert()"},
    {"p:insert(w)", "a widget cannot be inserted into itself or into what it holds"},
    {"p:insert(p)", "a widget cannot be inserted into itself or into what it holds"},
    {"p:insert(5)", "insert wants a widget, as in self:insert(Static { text = \"Name\" }), not a number"},
    {"p:insert(create(Window { name = 'other' }))", "a window cannot be inserted; insert what it holds"},
    {"b:destroy() b.text = 'x'", "this Button has been destroyed; ask its 'alive' before it is used"},
    {"p:clear() print(b.text)", "this Button has been destroyed"},
    {"w:find('')", "find wants a name, or names with '/' between them"},
    {"w:find(nil)", "bad argument #1 to 'find'"},
    {"open(Button 'x')", "a Button is no window; insert it into one"},
    {"create(5)", "a window is wanted here, as in Window { }, not a number"},
    {"create(VertLayout { })", "a window is wanted here, as in Window { }, not a VertLayout"},
    {"Buton { }", "'Buton' is unknown; did you mean 'Button'?"},
    {"Button(5)", "Button wants a table, as in Button { }"},
    {"local t = {} Button(t) Static(t)", "this table describes a Button already; give Static one of its own"},
    {"isKeyDown('any')", "there is no key 'any'"},
    {"w.layout = 'vert' w.layout.gap = 'x'", "'gap' of a VertLayout wants a number, not \"x\""},
    {"w.layout = 'vert' local l = w.layout w.layout = false l.gap = 1", "this VertLayout has been destroyed"},
    {"w.layout = 'vert' b.find(w.layout, 'x')", "'find' is unknown to a VertLayout"},
    {"a:setTextColor('red')", "what is wanted here is a colour, as in"},
    {"nothing.at = 1", "attempt to index global 'nothing' (a nil value)"},
    {"openFile('no/such/file.lua')", "no/such/file.lua: not found"},
};

TEST(WindowResources, eachMisuseInAFunctionIsOneLineAndTheWindowLives) {
    for (Misuse const& misuse : liveMisuses) {
        ResourceHost host;
        gui::WindowBase* const window = host.make(std::string(
                                                      R"(return Window { name = "w", visible = true, size = {300, 300},
            onPosition = function(w)
                local p, b, a = w:find("p"), w:find("b"), w:find("a")
                )") + misuse.line + R"(
            end,
            Panel { name = "p", size = {100, 100}, Button { name = "b" } }, AnimatedColorStatic { name = "a" } })");
        ASSERT_TRUE(window) << misuse.line << host.takeErrorText();
        support::LogCapture log;
        window->setPosition({9, 9});
        std::vector<std::string> const errors = host.takeErrors();
        ASSERT_EQ(errors.size(), 1u) << misuse.line << log.dump();
        EXPECT_NE(errors[0].find(misuse.report), std::string::npos) << errors[0];
        bool const elsewhere = std::string_view(misuse.report).starts_with("no/such");
        EXPECT_TRUE(elsewhere || errors[0].starts_with("FILE:4: ")) << errors[0];
        EXPECT_TRUE(elsewhere || errors[0].ends_with("(in \"widget position\" of Window 'w')")) << errors[0];
        host.frame();
    }
}

TEST(WindowResources, whatHoldsItselfOrGoesTooDeepIsCutOff) {
    ResourceHost host;
    support::LogCapture log;
    int const widgets = ResourceHost::countWidgets();
    gui::WindowBase* window = host.make("local p = Panel { } p[1] = p return Window { p }");
    ASSERT_TRUE(window);
    EXPECT_NE(host.takeErrorText().find("nested too deeply, or hold themselves"), std::string::npos);
    gui::Widget::destroy(window);
    // Each level twice: the budget ends it, and nothing of it is left.
    window = host.make("local p = Panel { } p[1] = p p[2] = p return Window { p }");
    EXPECT_FALSE(window);
    EXPECT_EQ(ResourceHost::countWidgets(), widgets);
    EXPECT_NE(host.takeErrorText().find("used up its budget"), std::string::npos);
    EXPECT_TRUE(host.make("return Window { }"));
}

}  // namespace
