#include "gui_lib/Skin/TextMeasure.h"

#include "gui_lib/Skin/Text.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui::skin {

namespace {

unsigned long measureCount = 0;

}  // namespace

unsigned long TextMeasure::getMeasureCount() { return measureCount; }

TextMeasure::Limits TextMeasure::getLimits_(Text const& measured, osg::Vec2i const& size) {
    Align2 const align = measured.getAlign();
    Limits limits{measured.getLineHeight(), align.getHorzAlign().offset, align.getVertAlign().offset,
                  measured.getWrapping(),   measured.getUseEllipsis(),   0};
    if (limits.wrapping || limits.useEllipsis)
        limits.width = saturatingSubtract(size.x(), getThickness(measured.getInsets()).x());
    return limits;
}

osg::Vec2i TextMeasure::calcSize(Text const& measured, qor::basic_string<wchar_t> const& text, osg::Vec2i const& size) {
    vtxFontManager& fonts = *vtxRenderer::get()->getFontManager();
    std::shared_ptr<vtxFont> const font = fonts.getFont(measured.getFont(), measured.getFontSize(), measured.getBlur());
    Limits const limits = getLimits_(measured, size);
    bool const known = font && font_.lock() == font && scaleEpoch_ == fonts.getScaleEpoch() && limits_ == limits &&
                       text_ == text && MeasurePass::isKeeping();
    if (!known) {
        ++measureCount;
        room_ = measured.calcSize(text, size);
        font_ = font;
        scaleEpoch_ = fonts.getScaleEpoch();
        limits_ = limits;
        text_ = text;
    }
    return room_;
}

}  // namespace gui::skin
