#pragma once

#include <osg/Vec2i>

namespace gui {

class Widget;
class WidgetHandler;

/// Remembers where a widget's coordinates begin while its children are walked, so that each child need not climb the
/// tree again. Scopes nest; the innermost counts, and only for children that name its widget as their parent.
class OriginScope {
public:
    enum Kind { Screen, Target };

    /// `origin` is the place of `widget`'s left top corner; `target` the widget whose target is being drawn, or null.
    OriginScope(Kind kind, WidgetHandler const* widget, osg::Vec2i const& origin, Widget const* target = nullptr)
        : kind_(kind), widget_(widget), target_(target), origin_(origin), outer_(current_[kind]) {
        current_[kind] = this;
    }
    ~OriginScope() { current_[kind_] = outer_; }
    OriginScope(OriginScope const&) = delete;
    OriginScope& operator=(OriginScope const&) = delete;

    /// The origin of `parent` if the innermost scope holds it, else null.
    static osg::Vec2i const* find(Kind kind, WidgetHandler const* parent, Widget const* target = nullptr) {
        return find_(current_[kind], parent, target);
    }
    /// The same for `child`, whose own scope may be the innermost one already.
    static osg::Vec2i const* findAround(Kind kind, WidgetHandler const* child, WidgetHandler const* parent,
                                        Widget const* target) {
        OriginScope const* const scope = current_[kind];
        return find_(scope && scope->widget_ == child ? scope->outer_ : scope, parent, target);
    }

private:
    static osg::Vec2i const* find_(OriginScope const* scope, WidgetHandler const* parent, Widget const* target) {
        return scope && parent && scope->widget_ == parent && scope->target_ == target ? &scope->origin_ : nullptr;
    }

    static inline OriginScope const* current_[2] = {nullptr, nullptr};

    Kind kind_;
    WidgetHandler const* widget_;
    Widget const* target_;
    osg::Vec2i origin_;
    OriginScope const* outer_;
};

}  // namespace gui
