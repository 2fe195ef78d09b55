#include "examples/gallery/CurveButton.h"

#include <algorithm>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxShaderQuads.h"

namespace {

constexpr float thickness = 1.5f;
/// Of the height, above and below; some curves overshoot by nearly as much.
constexpr float headroom = 0.22f;
constexpr int side = 4;
constexpr int partsOfAUnit = 2;

/// The button's own look with the curve in the place of a picture, in the colour of its text.
class CurveSkin final : public gui::skin::ToggleButtonSkin {
public:
    CurveSkin(gui::Widget* widget, gui::EasingType type) : ToggleButtonSkin(widget), type_(type) {}

protected:
    // Skin:
    void redrawImage_(gui::skin::InteractiveState state, int inner) override {
        gui::Text::Info const* const text = data->getText(state, inner);
        color_ = text ? text->color : osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
        osg::Vec2i const size = getWidgetNonZoomedSize_();
        quads_.reset();
        quads_.beginBatch(nullptr, 0);
        int const parts = std::max(size.x() - 2 * side, 0) * partsOfAUnit;
        for (int part = 0; part < parts; ++part) {
            float const from = getHeight_(float(part) / float(parts), size);
            float const to = getHeight_(float(part + 1) / float(parts), size);
            quads_.addBatchQuad(float(side) + float(part) / partsOfAUnit, std::min(from, to) - thickness / 2,
                                1.0f / partsOfAUnit, std::abs(to - from) + thickness, -1.0f);
            quads_.addBatchTexCoords(0.0f, 0.0f, 1.0f, 1.0f);
        }
        quads_.endBatch();
    }
    void drawImage_() override {
        vtxShader* const shader = vtxRenderer::get()->getShader();
        shader->setColor(color_);
        quads_.draw(shader);
    }
    void makeImage_(gui::GraphicCommands* commands) override { commands->drawQuads(quads_, color_, 0, -1); }

private:
    /// Where the curve is after a share of the time, units from the top.
    float getHeight_(float time, osg::Vec2i const& size) const {
        float const height = float(size.y());
        float const value = gui::getEasingFunction(type_)(time, 0.0f, 1.0f, 1.0f);
        return height - (headroom + value * (1.0f - 2.0f * headroom)) * height;
    }

    gui::EasingType type_;
    osg::Vec4f color_;
    vtxShaderQuads quads_;
};

}  // namespace

CurveButton::CurveButton(gui::EasingType type) : ToggleButton(0, true) {
    skin = new CurveSkin(this, type);
    skin->load("toggleButtonSkin");
}
