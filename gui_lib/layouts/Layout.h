#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"

#include <osg/Vec2i>

namespace gui {

class LayoutHandler;
class WidgetHandler;

/// Places the children of one container inside its client rectangle and answers the container's size questions. Make
/// layouts on the heap and give their handler to `Container::setLayout`: the container owns the layout from then on.
/// Coordinates: GUI units of the container.
class VORLEX_API Layout {
public:
    Layout();
    Layout(Layout const&) = delete;
    Layout& operator=(Layout const&) = delete;

    /// Ends a layout; null is ignored. Its container is left without one.
    static void destroy(Layout* layout);

    /// A copy without a container; null from a class that cannot be copied.
    virtual Layout* clone() const;
    /// The class word of window resources.
    virtual char const* getType() const = 0;
    /// Called by the container.
    virtual void setContainer(WidgetHandler* newContainer);
    virtual WidgetHandler* getContainer() const;
    /// Sizes that the children need, without the container's insets; a component of 0 means no limit.
    virtual osg::Vec2i getMinSize() const;
    virtual osg::Vec2i getMaxSize() const;
    virtual osg::Vec2i getPrefSize() const;
    /// Per axis the greatest maximum of the children.
    virtual osg::Vec2i calcMaxSize() const;
    /// Places the children. Their callbacks may end anything, so an override tells after each size and position whether
    /// this layout and its container still live.
    virtual void updateSize();

    virtual ~Layout();

    LayoutHandler* handler() const { return handler_; }

protected:
    virtual void destroy_();
    /// Reads the preferred size of each child into `prefSizes`; (0, 0) for one that has died.
    virtual void updatePrefSizes_();

    LayoutHandler* handler_ = nullptr;
    WidgetHandler* container = nullptr;
    qor::vector<osg::Vec2i> prefSizes;
};

}  // namespace gui
