#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollBarButton.h"
#include "gui_lib/controls/scroll/ScrollBarThumb.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace scrolltest {

using gui::Widget;
using gui::WidgetHandler;
using osg::Vec2i;

/// Bars with thumbs of at least 10 units, and panes with a vertical bar of 10 and a horizontal one of 12 units.
inline constexpr char const* skins = R"(
local function with(params, skins) return { skinData = { params = params, states = {}, skins = skins or {} } } end
local function bar(hasButtons)
    return with({ hasButtons = hasButtons }, { thumb = with({ minSize = { horz = 10, vert = 10 } }) })
end
Skin = {
    horzScrollBarSkin = function() return bar(true) end,
    vertScrollBarSkin = function() return bar(true) end,
    scrollPaneSkin = function()
        return with({ vertScrollBarWidth = 10, horzScrollBarHeight = 12 },
            { vertScrollBar = bar(false), horzScrollBar = bar(false) })
    end,
}
)";

/// A window at the corner of the screen, with a view of the same place, and counted callbacks.
class Ground : public testing::Test {
protected:
    Ground() {
        window->setSize(Vec2i(800, 600));
        window->setVisible(true);
        host.frame();
    }

    void count(Widget& widget, char const* name) {
        support::onEvent(widget, name, [this, name] { events += std::string(name) + "; "; });
    }
    std::string take() { return std::exchange(events, {}); }
    void moveTo(Widget const& widget, Vec2i const& inside) {
        Vec2i const point = widget.widgetToScreen(inside);
        host.moveMouse(point.x(), point.y());
    }
    void press(Widget const& widget, Vec2i const& inside, gui::MouseButton button = gui::MouseButtonMain) {
        // Never a double click.
        host.app().time += 1.0;
        moveTo(widget, inside);
        host.pressMouse(button);
    }
    void click(Widget const& widget, Vec2i const& inside, gui::MouseButton button = gui::MouseButtonMain) {
        press(widget, inside, button);
        host.releaseMouse(button);
    }

    /// A part of a widget that calls back, and the name of what it calls.
    template <class Type>
    using Caller = std::pair<char const*, Widget* (*)(Type&)>;

    /// Does everything with a widget that dies in a callback of one of its parts, for each of those.
    template <class Type>
    void dieEverywhere(std::function<Type*()> const& make, std::initializer_list<Caller<Type>> callers,
                       std::initializer_list<std::function<void(Type&)>> acts) {
        for (auto const& [name, find] : callers) {
            int deaths = 0;
            std::string part;
            for (auto const& act : acts) {
                Type* const each = make();
                window->insertWidget(each, -1);
                host.frame();
                WidgetHandler* const handler = each->getHandler();
                part = find(*each)->getWidgetType();
                support::onEvent(*find(*each), name, [handler] { Widget::destroy(WidgetHandler::get(handler)); });
                act(*each);
                host.frame();
                deaths += WidgetHandler::get(handler) ? 0 : 1;
                Widget::destroy(WidgetHandler::get(handler));
                host.releaseMouse();
            }
            EXPECT_GT(deaths, 0) << name << " of a " << part;
        }
    }

    /// Before the host, at whose end the last callbacks run.
    std::string events;
    support::TestHost host{skins};
    gui::Window* window = new gui::Window;
};

}  // namespace scrolltest
