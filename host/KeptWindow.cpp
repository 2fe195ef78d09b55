#include "host/KeptWindow.h"

#include <string>

#include "gui_lib/controls/scroll/ScrollBarBase.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"

namespace host {

namespace {

qor::wstring getStep(gui::Widget const& widget, int place) {
    qor::wstring step = widget.getName();
    if (step.empty())
        step = qor::wstring(L"#") + std::to_wstring(place).c_str();
    return step + L"/";
}

/// The widget of a path below the container, or null.
gui::Widget* find(gui::Container& container, std::wstring_view path) {
    int const count = container.getWidgetCount();
    for (int i = 0; i < count; ++i) {
        gui::Widget* const child = container.getWidget(i);
        if (!child)
            continue;
        qor::wstring const step = getStep(*child, i);
        if (path == step)
            return child;
        auto* const inner = dynamic_cast<gui::Container*>(child);
        if (inner && path.substr(0, step.size()) == step)
            if (gui::Widget* const found = find(*inner, path.substr(step.size())))
                return found;
    }
    return nullptr;
}

}  // namespace

KeptWindow::KeptWindow(gui::WindowBase& window, osg::Vec2i const& position, osg::Vec2i const& size)
    : position_(window.getPosition()),
      size_(window.getSize()),
      moved_(position_ != position),
      resized_(size_ != size),
      visible_(window.getVisible(false)) {
    note_(window, {});
}

void KeptWindow::note_(gui::Container& container, qor::wstring const& path) {
    int const count = container.getWidgetCount();
    for (int i = 0; i < count; ++i) {
        gui::Widget* const child = container.getWidget(i);
        if (!child)
            continue;
        qor::wstring const childPath = path + getStep(*child, i);
        auto* const inner = dynamic_cast<gui::Container*>(child);
        if (child->getFocused())
            focusPath_ = childPath;
        if (auto const* const pane = dynamic_cast<gui::ScrollPane*>(child))
            scrolls_.push_back({childPath, pane->getHorzScrollValue(), pane->getVertScrollValue()});
        else if (auto const* const bar = dynamic_cast<gui::ScrollBarBase*>(child))
            scrolls_.push_back({childPath, bar->getValue(), bar->getValue()});
        if (inner)
            note_(*inner, childPath);
    }
}

void KeptWindow::restore(gui::WidgetHandler const* handler) const {
    auto const getWindow = [handler] { return dynamic_cast<gui::WindowBase*>(gui::WidgetHandler::get(handler)); };
    if (gui::WindowBase* const window = getWindow(); window && resized_)
        window->setSize(size_);
    if (gui::WindowBase* const window = getWindow(); window && moved_)
        window->setPosition(position_);
    if (gui::WindowBase* const window = getWindow())
        window->setVisible(visible_);
    // Panes learn of their contents' size in a redraw.
    if (!scrolls_.empty())
        gui::GUI::get()->redraw(false);
    for (Scroll const& scroll : scrolls_) {
        gui::WindowBase* const window = getWindow();
        gui::Widget* const widget = window ? find(*window, scroll.path) : nullptr;
        if (auto* const pane = dynamic_cast<gui::ScrollPane*>(widget)) {
            pane->setHorzScrollValue(scroll.horz);
            pane->setVertScrollValue(scroll.vert);
        } else if (auto* const bar = dynamic_cast<gui::ScrollBarBase*>(widget)) {
            bar->setValue(scroll.vert);
        }
    }
    gui::WindowBase* const window = getWindow();
    gui::Widget* const focused = window && !focusPath_.empty() ? find(*window, focusPath_) : nullptr;
    if (focused)
        focused->setFocused(true);
}

}  // namespace host
