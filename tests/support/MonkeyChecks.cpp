#include <algorithm>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/widget/WidgetWorkLists.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/WindowBase.h"
#include "tests/support/Monkey.h"

namespace support {

namespace {

using gui::Widget;
using gui::WidgetHandler;

/// Lets the protected parts of any container be named.
struct Opened : gui::Container {
    using Container::focusedWidget;
    using Container::hoveredWidget;
    using Container::widgets;
};
constexpr auto childrenOf = &Opened::widgets;
constexpr auto hoveredOf = &Opened::hoveredWidget;
constexpr auto focusedOf = &Opened::focusedWidget;

class TreeCheck {
public:
    explicit TreeCheck(std::vector<MonkeyWidget> const& live) : live_(live) {}

    std::string run() {
        for (MonkeyWidget const& each : live_)
            if (Widget* const widget = WidgetHandler::get(each.handler))
                alive_.push_back(widget);
        std::sort(alive_.begin(), alive_.end());
        for (MonkeyWidget const& each : live_)
            if (Widget* const widget = WidgetHandler::get(each.handler))
                checkWidget_(*widget, each);
        for (int surface = 0; gui::GUI::get()->getSurfaceIdValid(surface); ++surface)
            checkManager_(*gui::WindowsManager::get(surface));
        for (MonkeyWidget const& each : live_)
            if (each.window && WidgetHandler::get(each.handler))
                checkShown_(*each.window);
        checkWorkLists_();
        return fault_;
    }

private:
    bool isAlive_(Widget* widget) const { return std::binary_search(alive_.begin(), alive_.end(), widget); }

    void fail_(Widget const* widget, char const* text) {
        if (fault_.empty())
            fault_ = std::string(widget ? widget->getWidgetType() : "manager") + ": " + text;
    }
    void fail_(Widget const* widget, char const* text, WidgetHandler const* other) {
        if (!fault_.empty())
            return;
        fail_(widget, text);
        fault_ += WidgetHandler::get(other) ? std::string(", but a ") + WidgetHandler::get(other)->getWidgetType()
                                            : std::string(", but dead");
    }

    static bool holds_(gui::Container& container, WidgetHandler* child) {
        auto const& children = container.*childrenOf;
        if (std::find(children.begin(), children.end(), child) != children.end())
            return true;
        auto* const window = dynamic_cast<gui::WindowBase*>(&container);
        for (int i = 0; window && i < window->getOverlayWidgetCount(); ++i)
            if (window->getOverlayWidget(i) == WidgetHandler::get(child))
                return true;
        return false;
    }

    void checkWidget_(Widget& widget, MonkeyWidget const& known) {
        WidgetHandler* const parent = widget.getParent();
        if (parent) {
            auto* const container = dynamic_cast<gui::Container*>(WidgetHandler::get(parent));
            if (!container)
                return fail_(&widget, "its parent is dead or no container");
            if (!holds_(*container, widget.getHandler()))
                return fail_(&widget, "its parent does not know it");
            int depth = 0;
            for (Widget* up = container; up; up = WidgetHandler::get(up->getParent()))
                if (++depth > 1000)
                    return fail_(&widget, "its parents go round in a circle");
        }
        if (known.container)
            checkContainer_(*known.container, known.window);
    }

    void checkContainer_(gui::Container& container, gui::WindowBase* window) {
        auto const& children = container.*childrenOf;
        for (std::size_t i = 0; i < children.size(); ++i) {
            Widget* const child = WidgetHandler::get(children[i]);
            if (!child)
                return fail_(&container, "it holds a dead child");
            if (child->getParent() != container.getHandler())
                return fail_(child, "another container holds it than its parent");
            if (std::find(children.begin() + i + 1, children.end(), children[i]) != children.end())
                return fail_(child, "its parent holds it twice");
        }
        if (container.*hoveredOf && !holds_(container, container.*hoveredOf))
            fail_(&container, "its hovered widget is no child", container.*hoveredOf);
        if (container.*focusedOf && !holds_(container, container.*focusedOf))
            fail_(&container, "its focused widget is no child", container.*focusedOf);
        for (int i = 0; window && i < window->getOverlayWidgetCount(); ++i)
            if (!window->getOverlayWidget(i) || window->getOverlayWidget(i)->getParent() != container.getHandler())
                fail_(&container, "an overlay widget is dead or another's");
    }

    void checkManager_(gui::WindowsManager& manager) {
        qor::vector<gui::WindowBase*> windows;
        manager.getShownWindows(windows);
        for (gui::WindowBase* window : windows) {
            if (!isAlive_(window))
                return fail_(nullptr, "it shows a dead window");
            // One that became a widget while it was shown stays where it is; the managers only look past it.
            if (window->getAsWidget())
                continue;
            if (!window->getVisible(false))
                fail_(window, "it is shown, but not visible");
            if (window->getSurfaceId() != manager.getSurfaceId())
                fail_(window, "another surface shows it");
            if (std::find(shown_.begin(), shown_.end(), window) != shown_.end())
                fail_(window, "it is shown twice");
            shown_.push_back(window);
        }
        gui::WindowBase* const hovered = manager.getHoveredWindow();
        if (hovered && std::find(windows.begin(), windows.end(), hovered) == windows.end())
            fail_(nullptr, "the hovered window is not shown");
    }

    void checkShown_(gui::WindowBase& window) {
        if (!window.getVisible(false) || window.getAsWidget() ||
            std::find(shown_.begin(), shown_.end(), &window) != shown_.end() ||
            dynamic_cast<gui::OffscreenWindow*>(&window) || !gui::GUI::get()->getSurfaceIdValid(window.getSurfaceId()))
            return;
        fail_(&window, "it is visible, but not shown");
    }

    void checkWorkLists_() {
        auto const& lists = gui::WidgetWorkLists::get();
        for (auto const* list : {&lists.getDirtyList(), &lists.getDirtyListNext()})
            for (auto const& entry : *list)
                if (!entry.alive || !isAlive_(entry.widget))
                    fail_(nullptr, "a dead widget waits for its redraw");
        for (Widget* widget : lists.getDoRedrawList())
            if (!isAlive_(widget))
                fail_(nullptr, "a dead widget waits for its renderer objects");
    }

    std::vector<MonkeyWidget> const& live_;
    /// Sorted.
    std::vector<Widget*> alive_;
    std::vector<gui::WindowBase*> shown_;
    std::string fault_;
};

}  // namespace

std::string findTreeFault(std::vector<MonkeyWidget> const& live) { return TreeCheck(live).run(); }

}  // namespace support
