#pragma once

#include <osg/Vec2i>

#include "gui_lib/graphics/GraphicCommand.h"
#include "platform/osg/RectImpl.h"

namespace gui {

/// Pushes a clip rectangle in GUI units.
class VORLEX_API GraphicCommandPushClipRect : public SimpleGraphicCommand<GraphicCommandPushClipRect> {
public:
    GraphicCommandPushClipRect* set(osg::RectImpl<osg::Vec2i> const& newRect) {
        rect = newRect;
        return this;
    }
    void draw() override;

private:
    osg::RectImpl<osg::Vec2i> rect;
};

class VORLEX_API GraphicCommandPopClipRect : public SimpleGraphicCommand<GraphicCommandPopClipRect> {
public:
    void draw() override;
};

/// Pushes a viewport in raw pixels.
class VORLEX_API GraphicCommandPushViewport : public SimpleGraphicCommand<GraphicCommandPushViewport> {
public:
    GraphicCommandPushViewport* set(osg::RectImpl<osg::Vec2i> const& rect);
    void draw() override;

private:
    osg::RectImpl<osg::Vec2i> rect;
};

class VORLEX_API GraphicCommandPopViewport : public SimpleGraphicCommand<GraphicCommandPopViewport> {
public:
    void draw() override;
};

}  // namespace gui
