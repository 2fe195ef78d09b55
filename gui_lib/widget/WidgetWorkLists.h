#pragma once

#include "platform/qor/Containers.h"

#include <cstddef>

namespace gui {

class Widget;

/// The lists of widgets that wait for `redraw` and for `doRedraw`. Each widget keeps its places, so that entering and
/// leaving cost the same however long the lists are. Order: entries keep the order of marking, but a widget that leaves
/// is replaced by the last entry.
class WidgetWorkLists {
public:
    struct DirtyEntry {
        Widget* widget;
        bool alive;
    };

    static WidgetWorkLists& get();

    /// Into the active list, unless there: `dirtyList`, or `dirtyListNext` while `redrawAll` runs.
    void enterDirty(Widget& widget);
    void enterDoRedraw(Widget& widget);
    /// Takes a dying widget out of everything.
    void remove(Widget& widget);

    void redrawAll();
    void doRedrawAll();
    unsigned long getRedrawCount() const { return redrawCount_; }

    qor::vector<DirtyEntry> const& getDirtyList() const { return dirtyLists_[current_]; }
    qor::vector<DirtyEntry> const& getDirtyListNext() const { return dirtyLists_[1 - current_]; }
    qor::vector<Widget*> const& getDoRedrawList() const { return doRedrawList_; }

private:
    WidgetWorkLists() = default;

    void enter_(Widget& widget, int list);
    void leave_(Widget& widget, int list);
    void finishRedrawAll_(std::size_t done);
    void finishDoRedrawAll_(std::size_t done);

    /// The two dirty lists change places after each pass; `current_` is the one that the pass walks.
    qor::vector<DirtyEntry> dirtyLists_[2];
    int current_ = 0;
    qor::vector<Widget*> doRedrawList_;
    unsigned long redrawCount_ = 0;
    bool inRedrawAll_ = false;
    bool inDoRedrawAll_ = false;
};

}  // namespace gui
