#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "platform/qor/Lua.h"
#include "tests/resources/ResourceHost.h"
#include "tests/support/LogCapture.h"

namespace {

/// Each sets a property of the button `b` to a table whose reading, if it ran functions, would end the button.
TEST(WindowResources, readingAValueRunsNoFunctionOfTheFile) {
    for (char const* const line :
         {"b.size = trap", "b.position = trap", "b.insets = trap", "b.anchors = trap", "b.anchors = {left = trap}",
          "b.pictureLook = {rect = trap}", "b.bkgLook = {center_center = trap, picture = trap}", "b.textLook = trap",
          "b.skinParams = {minSize = trap}", "b.effect = trap", "v.imageInfo = {horzAlign = trap}",
          "b.callbacks = trap", "w.hotKeys = trap", "w.overlays = trap", "p.layout = VertLayout { horzAlign = trap }",
          "p:insert(trap)", "w:localize(trap)", "a:setTextColor(trap)"}) {
        ResourceHost host;
        gui::WindowBase* const window = host.make(std::string(
                                                      R"(return Window { name = "w", visible = true, size = {300, 300},
            onPosition = function(w)
                local p, b, a, v = w:find("p"), w:find("b"), w:find("a"), w:find("v")
                local trap = setmetatable({}, {__index = function() w:clear() return 5 end})
                pcall(function() )") + line + R"( end)
            end,
            Panel { name = "p", size = {100, 100}, layout = "anchor", Button { name = "b" } },
            AnimatedColorStatic { name = "a" }, TextureView { name = "v" } })");
        ASSERT_TRUE(window) << line << host.takeErrorText();
        host.settle();
        support::LogCapture log;
        window->setPosition({9, 9});
        host.frame();
        EXPECT_TRUE(window->findWidgetByName(L"b")) << line;
        host.takeErrors();
    }
}

TEST(WindowResources, aFileIsIncludedWithTheNamesOfTheFileThatAsksHoweverItAsks) {
    ResourceHost host;
    std::string const part = host.write("leaked = true return Button { text = 'part' .. suffix }");
    std::string const name = part.substr(part.rfind('/') + 1);
    for (std::string const& call :
         {"select(2, pcall(include, '" + name + "'))", "coroutine.wrap(function() return include '" + name + "' end)()",
          "include '" + name + "'"}) {
        gui::WindowBase* const window = host.make("suffix = '!' return Window { " + call + " }");
        ASSERT_TRUE(window) << call << host.takeErrorText();
        ASSERT_EQ(window->getWidgetCount(), 1) << call << host.takeErrorText();
        EXPECT_EQ(window->getWidget(0)->getText(), L"part!");
        EXPECT_TRUE(host.check(*window, "leaked == nil")) << call;
    }
}

TEST(WindowResources, whatAFileChangesInTheLibrariesIsItsOwn) {
    ResourceHost host;
    ASSERT_TRUE(host.make(R"(
        string.extra, math.floor, table.concat, coroutine.wrap = 1, nil, nil, nil
        assert(string.extra == 1 and math.floor == nil and getmetatable("") == false)
        return Window { })"))
        << host.takeErrorText();
    gui::WindowBase* const window = host.make(R"(
        return Window { text = tostring(string.extra) .. math.floor(1.5) .. table.concat({"x", "y"})
            .. type(coroutine.wrap) .. ("z"):upper() })");
    ASSERT_TRUE(window) << host.takeErrorText();
    EXPECT_EQ(window->getText(), L"nil1xyfunctionZ");
    EXPECT_TRUE(host.check(*window, "string.extra == nil and math.floor"));
}

TEST(WindowResources, oddValuesMakeAWindowThatWorks) {
    ResourceHost host;
    int const widgets = ResourceHost::countWidgets();
    for (char const* const text :
         {"local s = Static 'twice' return Window { s, s, Panel { s } }",
          "return Window { size = {1e300, -1e300}, position = {-1e300, 1e300}, zoom = 1e30, Button { size = {-5, 1e9} "
          "} }",
          "return Window { zoom = 1e-30, opacity = -7, Button { zoom = 1e-38, text = 'x', insets = 2147483647 } }",
          "return Window { text = 'a\\255\\254b\\0c', name = '\\237\\160\\128', Static '\\192\\128' }",
          "return Window { layout = VertLayout { gap = -2147483648 }, Button 'a', Button { size = {1e9, 1e9} } }",
          "return Window { onSize = function(self) self.size = {self.size[1] + 1, 50} end }",
          "return Window { onCreate = coroutine.wrap(function(self) self.text = 'x' coroutine.yield() end) }",
          "return Window { onCreate = function(self) self:insert(Static 'x', -2147483648) self:insert(Static 'y', "
          "1e300) "
          "self:insert(Static 'z', 0 / 0) end }",
          "return Window { onCreate = function(self) keep = self self:find('b'):destroy() end, Button { name = 'b' }, "
          "onSize = function() keep.text = 'kept' end }",
          "return Window { onPosition = function(self) self.onPosition = nil self:clear() self:kill() end, Button { } "
          "}"}) {
        support::LogCapture log;
        gui::WindowBase* const window = host.make(std::string(text));
        ASSERT_TRUE(window) << text << log.dump();
        gui::WidgetHandler* const handler = window->getHandler();
        window->setVisible(true);
        host.settle();
        if (gui::WidgetHandler::get(handler))
            window->setPosition({5, 5});
        if (gui::WidgetHandler::get(handler))
            window->setSize({333, 222});
        host.settle();
        gui::Widget::destroy(gui::WidgetHandler::get(handler));
        EXPECT_EQ(ResourceHost::countWidgets(), widgets) << text;
        EXPECT_EQ(ResourceHost::countKept(), 0) << text;
        host.takeErrors();
    }
}

TEST(WindowResources, aFunctionThatFindsNoMemoryEndsAloneAndNotItsCaller) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(
        local place, answered, reached, all = {7, 7}, false, false, {}
        local function fill() local n = 1 while true do all[n] = {n} n = n + 1 end end
        local function fillRest() while true do all = {all} end end
        return Window { visible = true, size = {200, 100},
            onClose = function(self)
                pcall(fill)
                pcall(fillRest)
                self.position = place
                reached, all = true, nil
            end,
            onPosition = function(self)
                if reached then self.text = tostring(answered) end
                local new = {true}
                answered = new[1]
            end } )");
    ASSERT_TRUE(window) << host.takeErrorText();
    lua_State* const L = gui::GUI::get()->getLuaState();
    qor::setLuaLimits(L, {qor::getLuaMemory(L) + (size_t(1) << 20), 50'000'000, 20.0});
    {
        support::LogCapture log;
        window->close();
        EXPECT_TRUE(log.contains("not enough memory")) << log.dump();
    }
    EXPECT_EQ(window->getPosition(), osg::Vec2i(7, 7));
    window->setPosition({9, 9});
    EXPECT_EQ(window->getText(), L"false");
    host.takeErrors();
}

TEST(WindowResources, aFileThatOpensItselfEndsWithAnError) {
    ResourceHost host;
    int const widgets = ResourceHost::countWidgets();
    support::LogCapture log;
    host.make("local file = ... openFile(file) return Window { }");
    EXPECT_NE(host.takeErrorText(), "");
    host.make("local file = ... include(file) return Window { }");
    EXPECT_NE(host.takeErrorText(), "");
    EXPECT_EQ(ResourceHost::countWidgets(), widgets);
    EXPECT_TRUE(host.make("return Window { }"));
}

}  // namespace
