#pragma once

#include "gui_lib/Skin/Skin.h"

namespace gui::skin {

class CheckBoxData;

/// The look of a button with a check mark, which lies over text and picture. Holds a CheckBoxData.
class VORLEX_API CheckBaseSkin : public Skin {
public:
    explicit CheckBaseSkin(Widget* widget);
    ~CheckBaseSkin() override;

    CheckBoxData* getCheckData() const;

    // Skin:
    void doRedraw() override;

protected:
    /// Makes, changes or destroys the mark for a state.
    virtual void redrawCheck_(InteractiveState state, int inner);
    virtual void drawCheck_();
    virtual void makeCheck_(GraphicCommands* commands);

    // Skin:
    void redraw_() override;
    void draw_() override;
    void make_(GraphicCommands* commands) override;
    osg::Vec2i calcPictureSize_(InteractiveState state, int inner) override;
    /// The label only, right of the mark.
    osg::RectImpl<osg::Vec2i> getFocusRectBounds_() const override;

    Image* checkImage = nullptr;
};

class VORLEX_API CheckBoxSkin : public CheckBaseSkin {
public:
    explicit CheckBoxSkin(Widget* widget);
};

class VORLEX_API RadioButtonSkin : public CheckBaseSkin {
public:
    explicit RadioButtonSkin(Widget* widget);
};

}  // namespace gui::skin
