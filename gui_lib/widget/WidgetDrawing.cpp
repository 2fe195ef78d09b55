// The drawing pipeline of Widget: redraw, doRedraw, draw and make.

#include "gui_lib/widget/Widget.h"

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/DebugSkin.h"
#include "gui_lib/widget/OriginScope.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/widget/WidgetWorkLists.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

namespace {

Widget* currentTarget() {
    GUI const* const gui = GUI::get();
    return gui ? gui->getTargetWidget() : nullptr;
}

bool clippingIsOn() {
    GUI const* const gui = GUI::get();
    return !gui || gui->getClippingEnabled();
}

osg::RectImpl<osg::Vec2i> scaleRect(osg::RectImpl<osg::Vec2i> const& rect, osg::Vec2i const& size,
                                    osg::Vec2f const& scale) {
    double const x = rect.x1;
    double const y = rect.y1;
    return osg::RectImpl<osg::Vec2i>(qor::truncateToInt(x * scale.x()), qor::truncateToInt(y * scale.y()),
                                     qor::truncateToInt((x + size.x()) * scale.x()),
                                     qor::truncateToInt((y + size.y()) * scale.y()));
}

/// The clip of a widget that begins at `corner` of the target or of the surface.
inline osg::RectImpl<osg::Vec2i> getClipRectAt(osg::Vec2i const& corner, osg::Vec2i const& size) {
    GUI const* const gui = GUI::get();
    // A target begins at its own corner, not at the screen's.
    bool const onScreen = gui && !gui->getTargetWidget();
    osg::Vec2i const screen = onScreen ? gui->getScreenPosition() : osg::Vec2i(0, 0);
    int const x = saturatingAdd(corner.x(), screen.x());
    int const y = saturatingAdd(corner.y(), screen.y());
    osg::RectImpl<osg::Vec2i> const rect(x, y, saturatingAdd(x, size.x()), saturatingAdd(y, size.y()));
    osg::Vec2f const scale = gui ? gui->getOffscreenScaleFactor() : osg::Vec2f(1.0f, 1.0f);
    return scale == osg::Vec2f(1.0f, 1.0f) ? rect : scaleRect(rect, size, scale);
}

std::shared_ptr<std::function<void()>> shareUnlessEmpty(std::function<void()> callback) {
    return callback ? std::make_shared<std::function<void()>>(std::move(callback)) : nullptr;
}

/// Sets a flag of a widget for a scope that the widget may not outlive.
class FlagScope {
public:
    FlagScope(Widget const* widget, bool& flag) : self_(widget), flag_(flag), outer_(flag) { flag_ = true; }
    ~FlagScope() {
        if (self_.alive())
            flag_ = outer_;
    }
    FlagScope(FlagScope const&) = delete;
    FlagScope& operator=(FlagScope const&) = delete;

private:
    AliveGuard self_;
    bool& flag_;
    bool outer_;
};

/// Runs a callback that may replace itself or end its widget.
void callHeld(std::shared_ptr<std::function<void()>> const& callback) {
    std::shared_ptr<std::function<void()>> const held = callback;
    if (held)
        (*held)();
}

}  // namespace

void Widget::setRedrawCallback(std::function<void()> callback) {
    redrawCallback = shareUnlessEmpty(std::move(callback));
}

void Widget::setDoRedrawCallback(std::function<void()> callback) {
    doRedrawCallback = shareUnlessEmpty(std::move(callback));
}

// --- Layout ---

void Widget::redraw() {
    AliveGuard const self(this);
    {
        FlagScope const scope(this, inRedraw);
        callHeld(redrawCallback);
        if (self.alive() && getDirtySize()) {
            updateSize_();
            if (self.alive())
                setDirtySize(false);
        }
        if (self.alive() && dirty) {
            if (getVisible(false))
                redraw_();
            if (self.alive())
                dirty = false;
        }
    }
    if (self.alive() && childDirtiedInRedraw && !inRedraw) {
        childDirtiedInRedraw = false;
        setDirty(DirtySelf);
    }
}

void Widget::redraw_() {
    if (skin) {
        AliveGuard const self(this);
        skin->redraw();
        if (self.dead())
            return;
    }
    needDoRedraw = true;
    WidgetWorkLists::get().enterDoRedraw(*this);
    redrawDebugSkin_();
}

void Widget::redrawDebugSkin_() {
    GUI const* const gui = GUI::get();
    if (!gui || !gui->getDebugDraw()) {
        delete debugSkin;
        debugSkin = nullptr;
        return;
    }
    if (!debugSkin) {
        debugSkin = new DebugSkin(this);
        debugSkin->load("debugSkin");
    }
    debugSkin->redraw();
}

void Widget::redrawChildren() {}

// --- Renderer objects ---

void Widget::doRedraw() {
    AliveGuard const self(this);
    callHeld(doRedrawCallback);
    if (self.dead() || !needDoRedraw)
        return;
    if (getVisible(false))
        doRedraw_();
    if (self.alive())
        needDoRedraw = false;
}

void Widget::doRedraw_() {
    AliveGuard const self(this);
    if (skin)
        skin->doRedraw();
    if (self.alive() && debugSkin)
        debugSkin->doRedraw();
}

void Widget::doRedrawChildren() {}

// --- Place in the target ---

inline osg::Vec2i Widget::addOrigin_(osg::Vec2i const& own, Widget const* target) const {
    osg::Vec2i const* const origin = OriginScope::findAround(OriginScope::Target, handler, parent, target);
    return origin ? saturatingAdd(own, *origin) : climbToTarget_(own, target);
}

osg::Vec2i Widget::climbToTarget_(osg::Vec2i const& own, Widget const* target) const {
    osg::Vec2i result = own;
    for (Widget const* up = getParentWidget_(); up && up != target; up = WidgetHandler::get(up->getParent()))
        result = saturatingAdd(result, up->getPosition());
    return result;
}

osg::Vec2i Widget::getTargetPosition_() const {
    Widget const* const target = currentTarget();
    return this == target ? osg::Vec2i(0, 0) : addOrigin_(getPosition(), target);
}

osg::RectImpl<osg::Vec2i> Widget::getClipRect_() const {
    osg::Vec2i const corner = getTargetPosition_();
    return getClipRectAt(corner, getSize());
}

// --- Drawing ---

void Widget::draw() {
    constexpr unsigned wholly = EntersDrawing | DrawsInOneGo;
    if ((getOwnWays_() & wholly) == wholly) {
        if (visible)
            drawInOneGo_();
    } else if (getVisible(false)) {
        drawModelView_();
    }
}

void Widget::drawModelView_() {
    if (getOwnWays_() & DrawsInOneGo) {
        drawInOneGo_();
        return;
    }
    OriginScope const origin(OriginScope::Target, handler, getTargetPosition_(), currentTarget());
    vtxRenderer::ModelViewMatrixGuard guard;
    osg::Vec2i const place = getPosition();
    guard.setTranslate(static_cast<float>(place.x()), static_cast<float>(place.y()), 0.0f);
    drawClipped_();
}

void Widget::drawInOneGo_() {
    Widget const* const target = currentTarget();
    osg::Vec2i const corner = this == target ? osg::Vec2i(0, 0) : addOrigin_(position, target);
    OriginScope const origin(OriginScope::Target, handler, corner, target);
    bool const clip = clippingIsOn();
    osg::RectImpl<osg::Vec2i> const clipRect = clip ? getClipRectAt(corner, size) : osg::RectImpl<osg::Vec2i>();
    vtxRenderer::PlaceGuard const guard(position, clip ? &clipRect : nullptr);
    drawSkins_();
    if (skin)
        skin->drawFocusRect();
}

void Widget::drawClipped_() {
    bool const clip = clippingIsOn();
    if (clip)
        beginClip_();
    draw_();
    drawFocusRect_();
    if (clip)
        endClip_();
}

void Widget::beginClip_() { vtxRenderer::get()->pushClipRect(getClipRect_()); }

void Widget::endClip_() { vtxRenderer::get()->popClipRect(); }

void Widget::draw_() { drawSkins_(); }

inline void Widget::drawSkins_() {
    if (skin)
        skin->draw();
    if (debugSkin)
        debugSkin->draw();
}

void Widget::drawFocusRect_() {
    if (skin)
        skin->drawFocusRect();
}

void Widget::drawChildren() {}

// --- Recording ---

void Widget::make(GraphicCommands* commands) {
    constexpr unsigned wholly = EntersDrawing | DrawsInOneGo;
    if ((getOwnWays_() & wholly) == wholly) {
        if (visible)
            makeInOneGo_(commands);
    } else if (getVisible(false)) {
        makeModelView_(commands);
    }
}

void Widget::makeInOneGo_(GraphicCommands* commands) {
    Widget const* const target = currentTarget();
    osg::Vec2i const corner = this == target ? osg::Vec2i(0, 0) : addOrigin_(position, target);
    OriginScope const origin(OriginScope::Target, handler, corner, target);
    bool const clip = clippingIsOn();
    osg::RectImpl<osg::Vec2i> const clipRect = clip ? getClipRectAt(corner, size) : osg::RectImpl<osg::Vec2i>();
    GraphicCommandPlaceGuard const guard(commands, position, clip ? &clipRect : nullptr);
    makeSkins_(commands);
    if (skin)
        skin->makeFocusRect(commands);
}

void Widget::makeModelView_(GraphicCommands* commands) {
    if (getOwnWays_() & DrawsInOneGo) {
        makeInOneGo_(commands);
        return;
    }
    OriginScope const origin(OriginScope::Target, handler, getTargetPosition_(), currentTarget());
    GraphicCommandModelViewMatrixGuard guard(commands);
    osg::Vec2i const place = getPosition();
    guard.setTranslate(static_cast<float>(place.x()), static_cast<float>(place.y()), 0.0f);
    makeClipped_(commands);
}

void Widget::makeClipped_(GraphicCommands* commands) {
    bool const clip = clippingIsOn();
    if (clip)
        makeBeginClip_(commands);
    make_(commands);
    makeFocusRect_(commands);
    if (clip)
        makeEndClip_(commands);
}

void Widget::makeBeginClip_(GraphicCommands* commands) { commands->pushClipRect(getClipRect_()); }

void Widget::makeEndClip_(GraphicCommands* commands) { commands->popClipRect(); }

void Widget::make_(GraphicCommands* commands) { makeSkins_(commands); }

inline void Widget::makeSkins_(GraphicCommands* commands) {
    if (skin)
        skin->make(commands);
    if (debugSkin)
        debugSkin->make(commands);
}

void Widget::makeFocusRect_(GraphicCommands* commands) {
    if (skin)
        skin->makeFocusRect(commands);
}

void Widget::makeChildren(GraphicCommands*) {}

// --- Parse ---

void Widget::parse() {
    if (getVisible(false))
        parse_();
}

void Widget::parse_() {}

void Widget::makeParse(GraphicCommands* commands) {
    if (getVisible(false))
        makeParse_(commands);
}

void Widget::makeParse_(GraphicCommands*) {}

}  // namespace gui
