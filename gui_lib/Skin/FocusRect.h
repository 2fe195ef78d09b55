#pragma once

#include <memory>

#include <osg/Vec4f>

#include "gui_lib/base/Insets.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxGeometry.h"

namespace gui {

class GraphicCommands;

/// A frame one unit wide that marks the widget with the keyboard focus.
/// Coordinates: GUI units of the widget; the frame is the bounds less the insets. Lines run through the middle of a
/// unit. Order: setters, `redraw`, `doRedraw`, then `draw` or `make`.
class VORLEX_API FocusRect {
public:
    FocusRect();
    ~FocusRect();
    FocusRect(FocusRect const&) = delete;
    FocusRect& operator=(FocusRect const&) = delete;

    void setBounds(osg::RectImpl<osg::Vec2i> const& newBounds);
    void setColor(osg::Vec4f const& newColor);
    void setInsets(Insets const& newInsets);

    void redraw();
    void doRedraw();
    void draw() const;
    void make(GraphicCommands* commands) const;

private:
    bool buildVertices_();

    std::unique_ptr<vtxGeometry> geometry;
    bool dirty = false;
    osg::RectImpl<osg::Vec2i> bounds;
    /// Primitives: half the number of vertices.
    int vertexCount = 0;
    Insets insets;
    osg::Vec4f color;
    qor::vector<vtxVertex> vertices;
    qor::vector<int> indices;
};

}  // namespace gui
