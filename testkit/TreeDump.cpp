#include "testkit/TreeDump.h"

#include <algorithm>
#include <cstdio>

#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Utf8.h"
#include "platform/vtx/vtxRenderer.h"

namespace testkit {

namespace {

/// Deeper lines are not indented further, but say how deep they are.
constexpr int deepestIndent = 32;

/// The hooks that every container has, whichever of its children the class shows to its users.
struct Children : gui::Container {
    static int count(gui::Container const& container) { return (container.*(&Children::getWidgetCount_))(); }
    static gui::Widget* get(gui::Container const& container, int index) {
        return (container.*(&Children::getWidget_))(index);
    }
};

/// What a surface says about its widgets.
struct Marks {
    explicit Marks(int surface) {
        gui::WindowsManager const* const manager = gui::WindowsManager::get(surface);
        if (!manager)
            return;
        active = manager->getActiveWindow();
        underMouse = manager->findWidgetAtScreenPoint(gui::GUI::get()->getMousePosition(surface));
        capture = gui::WidgetHandler::get(manager->getCapture());
    }
    gui::Widget const* active = nullptr;
    gui::Widget const* underMouse = nullptr;
    gui::Widget const* capture = nullptr;
};

std::string format(char const* pattern, auto... values) {
    char text[96];
    std::snprintf(text, sizeof(text), pattern, values...);
    return text;
}

std::string quote(qor::basic_string<wchar_t> const& text) {
    std::string result = "\"";
    for (char const character : qor::wchar_to_utf8(text)) {
        if (character == '\n')
            result += "\\n";
        else if (character == '"' || character == '\\')
            result += {'\\', character};
        else if (static_cast<unsigned char>(character) < 32)
            result += format("\\x%02x", character);
        else
            result += character;
    }
    return result + "\"";
}

void appendState(gui::Widget const& widget, Marks const& marks, std::string& out) {
    if (!widget.getVisible(false))
        out += " hidden";
    if (!widget.getEnabled())
        out += " disabled";
    if (widget.getFocused())
        out += " focused";
    constexpr char const* states[] = {"", " hover", " pressed", ""};
    out += states[widget.getInteractiveState() & 3];
    if (&widget == marks.active)
        out += " active";
    if (&widget == marks.underMouse)
        out += " mouse";
    if (&widget == marks.capture)
        out += " capture";
    if (widget.getInnerState() != 1)
        out += format(" inner %d", widget.getInnerState());
    if (widget.getTabOrder() != 0)
        out += format(" tab %d", widget.getTabOrder());
    if (widget.getOpacity() != 1.0f)
        out += format(" opacity %g", static_cast<double>(widget.getOpacity()));
    if (widget.getZoom() != 1.0f)
        out += format(" zoom %g", static_cast<double>(widget.getZoom()));
}

std::string describeWith(gui::Widget const& widget, Marks const& marks) {
    osg::Vec2i const place = widget.widgetToScreen({0, 0});
    osg::Vec2i const size = widget.getSize();
    std::string out = widget.getWidgetType();
    if (!widget.getName().empty())
        out += " name " + quote(widget.getName());
    if (!widget.getText().empty())
        out += " " + quote(widget.getText());
    out += format(" %d,%d %dx%d", place.x(), place.y(), size.x(), size.y());
    appendState(widget, marks, out);
    if (auto const* const window = dynamic_cast<gui::Window const*>(&widget)) {
        if (window->getZOrder() != 0)
            out += format(" z %d", window->getZOrder());
        if (window->getTransparentForUserInput())
            out += " transparent";
    }
    if (!widget.getTooltipText().empty())
        out += " tooltip " + quote(widget.getTooltipText());
    return out;
}

void appendSurface(int surface, std::string& out) {
    Marks const marks(surface);
    gui::GUI const& gui = *gui::GUI::get();
    osg::Vec2i const mouse = gui.getMousePosition(surface);
    out += format("surface %d mouse %d,%d", surface, mouse.x(), mouse.y());
    if (surface == 0)
        out += format(" size %dx%d scale %g", gui.getScreenSize().x(), gui.getScreenSize().y(),
                      static_cast<double>(vtxRenderer::get()->getScale()));
    out += '\n';
    for (TreeEntry const& entry : listTree(surface)) {
        out.append(static_cast<std::size_t>(std::min(entry.depth + 1, deepestIndent)) * 2, ' ');
        if (entry.depth >= deepestIndent)
            out += format("[%d] ", entry.depth);
        if (entry.overlay)
            out += "overlay ";
        out += describeWith(*entry.widget, marks) + '\n';
    }
    gui::Tooltip const* const tooltip = gui::WindowsManager::get(surface)->getTooltip();
    if (tooltip && tooltip->getVisible(false))
        out += "  " + describeWith(*tooltip, marks) + '\n';
}

}  // namespace

std::vector<TreeEntry> listTree(int surface) {
    std::vector<TreeEntry> entries;
    gui::WindowsManager const* const manager = gui::WindowsManager::get(surface);
    if (!manager)
        return entries;
    qor::vector<gui::WindowBase*> windows;
    manager->getShownWindows(windows);
    // A stack of its own: trees may be deeper than the program's stack allows.
    std::vector<TreeEntry> open;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        open.push_back({*window, -1, 0, false});
    while (!open.empty()) {
        TreeEntry const entry = open.back();
        open.pop_back();
        int const index = static_cast<int>(entries.size());
        entries.push_back(entry);
        auto const push = [&](gui::Widget* child, bool overlay) {
            if (child)
                open.push_back({child, index, entry.depth + 1, overlay});
        };
        if (auto const* const window = dynamic_cast<gui::WindowBase const*>(entry.widget))
            for (int i = window->getOverlayWidgetCount() - 1; i >= 0; --i)
                push(window->getOverlayWidget(i), true);
        if (auto const* const container = dynamic_cast<gui::Container const*>(entry.widget))
            for (int i = Children::count(*container) - 1; i >= 0; --i)
                push(Children::get(*container, i), false);
    }
    return entries;
}

std::string describe(gui::Widget const& widget) { return describeWith(widget, Marks(widget.getRootSurfaceId())); }

std::string dumpTree() {
    std::string out;
    for (int surface = 0; gui::GUI::get() && gui::GUI::get()->getSurfaceIdValid(surface); ++surface)
        appendSurface(surface, out);
    return out;
}

}  // namespace testkit
