#pragma once

#include <osg/Vec2i>

#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "examples/gallery/PictureTarget.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowHeaderData.h"
#include "gui_lib/windows/WindowHeaderSkin.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/vtx/vtxRenderer.h"

/// Position and size in a parent, GUI units.
struct Box {
    int x;
    int y;
    int width;
    int height;
};

/// A widget that somebody else owns and may end at any time: null from then on.
template <class Kind>
class Held {
public:
    Held(Kind* widget = nullptr) : handler_(widget ? widget->getHandler() : nullptr) {}
    Kind* get() const { return static_cast<Kind*>(gui::WidgetHandler::get(handler_)); }

private:
    gui::WidgetHandler* handler_;
};

/// Shows a text while the label lives.
inline void say(Held<gui::Static> const& label, std::wstring_view text) {
    if (label.get())
        label.get()->setText(text);
}

/// Gives a new widget text and place, and puts it into a window or panel, which owns it from then on.
template <class Parent, class Child>
Child* place(Parent* parent, Child* child, Box const& box, std::wstring_view text = {}) {
    child->setText(text);
    child->setPosition({box.x, box.y});
    child->setSize({box.width, box.height});
    parent->insertWidget(child, -1);
    return child;
}

/// A label whose text wraps.
template <class Parent>
gui::Static* placeNote(Parent* parent, Box const& box, std::wstring_view text) {
    auto* const note = place(parent, new gui::Static, box, text);
    note->getWidgetSkin()->getSkinData()->setTextWrapping(true);
    return note;
}

/// A label in stronger letters.
template <class Parent>
gui::Static* placeHeading(Parent* parent, Box const& box, std::wstring_view text) {
    auto* const heading = place(parent, new gui::Static, box, text);
    gui::skin::Data* const data = heading->getWidgetSkin()->getSkinData();
    if (gui::Text::Info const* const look = data->getText(gui::skin::InteractiveStateReleased, 1)) {
        gui::Text::Info strong = *look;
        strong.font = "fonts/Inter-SemiBold.otf";
        data->setText(&strong, gui::skin::InteractiveStateReleased, 1);
    }
    return heading;
}

/// A view that stretches a picture over its place, and makes it smaller smoothly; `showPicture` gives it one.
template <class Parent>
gui::TextureView* placePicture(Parent* parent, Box const& box) {
    auto* const view = place(parent, new gui::TextureView, box);
    gui::Image::Info info;
    info.align = gui::Align2({gui::Align::Stretch, 0}, {gui::Align::Stretch, 0});
    info.userTexSampler = vtxRenderer::SamplerMips;
    view->setImageInfo(info);
    return view;
}

/// In each frame: the first drawing makes the texture, and a change of scale another.
inline void showPicture(Held<gui::TextureView> const& view, PictureTarget const& picture) {
    if (view.get() && view.get()->getTexture() != picture.getTexture())
        view.get()->setTexture(picture.getTexture());
}

/// Sizes a window so that its view has room for `content`.
inline void fitWindow(gui::WindowBase* window, osg::Vec2i const& content) {
    window->setSize(content + content);
    window->setSize(content + window->getSize() - window->getView()->getSize());
}

/// For a window that nobody could close, or open again. Before the window gets its size.
inline void removeCloseButton(gui::WindowBase* window) {
    window->getHeader()->getSkin()->getHeaderData()->setHasCloseButton(false);
}

/// Calls `function` when the widget callback `name` fires.
inline void on(gui::Widget* widget, char const* name, std::function<void()> function) {
    widget->addWidgetCallback(gui::getWidgetCallbackType(name),
                              std::make_shared<std::function<void()>>(std::move(function)));
}
