#include "gui_lib/windows/WindowHeader.h"

#include "gui_lib/base/Align2.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/CloseButton.h"
#include "gui_lib/windows/Dragger.h"
#include "gui_lib/windows/WindowBase.h"
#include "gui_lib/windows/WindowHeaderData.h"
#include "gui_lib/windows/WindowHeaderSkin.h"
#include "platform/qor/Utf8.h"

namespace gui {

WindowHeader::WindowHeader(WindowBase& newWindow) : window(newWindow.getHandler()) {
    skin = new skin::WindowHeaderSkin(this);
    dragger = new Dragger(newWindow);
    draggerHandler = dragger->getHandler();
    insertWidget_(dragger, -1);
}

WindowHeader::~WindowHeader() {
    beginDestruction_();
    closeButton = nullptr;
    dragger = nullptr;
    // While this is still a header, for the callbacks of dying children.
    deleteWidgets_();
}

WindowBase* WindowHeader::getWindow() const { return static_cast<WindowBase*>(WidgetHandler::get(window)); }

skin::WindowHeaderSkin* WindowHeader::getSkin() const { return dynamic_cast<skin::WindowHeaderSkin*>(skin); }

Widget* WindowHeader::clone() const {
    WindowBase* const owner = getWindow();
    if (!owner)
        return nullptr;
    auto* const copy = new WindowHeader(*owner);
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* WindowHeader::getWidgetType() const { return "WindowHeader"; }

int WindowHeader::getInnerState() const {
    WindowBase const* const owner = getWindow();
    return owner ? owner->getInnerState() : Container::getInnerState();
}

bool WindowHeader::getVisible() const { return visible && size.y() >= 1; }

void WindowHeader::onWidgetDestroy(WidgetHandler* child) {
    forgetChild_(child);
    Container::onWidgetDestroy(child);
}

void WindowHeader::removeWidget_(Widget* widget) {
    if (widget && getWidgetIndex_(widget) >= 0)
        forgetChild_(widget->getHandler());
    Container::removeWidget_(widget);
}

void WindowHeader::forgetChild_(WidgetHandler const* child) {
    if (child == closeButtonHandler && closeButton) {
        // One that lives on elsewhere may outlive the skin that it has borrowed.
        if (WidgetHandler::get(child))
            closeButton->returnSkin();
        closeButton = nullptr;
    }
    if (child == draggerHandler)
        dragger = nullptr;
}

void WindowHeader::setHasCloseButton(bool newHasCloseButton) {
    if (newHasCloseButton == hasCloseButton)
        return;
    hasCloseButton = newHasCloseButton;
    WindowBase* const owner = getWindow();
    if (!newHasCloseButton) {
        Widget::destroy(closeButton);
    } else if (owner) {
        closeButton = new CloseButton(*owner, getSkin()->getCloseButtonSkin());
        closeButtonHandler = closeButton->getHandler();
        insertWidget_(closeButton, -1);
    }
}

void WindowHeader::onSizeChanged_(osg::Vec2i const& newSize) {
    AliveGuard const self(this);
    Container::onSizeChanged_(newSize);
    if (self.dead())
        return;
    skin::WindowHeaderData const* const data = getSkin()->getHeaderData();
    if (!data)
        return;
    setHasCloseButton(data->getHasCloseButton());
    if (self.dead())
        return;
    Insets const insets = data->getInsets();
    osg::Vec2i const corner(insets.left, insets.top);
    osg::Vec2i const area = saturatingSubtract(size, getThickness(insets));
    placeCloseButton_(corner, area);
    if (self.alive() && dragger)
        dragger->setPosition(corner);
    if (self.alive() && dragger)
        dragger->setSize(area);
}

void WindowHeader::placeCloseButton_(osg::Vec2i const& corner, osg::Vec2i const& area) {
    if (!closeButton)
        return;
    // A callback may destroy the button or take it out of the header.
    CloseButton* const button = closeButton;
    AliveGuard const guard(button);
    skin::WindowHeaderData const* const data = getSkin()->getHeaderData();
    Align2 const align(data->getCloseButtonHorzAlign(), data->getCloseButtonVertAlign());
    button->setText(qor::utf8_to_wchar(data->getCloseButtonText()));
    // Square; a size limit of the button's skin may change it.
    button->setSize(osg::Vec2i(area.y(), area.y()));
    if (guard.dead())
        return;
    osg::RectImpl<osg::Vec2i> const place = align.calc(button->getSize(), area);
    button->setPosition(saturatingAdd(corner, place.leftTop()));
    if (guard.alive())
        button->setSize(place.size());
}

}  // namespace gui
