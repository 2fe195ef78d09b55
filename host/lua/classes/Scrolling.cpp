#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/ScrollPaneBars.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "host/lua/ClassList.h"

namespace host::lua {

namespace {

using gui::ScrollBar;
using gui::ScrollPane;

/// The bounds may be waiting for the next redraw; a value set before that would be cut by the old ones.
template <auto set>
void scroll(ScrollPane& pane, double value) {
    gui::WidgetHandler* const handler = pane.getHandler();
    pane.redraw();
    if (gui::WidgetHandler::get(handler))
        (pane.*set)(value);
}

void addBars(ClassList& list) {
    using D = Define<ScrollBar>;
    ClassBinding& bar = list.emplace_back(D::binding("ScrollBar", "Container"));
    // In this order: each is limited by those before it.
    bar.properties = {
        D::property(
            "range",
            [](ScrollBar& self) {
                osg::Vec2d range;
                self.getRange(range.x(), range.y());
                return range;
            },
            [](ScrollBar& self, osg::Vec2d const& range) { self.setRange(range.x(), range.y()); }),
        D::property<&ScrollBar::getThumbValue, &ScrollBar::setThumbValue>("thumbValue"),
        D::property<&ScrollBar::getStep, &ScrollBar::setStep>("step"),
        D::property<&ScrollBar::getPageStep, &ScrollBar::setPageStep>("pageStep"),
        D::property<&ScrollBar::getValue, &ScrollBar::setValue>("value"),
    };
    bar.events = {
        {"onThumbPressed", EventKind::Widget, ScrollBar::thumbPressedCallbackName},
        {"onThumbReleased", EventKind::Widget, ScrollBar::thumbReleasedCallbackName},
    };
    list.push_back(
        Define<gui::HorzScrollBar>::binding("HorzScrollBar", "ScrollBar", [] { return new gui::HorzScrollBar; }));
    list.push_back(
        Define<gui::VertScrollBar>::binding("VertScrollBar", "ScrollBar", [] { return new gui::VertScrollBar; }));
}

}  // namespace

void addScrolling(ClassList& list) {
    addBars(list);
    using D = Define<ScrollPane>;
    ClassBinding& pane = list.emplace_back(D::binding("ScrollPane", "Container", [] { return new ScrollPane; }));
    D::addChildren(pane);
    pane.properties = {
        D::property<&ScrollPane::getVertMouseWheel, &ScrollPane::setVertMouseWheel>("vertMouseWheel"),
        D::property<&ScrollPane::getHorzMouseWheel, &ScrollPane::setHorzMouseWheel>("horzMouseWheel"),
        D::property<&ScrollPane::getVertScrollBarStep, &ScrollPane::setVertScrollBarStep>("vertStep"),
        D::property<&ScrollPane::getHorzScrollBarStep, &ScrollPane::setHorzScrollBarStep>("horzStep"),
        D::property<&ScrollPane::getVertScrollBarPageStep, &ScrollPane::setVertScrollBarPageStep>("vertPageStep"),
        D::property<&ScrollPane::getHorzScrollBarPageStep, &ScrollPane::setHorzScrollBarPageStep>("horzPageStep"),
        D::property(
            "vertValue", [](ScrollPane& self) { return self.getVertScrollValue(); },
            [](ScrollPane& self, double value) { scroll<&ScrollPane::setVertScrollValue>(self, value); }, Stage::Late),
        D::property(
            "horzValue", [](ScrollPane& self) { return self.getHorzScrollValue(); },
            [](ScrollPane& self, double value) { scroll<&ScrollPane::setHorzScrollValue>(self, value); }, Stage::Late),
        D::part("vertScrollBar", [](ScrollPane& self) -> gui::Widget* { return self.getVertScrollBar(); }),
        D::part("horzScrollBar", [](ScrollPane& self) -> gui::Widget* { return self.getHorzScrollBar(); }),
    };
    pane.events = {{"onScroll", EventKind::Widget, ScrollPane::changeScrollPaneCallbackName}};
    pane.methods = {D::method("updateBounds", [](lua_State*, ScrollPane& self) {
        self.updateWidgetsBounds();
        return 0;
    })};
}

}  // namespace host::lua
