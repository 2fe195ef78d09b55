#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "tests/resources/ResourceHost.h"
#include "tests/support/LogCapture.h"

#include <lua.hpp>

namespace {

TEST(WindowResources, aFileMakesAWindowThatLives) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(
        local count = 0
        return Window {
            name = "w", text = "Hello ü", position = {50, 60}, size = {320, 240}, visible = true,
            Panel {
                name = "panel", position = {10, 10}, size = {200, 100},
                Button { name = "ok", text = "OK", position = {4, 4}, size = {100, 30},
                    onChange = function(self)
                        count = count + 1
                        self.window:find("panel/label").text = "clicked " .. count
                    end },
                Static { name = "label", text = "-", position = {4, 40} },
            },
        })");
    ASSERT_TRUE(window) << host.takeErrorText();
    EXPECT_EQ(host.takeErrorText(), "");
    EXPECT_STREQ(window->getWidgetType(), "Window");
    EXPECT_EQ(window->getText(), L"Hello ü");
    EXPECT_EQ(window->getSize(), osg::Vec2i(320, 240));
    EXPECT_TRUE(window->getVisible(true));
    host.settle();
    gui::Widget* const label = window->findWidgetByName(L"label");
    ASSERT_TRUE(label);
    EXPECT_EQ(label->getSize(), label->getPrefSize());
    clickWidget(host, *window->findWidgetByName(L"ok"));
    clickWidget(host, *window->findWidgetByName(L"ok"));
    EXPECT_EQ(label->getText(), L"clicked 2");
    EXPECT_TRUE(host.check(*window, "w:find('ok').window == w and w:find('nothing') == nil"));
    EXPECT_EQ(host.takeErrorText(), "");
}

}  // namespace
