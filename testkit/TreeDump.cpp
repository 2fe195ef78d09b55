#include "testkit/TreeDump.h"

#include <cstdio>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/windows/WindowBase.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/qor/Utf8.h"

namespace testkit {

namespace {

std::string quote(qor::basic_string<wchar_t> const& text) {
    qor::string const utf8 = qor::wchar_to_utf8(text);
    std::string result = "\"";
    for (char const character : utf8) {
        if (character == '\n')
            result += "\\n";
        else
            result += character;
    }
    return result + "\"";
}

void appendFlags(gui::Widget const& widget, std::string& out) {
    if (!widget.getVisible(false))
        out += " hidden";
    if (!widget.getEnabled())
        out += " disabled";
    if (widget.getFocused())
        out += " focused";
    constexpr char const* states[] = {"", " hover", " pressed", ""};
    out += states[widget.getInteractiveState() & 3];
    if (widget.getInnerState() != 1)
        out += " inner " + std::to_string(widget.getInnerState());
}

void append(gui::Widget& widget, int depth, std::string& out) {
    osg::Vec2i const place = widget.widgetToScreen({0, 0});
    osg::Vec2i const size = widget.getSize();
    char geometry[64];
    std::snprintf(geometry, sizeof(geometry), " %d,%d %dx%d", place.x(), place.y(), size.x(), size.y());
    out.append(static_cast<std::size_t>(depth) * 2, ' ');
    out += widget.getWidgetType();
    if (!widget.getName().empty())
        out += " name " + quote(widget.getName());
    if (!widget.getText().empty())
        out += " " + quote(widget.getText());
    out += geometry;
    appendFlags(widget, out);
    out += '\n';

    if (auto* const window = dynamic_cast<gui::WindowBase*>(&widget)) {
        if (window->getHeader())
            append(*window->getHeader(), depth + 1, out);
        if (window->getView())
            append(*window->getView(), depth + 1, out);
    } else if (auto* const container = dynamic_cast<gui::Container*>(&widget)) {
        for (int i = 0; i < container->getWidgetCount(); ++i)
            if (gui::Widget* const child = container->getWidget(i))
                append(*child, depth + 1, out);
    }
}

}  // namespace

std::string dumpTree() {
    std::string out;
    for (int surface = 0; gui::GUI::get()->getSurfaceIdValid(surface); ++surface) {
        out += "surface " + std::to_string(surface) + "\n";
        qor::vector<gui::WindowBase*> windows;
        gui::WindowsManager::get(surface)->getShownWindows(windows);
        for (gui::WindowBase* window : windows)
            append(*window, 1, out);
    }
    return out;
}

}  // namespace testkit
