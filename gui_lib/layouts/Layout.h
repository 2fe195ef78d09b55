#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"

#include <osg/Vec2i>

#include <cstdint>

namespace gui {

class Container;
class LayoutHandler;
class LayoutRun;
class Widget;
class WidgetHandler;

/// Places the children of one container inside its client rectangle and answers the container's size questions. Make
/// layouts on the heap and give their handler to `Container::setLayout`: the container owns the layout from then on.
/// Coordinates: GUI units of the container. The answers to size questions are kept while one resize or layout runs
/// and nothing changes: an override depends on nothing but the container, its children and settings that `changed_`
/// told of. Children have the container as their parent. Answers in which no override has a part are kept for longer.
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
    friend class Container;
    friend class LayoutRun;

    virtual void destroy_();
    /// Reads the preferred size of each child into `prefSizes`; (0, 0) for one that has died.
    virtual void updatePrefSizes_();
    /// True if the answers to size questions depend on settings alone and on sizes of children that `sizesLast_` tells
    /// to last: answers are then kept beyond the resize, until they change. The class may read what else it wants to
    /// know of the children, which is good as long as `knowsLasting_` says so. The container lives and overrides
    /// nothing of how it gives out its children.
    virtual bool measureLasting_();

    static bool sizesLast_(Container const& owner, Widget const& child);
    static bool isPlacedPlainly_(Widget const& child);
    /// The same, or it has been read anew.
    bool answersLast_();
    /// What is known of the children still holds.
    bool knowsLasting_() const;  ///< Defined in LayoutRun.h.

    /// The container if it lives and is one.
    Container* getLiveContainer_() const;
    /// A setting is another one: what was measured holds no longer, and the children are placed at once.
    void changed_();

    LayoutHandler* handler_ = nullptr;
    WidgetHandler* container = nullptr;
    qor::vector<osg::Vec2i> prefSizes;

private:
    enum SizeQuestion { AskMin, AskMax, AskPref, AskCalcMax, QuestionCount };

    /// What an operation answered, good under one stamp of `MeasurePass`, be it fleeting or lasting.
    struct Answer {
        std::uint64_t stamp = 0;
        osg::Vec2i size;
    };

    /// Asks the virtual operation unless its answer is known.
    osg::Vec2i ask_(SizeQuestion question);
    osg::Vec2i answer_(SizeQuestion question) const;
    void forgetAnswers_();
    /// False if no lasting answers were known.
    bool forgetLastingAnswers_();

    Answer answers_[QuestionCount];
    /// Under which `measureLasting_` said yes, and said no.
    std::uint64_t lastingStamp_ = 0;
    std::uint64_t fleetingStamp_ = 0;
    /// Counts the runs of `updateSize`, so that one knows whether another came in between.
    unsigned runCount_ = 0;
};

}  // namespace gui
