#pragma once

#include <memory>

#include "gui_lib/controls/labels/StaticSkin.h"

namespace gui {

class AnimatedColorStatic;
class UpdateTarget;

namespace skin {

class AnimatedColorStaticData;

/// The look of a label with a fading text colour. Holds an AnimatedColorStaticData.
/// Order: idle, appear, show, disappear, idle. A new colour starts again at appear, from the colour of the moment.
class VORLEX_API AnimatedColorStaticSkin : public StaticSkin {
public:
    explicit AnimatedColorStaticSkin(AnimatedColorStatic* widget);
    ~AnimatedColorStaticSkin() override;

    AnimatedColorStaticData* getAnimatedData() const;

    /// Does nothing while the widget's state has no text.
    void setTextColor(osg::Vec4f const& color);
    /// Keeps the colour and starts the picture's clock, if the widget's state has a picture; nothing visible follows.
    void setImageColor(osg::Vec4f const& color);

protected:
    // Skin:
    void drawText_() override;
    void makeText_(GraphicCommands* commands) override;

private:
    void updateTextColor_();
    void restart_(std::unique_ptr<UpdateTarget>& updater, void (AnimatedColorStaticSkin::*update)());
    void updateImageColor_();

    osg::Vec4f textStartColor;
    osg::Vec4f textTargetColor;
    osg::Vec4f textBaseColor;
    osg::Vec4f textCurrentColor;
    osg::Vec4f imageBaseColor;
    osg::Vec4f imageTargetColor;
    osg::Vec4f imageCurrentColor;
    float textStartTime = 0.0f;
    float textEndTime = 0.0f;
    float imageStartTime = 0.0f;
    float imageEndTime = 0.0f;
    std::unique_ptr<UpdateTarget> textUpdater;
    std::unique_ptr<UpdateTarget> imageUpdater;
};

}  // namespace skin
}  // namespace gui
