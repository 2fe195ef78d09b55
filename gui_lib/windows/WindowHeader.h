#pragma once

#include "gui_lib/widget/Container.h"

namespace gui {

class CloseButton;
class Dragger;
class WindowBase;

namespace skin {
class WindowHeaderSkin;
}

/// The title strip of a window: it shows the window's text, drags the window and may hold a close button. Its look is
/// the sub-skin "header" of the window's skin. Handed to the skin: the inner state of the window.
class VORLEX_API WindowHeader : public Container {
public:
    explicit WindowHeader(WindowBase& window);
    ~WindowHeader() override;

    /// Whether there is a strip to see: visible and at least one unit high.
    virtual bool getVisible() const;
    using Container::getVisible;

    /// Null without one.
    CloseButton* getCloseButton() const { return closeButton; }
    bool getHasCloseButton() const { return hasCloseButton; }
    /// The skin's "hasCloseButton" sets this again at each change of the header's size.
    void setHasCloseButton(bool newHasCloseButton);
    skin::WindowHeaderSkin* getSkin() const;
    /// Null once the window has died.
    WindowBase* getWindow() const;

    // Container:
    void onWidgetDestroy(WidgetHandler* child) override;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    int getInnerState() const override;

protected:
    // Container:
    void removeWidget_(Widget* widget) override;

    // Widget:
    void onSizeChanged_(osg::Vec2i const& newSize) override;

    WidgetHandler* window = nullptr;
    CloseButton* closeButton = nullptr;
    Dragger* dragger = nullptr;
    bool hasCloseButton = false;

private:
    void forgetChild_(WidgetHandler const* child);
    void placeCloseButton_(osg::Vec2i const& corner, osg::Vec2i const& area);

    WidgetHandler* closeButtonHandler = nullptr;
    WidgetHandler* draggerHandler = nullptr;
};

}  // namespace gui
