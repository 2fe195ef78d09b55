#include "gui_lib/widget/WidgetWorkLists.h"

#include "gui_lib/widget/Widget.h"

namespace gui {

namespace {

/// Runs a function at the end of a scope, also when an exception leaves it.
template <class Function>
class AtEnd {
public:
    explicit AtEnd(Function function) : function_(function) {}
    ~AtEnd() { function_(); }
    AtEnd(AtEnd const&) = delete;
    AtEnd& operator=(AtEnd const&) = delete;

private:
    Function function_;
};

}  // namespace

WidgetWorkLists& WidgetWorkLists::get() {
    // Never destroyed: widgets held by statics may die late.
    static auto* const instance = new WidgetWorkLists;
    return *instance;
}

void WidgetWorkLists::enterDirty(Widget& widget) { enter_(widget, inRedrawAll_ ? 1 - current_ : current_); }

void WidgetWorkLists::enter_(Widget& widget, int list) {
    if (widget.dirtyIndex[list] >= 0)
        return;
    widget.dirtyIndex[list] = static_cast<int>(dirtyLists_[list].size());
    dirtyLists_[list].push_back({&widget, true});
}

void WidgetWorkLists::leave_(Widget& widget, int list) {
    int const index = widget.dirtyIndex[list];
    if (index < 0)
        return;
    widget.dirtyIndex[list] = -1;
    qor::vector<DirtyEntry>& entries = dirtyLists_[list];
    DirtyEntry const last = entries.back();
    entries.pop_back();
    if (index == static_cast<int>(entries.size()))
        return;
    entries[index] = last;
    last.widget->dirtyIndex[list] = index;
}

void WidgetWorkLists::enterDoRedraw(Widget& widget) {
    if (widget.doRedrawIndex >= 0)
        return;
    widget.doRedrawIndex = static_cast<int>(doRedrawList_.size());
    doRedrawList_.push_back(&widget);
}

void WidgetWorkLists::remove(Widget& widget) {
    leave_(widget, 1 - current_);
    if (!inRedrawAll_)
        leave_(widget, current_);
    else if (widget.dirtyIndex[current_] >= 0)
        dirtyLists_[current_][widget.dirtyIndex[current_]].alive = false;

    int const index = widget.doRedrawIndex;
    if (index < 0)
        return;
    widget.doRedrawIndex = -1;
    if (inDoRedrawAll_) {
        doRedrawList_[index] = nullptr;
        return;
    }
    Widget* const last = doRedrawList_.back();
    doRedrawList_.pop_back();
    if (last == &widget)
        return;
    doRedrawList_[index] = last;
    last->doRedrawIndex = index;
}

void WidgetWorkLists::redrawAll() {
    if (inRedrawAll_)
        return;
    inRedrawAll_ = true;
    std::size_t done = 0;
    AtEnd const finish([this, &done] { finishRedrawAll_(done); });
    // The list does not grow while it is walked: marks go to the other one.
    qor::vector<DirtyEntry> const& entries = dirtyLists_[current_];
    while (done < entries.size()) {
        DirtyEntry const entry = entries[done++];
        if (!entry.alive)
            continue;
        ++redrawCount_;
        entry.widget->redraw();
    }
}

void WidgetWorkLists::finishRedrawAll_(std::size_t done) {
    qor::vector<DirtyEntry>& entries = dirtyLists_[current_];
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (!entries[i].alive)
            continue;
        Widget& widget = *entries[i].widget;
        widget.dirtyIndex[current_] = -1;
        // Only after an exception: who was not reached keeps its mark, and so its place.
        if (i >= done)
            enter_(widget, 1 - current_);
    }
    entries.clear();
    current_ = 1 - current_;
    inRedrawAll_ = false;
}

void WidgetWorkLists::doRedrawAll() {
    if (inDoRedrawAll_)
        return;
    inDoRedrawAll_ = true;
    std::size_t done = 0;
    AtEnd const finish([this, &done] { finishDoRedrawAll_(done); });
    // To the live end: a target may redraw its children, which enter here.
    while (done < doRedrawList_.size())
        if (Widget* const widget = doRedrawList_[done++])
            widget->doRedraw();
}

void WidgetWorkLists::finishDoRedrawAll_(std::size_t done) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < doRedrawList_.size(); ++i) {
        Widget* const widget = doRedrawList_[i];
        if (!widget)
            continue;
        widget->doRedrawIndex = -1;
        // Only after an exception: who was not reached waits for the next pass.
        if (i < done)
            continue;
        widget->doRedrawIndex = static_cast<int>(kept);
        doRedrawList_[kept++] = widget;
    }
    doRedrawList_.resize(kept);
    inDoRedrawAll_ = false;
}

}  // namespace gui
