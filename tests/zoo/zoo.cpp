#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "host/CommandPlayer.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "tests/support/Attach.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"
#include "tests/support/LuaText.h"
#include "tests/support/WidgetZoo.h"

#include <lua.hpp>

namespace {

using gui::Widget;
using gui::WidgetHandler;
using osg::Vec2i;
using support::ZooAnimal;
using support::ZooHost;

class Zoo : public testing::TestWithParam<ZooAnimal> {
protected:
    ZooAnimal const& animal() const { return GetParam(); }
};

std::string nameOf(testing::TestParamInfo<ZooAnimal> const& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(All, Zoo, testing::ValuesIn(support::getZoo()), nameOf);

/// What shows the widget where it is: its window, or itself.
Widget& rootOf(Widget& widget) { return widget.getRoot() ? *widget.getRoot() : widget; }

/// The widget in every variation that the two ways of drawing must agree in.
template <class Check>
void forEachLook(ZooHost& host, Widget& widget, Check check) {
    auto const look = [&](char const* name) {
        host.settle();
        check(std::string(name));
    };
    look("resting");
    host.tease(widget, look);
    widget.setOpacity(0.5f);
    look("half transparent");
    widget.setEnabled(false);
    look("half transparent, disabled");
    widget.setEnabled(true);
    widget.setOpacity(1.0f);
    widget.setDrawToTarget(true);
    look("drawn to a target");
    widget.setDrawToTarget(false);
    gui::GUI::get()->setDebugDraw(true);
    widget.setDirty(Widget::DirtyTree);
    look("debug skin");
    gui::GUI::get()->setDebugDraw(false);
    widget.setDirty(Widget::DirtyTree);
    look("without it again");
}

TEST_P(Zoo, RecordedAndPlayedItDrawsWhatItDrawsDirectly) {
    ZooHost host;
    Widget* const widget = host.show(animal());
    std::set<std::string> looks;
    forEachLook(host, *widget, [&](std::string const& name) {
        std::string const drawn = host.traceDraw(rootOf(*widget));
        EXPECT_EQ(host.traceMake(rootOf(*widget)), drawn) << name;
        looks.insert(drawn);
    });
    EXPECT_GE(looks.size(), animal().seen ? 3u : 2u) << "the looks should differ, or nothing was compared";
}

/// Without the switches of the quad mode, which drawing and recording repeat in different places.
std::string withoutModeSwitches(std::string const& trace) {
    std::string rest;
    for (size_t from = 0, end = 0; (end = trace.find('\n', from)) != std::string::npos; from = end + 1)
        if (trace.compare(from, 17, "> turnOnDrawQuads") != 0)
            rest += trace.substr(from, end + 1 - from);
    return rest;
}

TEST_P(Zoo, OnTheRenderersContractOnlyRepeatedModeSwitchesDiffer) {
    ZooHost host;
    Widget* const widget = host.show(animal());
    host.trace().setContractWanted(true);
    for (bool focused : {false, true}) {
        widget->setTabOrder(1);
        widget->setFocused(focused);
        host.settle();
        std::string const drawn = withoutModeSwitches(host.traceDraw(rootOf(*widget)));
        EXPECT_EQ(withoutModeSwitches(host.traceMake(rootOf(*widget))), drawn) << focused;
        EXPECT_NE(drawn.find("> "), std::string::npos);
    }
}

TEST_P(Zoo, ItsWholeFrameIsTheSameAfterItsStatesHavePassed) {
    ZooHost host;
    Widget* const widget = host.show(animal());
    host.advance(30.0);
    host.moveMouse(1, 1);
    host.settle();
    std::string const before = host.traceDraw(rootOf(*widget));
    widget->setOpacity(0.5f);
    widget->setEnabled(false);
    widget->setZoom(2.0f);
    Vec2i const size = widget->getSize();
    widget->setSize(size + Vec2i(7, 9));
    host.settle();
    widget->setZoom(1.0f);
    widget->setSize(size);
    widget->setEnabled(true);
    widget->setOpacity(1.0f);
    host.settle();
    EXPECT_EQ(host.traceDraw(rootOf(*widget)), before);
}

TEST_P(Zoo, ACopyDrawsLikeItsSource) {
    if (!animal().clones)
        return;
    ZooHost host;
    Widget* const widget = animal().make();
    // Neither overlay widgets nor fades are part of a copy.
    if (animal().window)
        Widget::destroy(static_cast<gui::WindowBase*>(widget)->getOverlayWidget(0));
    host.advance(30.0);
    auto const show = [&](Widget& each) {
        if (auto* const modal = dynamic_cast<gui::ModalWindow*>(&each))
            modal->setLockFlow(false);
        each.setVisible(true);
        each.setFocused(false);
        host.settle();
        return host.traceDraw(each);
    };
    std::string const drawn = show(*widget);
    Widget* const copy = widget->clone();
    EXPECT_STREQ(copy->getWidgetType(), widget->getWidgetType());
    EXPECT_EQ(show(*copy), drawn);
}

/// The looks of a widget's own skin, enabled and disabled: without children, which have skins of their own.
std::string bareLooks(ZooHost& host, Widget& widget) {
    auto* const container = dynamic_cast<gui::Container*>(&widget);
    while (container && container->getWidgetCount() > 0)
        Widget::destroy(container->getWidget(0));
    if (auto* const window = dynamic_cast<gui::WindowBase*>(&widget))
        Widget::destroy(window->getOverlayWidget(0));
    widget.setVisible(true);
    widget.setFocused(false);
    host.advance(30.0);
    std::string looks;
    for (bool enabled : {false, true}) {
        widget.setEnabled(enabled);
        widget.setDirty(Widget::DirtyTree);
        host.settle();
        looks += host.traceDraw(widget);
    }
    return looks;
}

TEST_P(Zoo, ItsSkinWrittenToLuaAndReadBackDrawsTheSame) {
    ZooHost host;
    Widget* const source = animal().make();
    if (!source->getWidgetSkin())
        return;
    support::LuaText lua;
    lua_newtable(lua);
    source->getWidgetSkin()->putIntoScript(lua);
    Vec2i const size = source->getSize();
    std::string const looks = bareLooks(host, *source);
    Widget::destroy(source);

    host.forgetSkins();
    Widget* const reader = animal().make();
    EXPECT_NE(bareLooks(host, *reader), looks) << "the skin should matter";
    reader->getWidgetSkin()->loadFromScript(lua);
    EXPECT_EQ(lua.getTop(), 1);
    // A skin does not ask for a new layout of the parts.
    for (int more : {1, 0})
        reader->setSize(size + Vec2i(more, more));
    EXPECT_EQ(bareLooks(host, *reader), looks);
    std::string const first = lua.describeTop();
    lua_newtable(lua);
    reader->getWidgetSkin()->putIntoScript(lua);
    EXPECT_EQ(lua.describeTop(), first);
}

TEST_P(Zoo, NothingBreaksInExtremeStates) {
    for (char const* skinFile : {"skins/dark.lua", ""}) {
        for (bool emptyData : {false, true}) {
            ZooHost host(skinFile);
            Widget* const widget = host.show(animal());
            gui::skin::Skin* const skin = widget->getWidgetSkin();
            if (emptyData && skin)
                skin->setSkinData(new gui::skin::Data(skin), true);
            auto const drawBoth = [&](std::string const& name) {
                host.settle();
                std::string const drawn = host.traceDraw(rootOf(*widget));
                std::string const played = host.traceMake(rootOf(*widget));
                // A recorded zoomed widget shows the layout for its target.
                if (widget->getZoom() == 1.0f) {
                    EXPECT_EQ(played, drawn) << name;
                }
            };
            widget->calcSize();
            widget->getClientRect();
            Widget* const copy = widget->clone();
            forEachLook(host, *widget, drawBoth);
            for (float zoom : {0.25f, 3.0f}) {
                widget->setZoom(zoom);
                drawBoth("extreme");
            }
            widget->setZoom(1.0f);
            for (int side : {0, 1, -5}) {
                widget->setSize(Vec2i(side, side));
                forEachLook(host, *widget, drawBoth);
            }
            widget->setText(L"");
            drawBoth("extreme");
            Widget::destroy(copy);
        }
    }
}

struct CallbackKind {
    std::string name;
    std::function<void(Widget&, std::function<void()>)> attach;
    /// Teasing the animal calls it.
    bool called = true;
};

std::vector<CallbackKind> getCallbackKinds(ZooAnimal const& animal) {
    using Action = std::function<void()>;
    std::vector<CallbackKind> kinds = {
        {"wheel", [](Widget& widget, Action action) { support::onWheel(widget, [action] { return action(), true; }); },
         animal.pointed},
        {"redraw", [](Widget& widget, Action action) { widget.setRedrawCallback(action); }},
        {"do redraw", [](Widget& widget, Action action) { widget.setDoRedrawCallback(action); }},
    };
    for (int i = gui::MouseCallbackMove; i <= gui::MouseCallbackLeave; ++i) {
        auto const type = static_cast<gui::MouseCallbackType>(i);
        // Buttons take the second press of a double click as a press; a lost capture comes without the mouse.
        bool const called =
            type == gui::MouseCallbackReleased || (animal.pointed && type != gui::MouseCallbackDoubleDown);
        kinds.push_back({"mouse " + std::to_string(i),
                         [type](Widget& widget, Action action) { support::onMouse(widget, type, action); }, called});
    }
    for (int i = gui::KeyboardCallbackDown; i <= gui::KeyboardCallbackUp; ++i)
        kinds.push_back({"key " + std::to_string(i), [i](Widget& widget, Action action) {
                             support::onKey(widget, static_cast<gui::KeyboardCallbackType>(i),
                                            [action] { return action(), true; });
                         }});
    std::vector<char const*> names = animal.callbacks;
    names.insert(names.end(), {Widget::focusCallbackName, Widget::positionCallbackName, Widget::sizeCallbackName});
    for (char const* name : names)
        kinds.push_back({name, [name](Widget& widget, Action action) { support::onEvent(widget, name, action); }});
    return kinds;
}

TEST_P(Zoo, ItMayDieInsideEachOfItsCallbacks) {
    ZooHost host;
    for (CallbackKind const& kind : getCallbackKinds(animal())) {
        Widget* const widget = host.show(animal());
        WidgetHandler* const handler = widget->getHandler();
        kind.attach(*widget, [handler] { Widget::destroy(WidgetHandler::get(handler)); });
        host.tease(*widget, [&](char const*) {});
        if (WidgetHandler::get(handler) && animal().stir)
            animal().stir(*widget);
        if (kind.called) {
            EXPECT_EQ(WidgetHandler::get(handler), nullptr) << kind.name << " was not called";
        }
        Widget::destroy(WidgetHandler::get(handler));
        gui::WindowsManager::get(0)->releaseMouse(nullptr);
        qor::vector<gui::WindowBase*> shown;
        gui::WindowsManager::get(0)->getShownWindows(shown);
        for (gui::WindowBase* window : shown)
            Widget::destroy(window);
        host.moveMouse(1, 1);
        host.settle();
    }
}

TEST_P(Zoo, AnUnchangedFrameDoesNothing) {
    ZooHost host;
    host.show(animal());
    host.advance(30.0);
    host.settle();
    unsigned long const redraws = Widget::getRedrawCount();
    support::HeapScope const heap;
    for (int i = 0; i < 3; ++i)
        host.frame();
    EXPECT_EQ(heap.getAllocations(), 0u);
    EXPECT_EQ(Widget::getRedrawCount(), redraws);
}

TEST_P(Zoo, RecordingAndPlayingAgainAllocatesNothing) {
    ZooHost host;
    Widget* const widget = host.show(animal());
    host.settle();
    gui::GraphicCommands list;
    vtxRenderer& renderer = *vtxRenderer::get();
    auto const play = [&] {
        widget->make(&list);
        host::CommandPlayer::parse(list);
        host::CommandPlayer::doRedraw(list);
        renderer.beginDraw(vtxRenderer::TechniqueNormal);
        renderer.getShader()->turnOnDrawQuads();
        host::CommandPlayer::draw(list);
        renderer.endDraw();
        host::CommandPlayer::release(list);
    };
    for (int i = 0; i < 4; ++i)
        play();
    support::HeapScope const heap;
    play();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

// --- All together ---

TEST(ZooFrames, HostileSkinsLeaveTheDefaults) {
    char const* const scripts[] = {
        // A skin name that is anything, and functions that return anything.
        "Skin = setmetatable({}, {__index = function(t, name) error('no ' .. name) end})",
        "Skin = setmetatable({}, {__index = function() return 5 end})",
        "Skin = setmetatable({}, {__index = function() return function() return 'text' end end})",
        "local bad = {} for _, key in ipairs{'params', 'states', 'skins'} do bad[key] = 7 end "
        "Skin = setmetatable({}, {__index = function() return function() return {skinData = bad} end end})",
        "local any = setmetatable({}, {__index = function(t) return t end}) "
        "Skin = setmetatable({}, {__index = function() return function() return any end end})",
        "local any = setmetatable({}, {__index = function() return 'word' end}) "
        "Skin = setmetatable({}, {__index = function() return function() return {skinData = {params = any, "
        "states = {released = {any, {bkg = any, text = any, picture = any, check = any}}}, "
        "skins = setmetatable({}, {__index = function() return {skinData = {params = any}} end})}} end end})",
    };
    for (char const* script : scripts) {
        support::LogCapture const log;
        support::TestHost host(script);
        std::vector<Widget*> widgets;
        for (ZooAnimal const& animal : support::getZoo()) {
            widgets.push_back(animal.make());
            widgets.back()->setVisible(true);
        }
        for (int i = 0; i < 3; ++i)
            host.frame();
        for (Widget* widget : widgets)
            EXPECT_EQ(host.traceDraw(*widget), host.traceMake(*widget)) << script;
        EXPECT_NE(gui::GUI::get(), nullptr);
    }
}

TEST(ZooFrames, EveryClassOfTheToolkitIsInTheZoo) {
    // Bases and parts that other widgets make, and one that draws nothing.
    std::set<std::string> const others = {
        "WindowBase",   "WindowView",     "WindowHeader",    "CloseButton",    "Dragger",
        "RedrawHelper", "ScrollBarThumb", "ScrollBarButton", "ScrollPaneView", "ScrollPaneViewContainer"};
    std::set<std::string> known = others;
    ZooHost host;
    for (ZooAnimal const& animal : support::getZoo())
        known.insert(animal.make()->getWidgetType());
    std::regex const pattern("::getWidgetType\\(\\) const \\{ return \"(\\w+)\";");
    size_t found = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator("gui_lib")) {
        if (entry.path().extension() != ".cpp")
            continue;
        std::ostringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        std::string const source = text.str();
        for (std::sregex_iterator match(source.begin(), source.end(), pattern), end; match != end; ++match, ++found)
            EXPECT_EQ(known.count((*match)[1]), 1u)
                << (*match)[1] << " of " << entry.path() << " needs a row in getZoo";
    }
    EXPECT_EQ(found, known.size());
}

/// What a host's whole session makes the device do.
std::string playSession() {
    ZooHost host;
    host.trace().setRecording(true);
    std::vector<Widget*> widgets;
    for (ZooAnimal const& animal : support::getZoo())
        if (animal.window)
            widgets.push_back(host.show(animal));
    auto* const window = static_cast<gui::Window*>(support::findAnimal("Window")->make());
    window->setPosition(Vec2i(300, 20));
    window->setSize(Vec2i(460, 560));
    window->setVisible(true);
    int place = 0;
    for (ZooAnimal const& animal : support::getZoo()) {
        if (animal.window)
            continue;
        Widget* const widget = animal.make();
        widget->setPosition(Vec2i(place % 3 * 150, place / 3 * 60));
        ++place;
        window->insertWidget(widget, -1);
        widgets.push_back(widget);
    }
    for (Widget* widget : widgets)
        host.tease(*widget, [&](char const*) { host.advance(0.06); });
    window->setOpacity(0.5f);
    host.advance(0.1);
    host.trace().setRecording(false);
    return host.trace().getText().c_str();
}

TEST(ZooFrames, TheSameSessionTwiceMakesTheDeviceDoTheSame) {
    std::string const first = playSession();
    std::string const second = playSession();
    EXPECT_GT(first.size(), 100000u);
    if (first == second)
        return;
    size_t const at =
        size_t(std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first - first.begin());
    FAIL() << "first difference:\n"
           << first.substr(at > 300 ? at - 300 : 0, 600) << "\nsecond:\n"
           << second.substr(at > 300 ? at - 300 : 0, 600);
}

}  // namespace
