#include "gui_lib/Skin/Skin.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/FocusRect.h"
#include "gui_lib/Skin/TargetWidgetScope.h"
#include "gui_lib/Skin/TextMeasure.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/base/textutil.h"
#include "gui_lib/effects/ShaderEffect.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/ScratchGraphicCommands.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/Widget.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui::skin {

namespace {

bool isVisible(Bkg::Info const& info) {
    // A NaN alpha counts as visible: it differs from 0.
    return std::any_of(info.cellColors.begin(), info.cellColors.end(),
                       [](osg::Vec4f const& color) { return color.a() != 0.0f; });
}

bool isVisible(Text::Info const& info) { return !info.font.empty() && info.fontSize >= 1; }

template <class Drawable>
void destroyDrawable(Drawable*& drawable) {
    delete drawable;
    drawable = nullptr;
}

/// Of Skin itself; the same whenever a construction begins.
VirtualTable skinTable;

int getTabSpaces() { return GUI::get() ? GUI::get()->getTabSpacesCount() : 0; }

}  // namespace

Skin::Skin(Widget* newWidget, bool makeData) : widget(newWidget) {
    skinTable = VirtualTable::of(*this);
    if (makeData)
        setSkinData(new Data(this), true);
}

Skin::~Skin() {
    // The effect runs on until its time is over.
    if (effect)
        effect->skin_ = nullptr;
    forgetNames_();
    Skin::clearSkinData_();
    delete bkg;
    delete text;
    delete image;
    delete focusRect;
    deleteTarget_();
}

// --- Owner and data ---

void Skin::setWidget(Widget* newWidget) {
    if (newWidget == widget)
        return;
    widget = newWidget;
    MeasurePass::forgetAll();
    // What is laid out belongs to the widget before.
    textChanged = true;
    sizeChanged = true;
}

void Skin::setSkinData(Data* newData, bool owned) {
    if (newData != data) {
        forgetNames_();
        clearSkinData_();
        data = newData;
        if (data)
            data->addUser_(this);
    }
    if (data)
        data->setOwner(this);
    ownsData = owned;
    MeasurePass::forgetAll();
}

void Skin::clearSkinData_() {
    Data* const old = data;
    data = nullptr;
    if (!old)
        return;
    MeasurePass::forgetAll();
    if (dataUserIndex_ >= 0)
        old->removeUser_(this);
    if (ownsData)
        delete old;
}

void Skin::copyTo(Skin* other) const {
    if (!other || other == this)
        return;
    if (data)
        data->copyTo(other->data);
    other->targetMsaa = targetMsaa;
    other->targetMips = targetMips;
    if (!names_.empty() && other->names_ != names_) {
        other->forgetNames_();
        other->addName_(names_);
    }
}

void Skin::updateWidget(bool sizeDirty) {
    MeasurePass::forgetAll();
    if (!widget)
        return;
    widget->setDirty(Widget::DirtySelf);
    if (sizeDirty)
        widget->setDirtySize(true);
}

void Skin::setTextChanged() { textChanged = true; }

void Skin::setSizeChanged() { sizeChanged = true; }

qor::span<qor::basic_string<wchar_t> const> Skin::getTextLines() {
    if (textChanged)
        redraw();
    return text ? qor::span<qor::basic_string<wchar_t> const>(text->getTextLines())
                : qor::span<qor::basic_string<wchar_t> const>();
}

// --- Effects ---

void Skin::setShaderEffect(char const* name, ShaderEffectParams const* params) {
    if (!ShaderEffectManager::exists()) {
        effect = nullptr;
        return;
    }
    MeasurePass::forgetFleeting();
    if (ShaderEffect* const old = std::exchange(effect, nullptr)) {
        old->skin_ = nullptr;
        old->destroy();
    }
    if (name)
        effect = ShaderEffectManager::get().getEffect(name);
    if (effect) {
        effect->skin_ = this;
        if (widget)
            effect->setOwner(widget->getHandler());
        if (params)
            effect->setParams(*params);
    }
    if (widget)
        widget->setDirty(Widget::DirtySelf);
}

ShaderEffect* Skin::getShaderEffect() const { return effect; }

// --- Natural sizes ---

osg::Vec2i Skin::getWidgetNonZoomedSize_() const {
    if (!widget)
        return osg::Vec2i();
    osg::Vec2i const size = widget->getSize();
    float const zoom = widget->getZoom();
    if (zoom == 1.0f)
        return size;
    return osg::Vec2i(qor::truncateToInt(size.x() / zoom), qor::truncateToInt(size.y() / zoom));
}

osg::Vec2i Skin::calcSize() {
    if (!data)
        return osg::Vec2i();
    Insets const insets = data->getInsets();
    osg::Vec2i const textSize = calcTextSize_(InteractiveStateReleased, 1);
    osg::Vec2i const pictureSize = calcPictureSize_(InteractiveStateReleased, 1);
    osg::Vec2i const larger(std::max(textSize.x(), pictureSize.x()), std::max(textSize.y(), pictureSize.y()));
    return saturatingAdd(larger, getThickness(insets));
}

osg::Vec2i Skin::calcPictureSize_(InteractiveState state, int inner) {
    Image::Info const* const info = data ? data->getImage(state, inner) : nullptr;
    return info ? calcImageSize_(*info) : osg::Vec2i();
}

osg::Vec2i Skin::calcImageSize_(Image::Info const& info) {
    osg::Vec2i size;
    if (!info.file.empty()) {
        Image measured;
        measured.setTexture(info.file, info.rect);
        measured.setSize(info.size);
        size = measured.getSize();
    }
    auto const getShift = [](Align const& align) { return saturate(std::abs(std::int64_t(align.offset))); };
    return saturatingAdd(size, osg::Vec2i(getShift(info.align.getHorzAlign()), getShift(info.align.getVertAlign())));
}

osg::Vec2i Skin::calcBkgSize_(InteractiveState state, int inner) {
    Bkg::Info const* const info = data ? data->getBkg(state, inner) : nullptr;
    if (!info)
        return osg::Vec2i();
    return getThickness(info->insets);
}

osg::Vec2i Skin::calcTextSize_(InteractiveState state, int inner) {
    Text::Info const* const info = data ? data->getText(state, inner) : nullptr;
    if (!info || !widget)
        return osg::Vec2i();
    return calcTextSize2_(widget->getText(), *info, getWidgetNonZoomedSize_());
}

osg::Vec2i Skin::calcTextSize2_(qor::basic_string<wchar_t> const& theText, Text::Info const& info,
                                osg::Vec2i const& size) {
    if (!data || theText.empty())
        return osg::Vec2i();
    Text measured;
    measured.set(info);
    measured.setWrapping(data->getTextWrapping());
    measured.setUseEllipsis(data->getUseEllipsis());
    measured.setInsets(data->getInsets());
    if (!textMeasure_)
        textMeasure_ = std::make_unique<TextMeasure>();
    if (textutil::getTextHasTabs(theText))
        return textMeasure_->calcSize(measured, textutil::replaceTabsBySpaces(theText), size);
    return textMeasure_->calcSize(measured, theText, size);
}

bool Skin::limitsLast_() const { return !data || data->paramsLast_(); }

bool Skin::sizeLasts_() const {
    if (!VirtualTable::of(*this).sharesAll(skinTable, &Skin::calcSize, &Skin::calcTextSize_, &Skin::calcTextSize2_,
                                           &Skin::calcPictureSize_))
        return false;
    if (!data)
        return true;
    if (!widget || widget->skin != this || !data->looksLast_() || data->getImage(InteractiveStateReleased, 1))
        return false;
    Text::Info const* const info = data->getText(InteractiveStateReleased, 1);
    if (!info || widget->getText().empty())
        return true;
    // A font that is missing may be found later.
    return !data->getTextWrapping() && !data->getUseEllipsis() &&
           vtxRenderer::get()->getFontManager()->getFont(info->font, info->fontSize, info->blur);
}

osg::RectImpl<osg::Vec2i> Skin::getFocusRectBounds_() const {
    if (!widget)
        return osg::RectImpl<osg::Vec2i>();
    return osg::RectImpl<osg::Vec2i>(osg::Vec2i(), getWidgetNonZoomedSize_());
}

bool Skin::getFocusRectVisible_() const { return widget && widget->getFocused() && widget->getTabOrder() >= 1; }

// --- Layout ---

void Skin::redraw() { redraw_(); }

inline bool Skin::hasWays_(unsigned ways) { return (ownWays_.getFlags(*this, learnOwnWays_) & ways) == ways; }

void Skin::redraw_() {
    if (data && widget) {
        InteractiveState const state = widget->getInteractiveState();
        int const inner = widget->getInnerState();
        if (hasWays_(RedrawsInOneGo) && data->looksLast_()) {
            // Each is found when it is its turn: showing one asks the widget, which may change the others.
            showBkg_(data->findLooks_(state, inner).bkg);
            showText_(data->findLooks_(state, inner).text);
            redrawImage_(image, data->findLooks_(state, inner).image);
        } else {
            redrawBkg_(state, inner);
            redrawText_(state, inner);
            redrawImage_(state, inner);
        }
        redrawFocusRect_();
        updateTarget_();
    }
    textChanged = false;
    sizeChanged = false;
    // A picture that exists may count with another size than its description.
    MeasurePass::forgetFleeting();
}

void Skin::redrawBkg_(InteractiveState state, int inner) { showBkg_(data->getBkg(state, inner)); }

void Skin::showBkg_(Bkg::Info const* info) {
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    if (!info || size.x() < 1 || size.y() < 1 || !isVisible(*info)) {
        destroyDrawable(bkg);
        return;
    }
    if (!bkg)
        bkg = new Bkg;
    bkg->setShared(*info);
    bkg->setSize(size);
    bkg->redraw();
}

void Skin::redrawText_(InteractiveState state, int inner) { showText_(data->getText(state, inner)); }

void Skin::showText_(Text::Info const* info) {
    if (!info || !isVisible(*info)) {
        destroyDrawable(text);
        return;
    }
    if (!text) {
        text = new Text;
        text->setDirty(true);
    } else if (textChanged || sizeChanged) {
        text->setDirty(true);
    }
    text->setWrapping(data->getTextWrapping());
    text->setUseEllipsis(data->getUseEllipsis());
    text->setInsets(data->getInsets());
    text->setShared(*info);
    text->redraw(getDisplayText_(), getWidgetNonZoomedSize_(), deleteInvisibleTextLines());
}

qor::basic_string<wchar_t> const& Skin::getDisplayText_() {
    qor::basic_string<wchar_t> const& source = widget->getText();
    if (!textutil::getTextHasTabs(source)) {
        expanded_.reset();
        return source;
    }
    int const tabSpaces = getTabSpaces();
    if (!expanded_ || expanded_->source != source || expanded_->tabSpaces != tabSpaces)
        expanded_.reset(new ExpandedText{source, textutil::replaceTabsBySpaces(source), tabSpaces});
    return expanded_->text;
}

void Skin::redrawImage_(Image*& target, Image::Info const* info) {
    if (!info) {
        destroyDrawable(target);
        return;
    }
    bool const force = sizeChanged || !target;
    if (!target)
        target = new Image;
    target->set(*info);
    target->setTexture(info->file, info->rect);
    target->setInsets(data->getInsets());
    if (force)
        target->setDirty(true);
    target->redraw(getWidgetNonZoomedSize_());
}

void Skin::redrawImage_(InteractiveState state, int inner) { redrawImage_(image, data->getImage(state, inner)); }

void Skin::redrawFocusRect_() {
    if (!getFocusRectVisible_()) {
        destroyDrawable(focusRect);
        return;
    }
    if (!focusRect)
        focusRect = new FocusRect;
    focusRect->setInsets(data->getFocusRectInsets());
    focusRect->setColor(data->getFocusRectColor());
    focusRect->setBounds(getFocusRectBounds_());
    focusRect->redraw();
}

bool Skin::deleteInvisibleTextLines() const { return true; }

// --- Renderer objects ---

void Skin::doRedraw() {
    if (bkg)
        bkg->doRedraw();
    if (text)
        text->doRedraw();
    if (image)
        image->doRedraw();
    if (focusRect)
        focusRect->doRedraw();
    if (target)
        targetImage->doRedraw();
    if (effect && widget)
        effect->doRedraw(widget->getSize());
    doRedrawTarget_();
}

// --- Drawing ---

inline bool Skin::isClippedByInsets_() const { return widget && data && !data->getClipInsetsEmpty(); }

void Skin::draw() {
    if (!widget)
        return;
    vtxRenderer::OpacityGuard const opacity(widget->getOpacity());
    if (!target) {
        if (hasWays_(EntersDrawing | DrawsInOneGo))
            drawInOneGo_();
        else
            draw_();
    } else if (effect && effect->getHasShader()) {
        effect->setTexture(targetImage->getTexture());
        effect->draw();
    } else {
        targetImage->draw();
    }
}

unsigned Skin::learnOwnWays_(VirtualTable table) {
    bool const drawsInOneGo =
        table.sharesAll(skinTable, &Skin::drawBkg_, &Skin::beginClipByInsets, &Skin::drawImage_, &Skin::drawText_,
                        &Skin::drawChildren_, &Skin::endClipByInsets) &&
        table.sharesAll(skinTable, &Skin::makeBkg_, &Skin::makeBeginClipByInsets, &Skin::makeImage_, &Skin::makeText_,
                        &Skin::makeChildren_, &Skin::makeEndClipByInsets);
    bool const entersDrawing = table.sharesAll(skinTable, &Skin::draw_, &Skin::make_);
    void (Skin::*const redrawImage)(InteractiveState, int) = &Skin::redrawImage_;
    bool const redrawsInOneGo = table.sharesAll(skinTable, &Skin::redrawBkg_, &Skin::redrawText_, redrawImage);
    return (drawsInOneGo ? DrawsInOneGo : 0U) | (entersDrawing ? EntersDrawing : 0U) |
           (redrawsInOneGo ? RedrawsInOneGo : 0U);
}

void Skin::drawInOneGo_() {
    if (bkg)
        bkg->draw();
    if (isClippedByInsets_())
        vtxRenderer::get()->pushClipRect(getInsetsClip_());
    if (image)
        image->draw();
    if (text)
        text->draw();
    widget->drawChildren();
    if (isClippedByInsets_())
        vtxRenderer::get()->popClipRect();
}

void Skin::draw_() {
    if (widget && hasWays_(DrawsInOneGo)) {
        drawInOneGo_();
        return;
    }
    drawBkg_();
    beginClipByInsets();
    drawImage_();
    drawText_();
    drawChildren_();
    endClipByInsets();
}

void Skin::drawBkg_() {
    if (bkg)
        bkg->draw();
}

void Skin::drawText_() {
    if (text)
        text->draw();
}

void Skin::drawImage_() {
    if (image)
        image->draw();
}

void Skin::drawChildren_() {
    if (widget)
        widget->drawChildren();
}

void Skin::drawFocusRect() {
    if (focusRect)
        focusRect->draw();
}

// --- Recording ---

void Skin::make(GraphicCommands* commands) {
    if (!widget)
        return;
    GraphicCommandOpacityGuard const opacity(commands, widget->getOpacity());
    if (!target) {
        if (hasWays_(EntersDrawing | DrawsInOneGo))
            makeInOneGo_(commands);
        else
            make_(commands);
        return;
    }
    ScratchGraphicCommands inner;
    {
        TargetWidgetScope const scope(widget);
        make_(inner.get());
    }
    commands->drawToTarget(target, getWidgetNonZoomedSize_(), inner->getCommands());
    if (effect && effect->getHasShader()) {
        effect->setTexture(targetImage->getTexture());
        effect->make(commands);
    } else {
        targetImage->make(commands);
    }
}

void Skin::makeInOneGo_(GraphicCommands* commands) {
    if (bkg)
        bkg->make(commands);
    if (isClippedByInsets_())
        commands->pushClipRect(getInsetsClip_());
    if (image)
        image->make(commands);
    if (text)
        text->make(commands);
    widget->makeChildren(commands);
    if (isClippedByInsets_())
        commands->popClipRect();
}

void Skin::make_(GraphicCommands* commands) {
    if (widget && hasWays_(DrawsInOneGo)) {
        makeInOneGo_(commands);
        return;
    }
    makeBkg_(commands);
    makeBeginClipByInsets(commands);
    makeImage_(commands);
    makeText_(commands);
    makeChildren_(commands);
    makeEndClipByInsets(commands);
}

void Skin::makeBkg_(GraphicCommands* commands) {
    if (bkg)
        bkg->make(commands);
}

void Skin::makeText_(GraphicCommands* commands) {
    if (text)
        text->make(commands);
}

void Skin::makeImage_(GraphicCommands* commands) {
    if (image)
        image->make(commands);
}

void Skin::makeChildren_(GraphicCommands* commands) {
    if (widget)
        widget->makeChildren(commands);
}

void Skin::makeFocusRect(GraphicCommands* commands) {
    if (focusRect)
        focusRect->make(commands);
}

// --- Clip by insets ---

osg::RectImpl<osg::Vec2i> Skin::getInsetsClip_() const {
    GUI const* const gui = GUI::get();
    Insets const insets = data->getClipInsets();
    osg::Vec2i position(insets.left, insets.top);
    if (gui && gui->getTargetWidget())
        position = saturatingAdd(position, widget->getTargetPosition_());
    else
        position = saturatingAdd(widget->widgetToScreen(position), gui ? gui->getScreenPosition() : osg::Vec2i());
    osg::Vec2i const size = widget->getSize();
    double const x2 = double(position.x()) - insets.right - insets.left + size.x();
    double const y2 = double(position.y()) - insets.bottom - insets.top + size.y();
    osg::Vec2f const scale = gui ? gui->getOffscreenScaleFactor() : osg::Vec2f(1.0f, 1.0f);
    return osg::RectImpl<osg::Vec2i>(qor::truncateToInt(position.x() * double(scale.x())),
                                     qor::truncateToInt(position.y() * double(scale.y())),
                                     qor::truncateToInt(x2 * scale.x()), qor::truncateToInt(y2 * scale.y()));
}

void Skin::beginClipByInsets() {
    if (isClippedByInsets_())
        vtxRenderer::get()->pushClipRect(getInsetsClip_());
}

void Skin::endClipByInsets() {
    if (isClippedByInsets_())
        vtxRenderer::get()->popClipRect();
}

void Skin::makeBeginClipByInsets(GraphicCommands* commands) {
    if (isClippedByInsets_())
        commands->pushClipRect(getInsetsClip_());
}

void Skin::makeEndClipByInsets(GraphicCommands* commands) {
    if (isClippedByInsets_())
        commands->popClipRect();
}

}  // namespace gui::skin
