#include <string>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Lua.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/Attach.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestHost.h"

namespace {

using gui::GUI;

/// What `create` throws, or an empty text.
template <class Create>
std::string failureOf(Create create) {
    try {
        create();
    } catch (GUI::Exception const& error) {
        return error.what();
    }
    return "";
}

void expectNothingLeft() {
    EXPECT_EQ(GUI::get(), nullptr);
    EXPECT_FALSE(gui::UpdateManager::exists());
    EXPECT_FALSE(gui::skin::ShaderEffectManager::exists());
}

/// Small limits, so that hostile scripts end soon.
class SmallLimits {
public:
    SmallLimits() { qor::setDefaultLuaLimits({.memoryBytes = 4 << 20, .instructions = 2'000'000}); }
    ~SmallLimits() { qor::setDefaultLuaLimits(before_); }

private:
    qor::LuaLimits before_ = qor::getDefaultLuaLimits();
};

TEST(GuiCreation, NeedsAnApplicationAndARenderer) {
    auto const create = [] { GUI::create("skin.lua", osg::Vec2i(10, 10), 1.0f); };
    EXPECT_EQ(failureOf(create), "GUI render not created!\n");
    expectNothingLeft();
    new support::TestApplication(osg::Vec2i(10, 10));
    EXPECT_EQ(failureOf(create), "GUI render not created!\n");
    gui::Application::destroy();
    expectNothingLeft();
}

TEST(GuiCreation, AFailingSkinFileThrowsAndLeavesRoomForAnother) {
    struct Case {
        char const* script;
        char const* begin;
        char const* part;
    };
    char const* const cannotLoad = "Cannot load gui skin from ";
    Case const cases[] = {
        {"Skin = {\n  x = = 1 }", cannotLoad, ".lua:2:"},
        {"Skin = {}\nSkin.a.b = 1", cannotLoad, ".lua:2:"},
        {"error({})", cannotLoad, "!\nError:"},
        {"local a = 1", "Global Skin table not loaded!\n", ""},
        {"Skin = 'a table'", "Global Skin table not loaded!\n", ""},
        {"while true do end", cannotLoad, "!\nError:"},
        {"while true do pcall(function() while true do end end) end", cannotLoad, "!\nError:"},
        {"Skin = {} local t = {} for i = 1, 1e9 do t[i] = ('x'):rep(1000) .. i end", cannotLoad, "!\nError:"},
        {"Skin = {} local t = {} for i = 1, 1e9 do pcall(function() t[i] = ('x'):rep(1000) .. i end) end", cannotLoad,
         "!\nError:"},
    };
    support::TestHost host;
    for (Case const& failing : cases) {
        host.destroyGui();
        {
            SmallLimits const limits;
            std::string const text = failureOf([&] { host.createGui(failing.script); });
            EXPECT_EQ(text.rfind(failing.begin, 0), 0u) << failing.script << " gave: " << text;
            EXPECT_NE(text.find(failing.part), std::string::npos) << failing.script << " gave: " << text;
        }
        expectNothingLeft();
        host.createGui("Skin = {}");
        ASSERT_NE(GUI::get(), nullptr);
        host.frame();
    }
}

TEST(GuiCreation, AMissingSkinFileIsNamed) {
    support::TestHost host;
    host.destroyGui();
    std::string const text = failureOf([] { GUI::create("no/such/skin.lua", osg::Vec2i(10, 10), 1.0f); });
    EXPECT_EQ(text.rfind("Cannot load gui skin from no/such/skin.lua!\nError:", 0), 0u) << text;
    EXPECT_EQ(text.back(), '\n');
    EXPECT_NE(text.find("no/such/skin.lua", text.find("Error:")), std::string::npos) << text;
    expectNothingLeft();
}

TEST(GuiCreation, AScaleThatIsNotAboveZeroCountsAsOne) {
    for (float scale : {0.0f, -3.0f, 1.0f, 1.5f}) {
        support::TestHost const host("Skin = {}", {.size = osg::Vec2i(100, 41), .scale = scale});
        bool const scaled = scale == 1.5f;
        EXPECT_EQ(vtxRenderer::get()->getScale(), scaled ? 1.5f : 1.0f);
        EXPECT_EQ(GUI::get()->getScreenSize(), scaled ? osg::Vec2i(66, 27) : osg::Vec2i(100, 41));
        EXPECT_EQ(GUI::get()->getViewportSize(), osg::Vec2i(100, 41));
    }
}

TEST(GuiCreation, ASecondCallKeepsTheFirst) {
    support::TestHost host;
    GUI* const first = GUI::get();
    GUI::create("no/such/skin.lua", osg::Vec2i(10, 10), 3.0f);
    EXPECT_EQ(GUI::get(), first);
    EXPECT_EQ(first->getScreenSize(), osg::Vec2i(800, 600));
    EXPECT_EQ(vtxRenderer::get()->getScale(), 1.0f);
}

class DestroyingTarget : public gui::UpdateTarget {
public:
    void update(double) override { GUI::destroy(); }
};

TEST(GuiDestruction, IsRefusedWhereTheToolkitIsAtWork) {
    support::TestHost host;
    GUI& gui = *GUI::get();
    auto* const window = new gui::Window;
    window->setSize(osg::Vec2i(50, 50));
    window->setVisible(true);
    host.frame();

    DestroyingTarget target;
    auto const destroy = [] { GUI::destroy(); };
    auto const message = std::make_shared<std::function<void()>>(destroy);
    std::pair<char const*, std::function<void()>> const places[] = {
        {"message", [&] { gui.addUserMessage(message), gui.processMessages(); }},
        {"tick",
         [&] {
             gui::UpdateManager::get().addTarget(&target);
             gui::UpdateManager::get().updateTargets();
             gui::UpdateManager::get().removeTarget(&target);
         }},
        {"redraw",
         [&] {
             window->setRedrawCallback(destroy);
             window->setDirty(gui::Widget::DirtySelf);
             gui.redraw(false);
             window->setRedrawCallback({});
         }},
        {"doRedraw",
         [&] {
             window->setDoRedrawCallback(destroy);
             gui.doRedraw();
             window->setDoRedrawCallback({});
         }},
    };
    for (auto const& [name, run] : places) {
        support::LogCapture log;
        run();
        EXPECT_EQ(log.count("GUI::destroy ignored"), 1u) << name << "\n" << log.dump();
        ASSERT_EQ(GUI::get(), &gui) << name;
    }
    host.frame();
}

TEST(GuiDestruction, EndsEveryWidgetAndIsNotRepeatedByTheirCallbacks) {
    support::TestHost host;
    auto* const loose = new gui::Widget;
    auto* const window = new gui::Window;
    window->setSize(osg::Vec2i(50, 50));
    window->setVisible(true);
    gui::WidgetHandler* const handlers[] = {
        loose->getHandler(), window->getHandler(),
        gui::WindowsManager::get(0)->findWidgetAtScreenPoint({10, 10})->getHandler()};
    int calls = 0;
    window->setFocused(true);
    support::onEvent(*window, gui::Widget::focusCallbackName, [&] {
        ++calls;
        GUI::get()->killWindow(window);
        GUI::destroy();
    });
    support::LogCapture const log;
    GUI::destroy();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(log.count("GUI::destroy ignored"), 1u);
    for (gui::WidgetHandler* handler : handlers)
        EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
    expectNothingLeft();
}

}  // namespace
