#include <gtest/gtest.h>

#include <algorithm>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "host/lua/WindowResources.h"
#include "platform/qor/Lua.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/resources/ResourceHost.h"
#include "tests/support/LogCapture.h"

namespace {

/// A window with everything that keeps something.
char const* const fullFile = R"(
    local function nothing() end
    return Window { name = "w", size = {300, 300}, visible = true, layout = VertLayout { gap = 4 },
        onFocus = nothing, onPosition = nothing,
        hotKeys = {["ctrl+s"] = nothing, f1 = nothing}, overlays = {Static "over"}, onClose = nothing,
        Button { name = "ok", text = "OK", onChange = nothing, onKeyDown = nothing, onMouseWheel = nothing,
            mouse = {enter = nothing, leave = nothing, released = nothing} },
        Panel { layout = HorzLayout { gap = 2 }, RadioButton { checked = true }, RadioButton { } },
    })";

TEST(WindowResources, twoHundredWindowsComeAndGoWithoutGrowth) {
    ResourceHost host;
    std::string const file = host.write(fullFile);
    auto const cycle = [&](int count) {
        for (int i = 0; i < count; ++i) {
            gui::WindowBase* const window = gui::GUI::get()->createWindowFromResource(file.c_str());
            ASSERT_TRUE(window);
            host.frame();
            window->kill();
            host.frame();
        }
    };
    cycle(3);
    int const widgets = ResourceHost::countWidgets();
    std::size_t const memory = ResourceHost::measureLua();
    cycle(200);
    EXPECT_EQ(ResourceHost::countWidgets(), widgets);
    EXPECT_EQ(ResourceHost::countKept(), 0);
    // A success leaves one value on the stack of the state, whose room grows with it.
    EXPECT_LT(ResourceHost::measureLua(), memory + 16384);
    EXPECT_EQ(host.takeErrorText(), "");
}

TEST(WindowResources, twoHundredFillsOfOneWindowDoNotGrow) {
    ResourceHost host;
    std::string const file = host.write(fullFile);
    gui::WindowBase* const window = gui::GUI::get()->createWindowFromResource(file.c_str());
    auto const cycle = [&](int count) {
        for (int i = 0; i < count; ++i) {
            gui::GUI::get()->loadWindowFromResource(file.c_str(), window);
            host.frame();
        }
    };
    cycle(3);
    int const widgets = ResourceHost::countWidgets();
    int const kept = ResourceHost::countKept();
    std::size_t const memory = ResourceHost::measureLua();
    cycle(200);
    EXPECT_EQ(ResourceHost::countWidgets(), widgets);
    EXPECT_EQ(ResourceHost::countKept(), kept);
    EXPECT_LT(ResourceHost::measureLua(), memory + 2048);
}

TEST(WindowResources, aCallbackMayEndItsWidgetItsWindowAndItself) {
    for (char const* const act :
         {"self:destroy()", "self.parent.parent:destroy()", "self.window:kill()", "self.window:clear()",
          "self.onChange = nil", "self.onChange = function() end", "self.window:find('p'):clear()",
          "open(Window { size = {50, 50} }) self:destroy()", "self.parent:insert(Button 'new', 1)"}) {
        ResourceHost host;
        gui::WindowBase* const window =
            host.make(std::string(R"(return Window { name = "w", size = {300, 300}, visible = true,
            Panel { name = "p", size = {200, 200}, Button { name = "ok", size = {100, 40}, onChange = function(self) )") +
                      act + R"( end } } })");
        ASSERT_TRUE(window);
        host.settle();
        gui::WidgetHandler* const handler = window->getHandler();
        clickWidget(host, *window->findWidgetByName(L"ok"));
        for (int i = 0; i < 2; ++i)
            host.frame();
        if (gui::WidgetHandler::get(handler))
            gui::Widget::destroy(window);
        EXPECT_EQ(host.takeErrorText(), "") << act;
        EXPECT_EQ(ResourceHost::countKept(), 0) << act;
    }
}

TEST(WindowResources, guiMayEndWithCallbacksAlive) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(std::string(fullFile));
    host.settle();
    gui::Widget* const ok = window->findWidgetByName(L"ok");
    osg::Vec2i const point = ok->widgetToScreen({5, 5});
    host.moveMouse(point.x(), point.y());
    host.pressMouse();
    // A window that dies in the focus loses it on the way, when there is no script any more.
    window->setFocused(true);
    host.destroyGui();
    EXPECT_TRUE(host::takeResourceErrors().empty());
    // A second life has bindings of its own.
    host.createGui("dofile('skins/dark.lua')");
    EXPECT_TRUE(host.make(std::string(fullFile)));
    EXPECT_EQ(host.takeErrorText(), "");
}

TEST(WindowResources, aCallbackCannotEndGui) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(return Window { visible = true, size = {200, 100},
        onSize = function(self) self.text = "resized" end })");
    auto const end = std::make_shared<std::function<void()>>([] { gui::GUI::destroy(); });
    window->addWidgetCallback(gui::getWidgetCallbackType("widget position"), end);
    support::LogCapture log;
    EXPECT_FALSE(host.run(*window, "w.position = {1, 2} return false"));
    EXPECT_TRUE(log.contains("GUI::destroy ignored"));
    EXPECT_TRUE(gui::GUI::get());
}

TEST(WindowResources, aViewGivesItsPictureBackWhenItShowsAnotherAndWhenItDies) {
    ResourceHost host;
    vtxTextureManager& textures = *vtxRenderer::get()->getTextureManager();
    auto const isLoaded = [&textures] {
        for (int i = 0; i < 100; ++i)
            textures.flushReleased();
        auto const files = textures.getFiles();
        return std::any_of(files.begin(), files.end(),
                           [](auto const& file) { return file.ends_with("graphics/picture.png"); });
    };
    std::string const picture = "'tests/graphics/picture.png'";
    gui::WindowBase* const window =
        host.make("return Window { TextureView { name = 'v', size = {50, 50}, picture = " + picture + " } }");
    auto& view = dynamic_cast<gui::TextureView&>(*window->findWidgetByName(L"v"));
    EXPECT_TRUE(isLoaded());
    EXPECT_TRUE(host.run(*window, "w:find('v').picture = 'atlas/parts.png' return true"));
    EXPECT_FALSE(isLoaded());
    EXPECT_TRUE(host.run(*window, "w:find('v').picture = " + picture + " return true"));
    {
        support::LogCapture log;
        EXPECT_FALSE(host.run(*window, "w:find('v').picture = 'no/such/file.png' return true"));
        EXPECT_NE(host.takeErrorText().find("wants a picture file that can be read"), std::string::npos);
    }
    EXPECT_TRUE(view.getTexture() && isLoaded()) << "what cannot be read changes nothing";
    vtxTexture* const texture = view.getTexture();
    view.setTexture(nullptr);
    EXPECT_TRUE(host.check(*window, "w:find('v').picture == nil")) << "the program has taken it away";
    view.setTexture(texture);
    EXPECT_TRUE(isLoaded() && host.check(*window, "w:find('v').picture == " + picture));
    gui::Widget::destroy(window);
    EXPECT_FALSE(isLoaded());
}

TEST(WindowResources, aFillReplacesContentsPropertiesAndCallbacks) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(return Window { name = "w", text = "First", position = {40, 50},
        size = {300, 200}, visible = true, resizable = true, tooltip = "a hint", overlays = {Static "over"},
        onClose = function() error("old") end, Button { name = "ok" } })");
    host.settle();
    gui::WidgetHandler* const old = window->findWidgetByName(L"ok")->getHandler();
    int byHost = 0;
    window->addWidgetCallback(gui::getWidgetCallbackType("window close"),
                              std::make_shared<std::function<void()>>([&byHost] { ++byHost; }));
    host.fill(*window, R"(return Window { name = "w", text = "Second", size = {310, 200},
        Static { name = "label", text = "new" } })");
    EXPECT_EQ(host.takeErrorText(), "");
    EXPECT_FALSE(gui::WidgetHandler::get(old));
    EXPECT_EQ(window->getText(), L"Second");
    EXPECT_EQ(window->getSize(), osg::Vec2i(310, 200));
    EXPECT_TRUE(window->getVisible(false));
    EXPECT_FALSE(window->getResizable()) << "what is set no longer goes back";
    EXPECT_TRUE(window->getTooltipText().empty());
    EXPECT_EQ(window->getOverlayWidgetCount(), 0);
    ASSERT_EQ(window->getWidgetCount(), 1);
    window->close();
    EXPECT_EQ(byHost, 1);
    EXPECT_EQ(host.takeErrorText(), "");
    EXPECT_EQ(ResourceHost::countKept(), 0);
}

TEST(WindowResources, aFillOfAHostsWindowLeavesWhatTheFileDoesNotName) {
    ResourceHost host;
    auto* const window = new gui::Window;
    window->setText(L"Mine");
    window->setPosition({33, 44});
    window->setSize({200, 100});
    host.fill(*window, "return Window { Button { name = 'ok' } }");
    EXPECT_EQ(window->getText(), L"Mine");
    EXPECT_EQ(window->getSize(), osg::Vec2i(200, 100));
    EXPECT_TRUE(window->findWidgetByName(L"ok"));
    // A file of another class fills it all the same, and says so.
    {
        support::LogCapture log;
        host.fill(*window, "return ModalWindow { text = 'Theirs' }");
    }
    EXPECT_EQ(window->getText(), L"Theirs");
    EXPECT_NE(host.takeErrorText().find("the window is a Window and stays one"), std::string::npos);
}

TEST(WindowResources, aBrokenFileChangesNothing) {
    ResourceHost host;
    gui::WindowBase* const window = host.make("return Window { text = 'good', Button { name = 'ok' } }");
    int const widgets = ResourceHost::countWidgets();
    for (char const* const text : {"return Window {", "error('no')", "return Window { Button { }, Buton { } }",
                                   "return 5", "return Button { }", "local t = nil\nreturn Window { text = t.x }", "",
                                   "while true do end", "local t = {} while true do t[#t + 1] = {'x'} end"}) {
        support::LogCapture log;
        host.fill(*window, text);
        EXPECT_EQ(host.make(text), nullptr) << text;
        EXPECT_EQ(window->getText(), L"good") << text;
        EXPECT_TRUE(window->findWidgetByName(L"ok")) << text;
        EXPECT_EQ(ResourceHost::countWidgets(), widgets) << text;
        std::vector<std::string> const errors = host.takeErrors();
        ASSERT_EQ(errors.size(), 2u) << text << log.dump();
        EXPECT_EQ(errors[0].find("FILE:"), 0u) << errors[0];
        EXPECT_TRUE(log.contains(errors[1].substr(errors[1].find("FILE") + 4))) << log.dump();
    }
    // The state is as good as new.
    EXPECT_TRUE(host.make("return Window { text = 'again' }"));
    EXPECT_EQ(host.takeErrorText(), "");
}

TEST(WindowResources, anEndlessCallbackIsCalledOnceOnly) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(calls = 0
        return Window { name = "w", size = {300, 300}, visible = true,
            Button { name = "ok", size = {100, 40}, onChange = function(self)
                calls = calls + 1  self.text = "call " .. calls
                while true do pcall(function() while true do end end) end end } })");
    qor::setLuaLimits(gui::GUI::get()->getLuaState(), {size_t(64) << 20, 2'000'000, 20.0});
    host.settle();
    gui::Widget& ok = *window->findWidgetByName(L"ok");
    {
        support::LogCapture log;
        clickWidget(host, ok);
        clickWidget(host, ok);
        EXPECT_EQ(log.count("it is not called again"), 1u) << log.dump();
    }
    EXPECT_EQ(ok.getText(), L"call 1");
    // Others go on.
    EXPECT_TRUE(host.run(*window, "w:find('ok').onChange = function(self) self.text = 'fine' end return true"));
    clickWidget(host, ok);
    EXPECT_EQ(ok.getText(), L"fine");
}

TEST(WindowResources, aBlockingWindowTakesNoneOfItsCallersBudget) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(
        return Window { name = "w", size = {300, 300}, visible = true,
            Button { name = "ask", size = {100, 40}, onChange = function(self)
                local left = 0
                local dialog = open(ModalWindow { name = "dialog", size = {200, 100},
                    Button { name = "yes", size = {90, 30}, onChange = function(button)
                        for i = 1, 20000 do left = left + 1 end
                        button.window.text = "yes " .. left
                        if left == 200000 then button.window.visible = false end
                    end } })
                self.text = dialog.text
                dialog:kill()
            end } })");
    qor::setLuaLimits(gui::GUI::get()->getLuaState(), {size_t(64) << 20, 500'000, 20.0});
    host.settle();
    int frames = 0;
    host.app().modalFrame = [&] {
        gui::Widget* yes = nullptr;
        for (int i = 0; i < gui::WidgetHandler::getCount(); ++i)
            if (gui::Widget* const widget = gui::WidgetHandler::get(gui::WidgetHandler::getAt(i)))
                yes = widget->getName() == L"yes" ? widget : yes;
        if (!yes || ++frames == 100) {
            ADD_FAILURE() << "the window does not close";
            host.app().quit();
            return;
        }
        host.frame();
        clickWidget(host, *yes);
    };
    gui::Widget& ask = *window->findWidgetByName(L"ask");
    clickWidget(host, ask);
    EXPECT_EQ(ask.getText(), L"yes 200000");
    EXPECT_EQ(frames, 10);
    host.frame();
    EXPECT_EQ(host.takeErrorText(), "");
}

TEST(WindowResources, includedFilesShareTheNamesOfTheirFile) {
    ResourceHost host;
    std::string const part =
        host.write("return function(caption) return Button { text = caption .. (suffix or '') } end");
    std::string const name = part.substr(part.rfind('/') + 1);
    gui::WindowBase* const window =
        host.make("suffix = '!'\nlocal button = include '" + name + "'\nreturn Window { button 'One', button 'Two' }");
    ASSERT_TRUE(window) << host.takeErrorText();
    ASSERT_EQ(window->getWidgetCount(), 2);
    EXPECT_EQ(window->getWidget(1)->getText(), L"Two!");
    qor::vector<qor::string> const files = qor::getLuaFiles(gui::GUI::get()->getLuaState(), host.getLastFile().c_str());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(std::string(files[1].c_str()), part);
    // What a file defines is its own.
    EXPECT_TRUE(host.check(*window, "suffix == nil"));
}

TEST(WindowResources, callbacksGetWhatTheyAreToldAndAnswer) {
    ResourceHost host;
    gui::WindowBase* const window = host.make(R"(
        local function note(kind)
            return function(self, ...)
                local window = self.window
                window.text = window.text .. kind .. table.concat({...}, ",") .. ";"
                return kind == "wheel" or kind == "key"
            end
        end
        return Window { name = "w", position = {100, 100}, size = {300, 300}, visible = true,
            hotKeys = {["ctrl+f5"] = function(self) self.text = self.text .. "hot;" end},
            Panel { name = "p", position = {20, 20}, size = {200, 100}, onMouseDown = note "down", onMouseWheel = note "wheel",
                onKeyDown = note "key", onChar = note "char", onKeyUp = note "up" } })");
    host.settle();
    gui::Widget& panel = *window->findWidgetByName(L"p");
    osg::Vec2i const point = panel.widgetToScreen({50, 60});
    panel.onMouseDown(point, gui::MouseButtonMain);
    EXPECT_TRUE(panel.onMouseWheel(point, -2));
    panel.onKeyDown(gui::KeyPageUp, 5);
    panel.onChar(gui::KeyNone, 0xE9);
    panel.onKeyUp(gui::KeyPageUp, 5);
    host.app().keys.insert(gui::KeyLeftCtrl);
    window->onHotKey({gui::getKeyboardButtonByName("f5"), false, true, false});
    qor::wstring expected;
    expected.format(L"down%d,%d,1;wheel%d,%d,-2;keypage up,5;char\u00E9,unknown;uppage up,5;hot;", point.x(), point.y(),
                    point.x(), point.y());
    EXPECT_EQ(window->getText(), expected);
    EXPECT_EQ(host.takeErrorText(), "");
}

}  // namespace
