#pragma once

#include "gui_lib/Skin/Image.h"
#include "gui_lib/widget/Widget.h"

class vtxTexture;

namespace gui {

/// Shows a texture of the host, turned about a point. It loads no skin.
class VORLEX_API TextureView : public Widget {
public:
    TextureView();

    /// Gives the target angle, pivot, description and texture too.
    void copyParams(TextureView* target) const;

    /// Degrees, counter-clockwise on the screen. Marks nothing: the next draw shows it.
    void setAngle(double degrees);
    double getAngle() const { return angle; }
    /// The point that stays in place, widget coordinates.
    void setPivotPoint(osg::Vec2i const& point) { pivotPoint = point; }
    osg::Vec2i getPivotPoint() const { return pivotPoint; }
    /// How the texture is shown; its file and rectangle are not read.
    void setImageInfo(Image::Info const& info);
    Image::Info const& getImageInfo() const { return imageInfo; }
    /// Not owned: it must live as long as it is shown. Null shows nothing.
    void setTexture(vtxTexture* newTexture);
    vtxTexture* getTexture() const { return texture; }

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    void doRedraw() override;

protected:
    // Widget:
    void redraw_() override;
    void drawModelView_() override;
    void makeModelView_(GraphicCommands* commands) override;

    double angle = 0.0;
    double angleRadians = 0.0;
    vtxTexture* texture = nullptr;
    osg::Vec2i pivotPoint;
    Image::Info imageInfo;
    Image image;
};

}  // namespace gui
