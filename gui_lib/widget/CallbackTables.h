#pragma once

#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/Widget.h"
#include "platform/qor/Containers.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace gui {

/// The callbacks of one event type after another; few types have any, so a search is quicker than a hash.
template <class Callback>
class CallbackTable {
public:
    /// Appends unless it is null or already there.
    void add(int type, Callback callback) {
        if (!callback)
            return;
        qor::vector<Callback>* list = find(type);
        if (!list)
            list = &types_.emplace_back(type, qor::vector<Callback>()).second;
        if (std::find(list->begin(), list->end(), callback) == list->end())
            list->push_back(std::move(callback));
    }

    void remove(int type, Callback const& callback) {
        qor::vector<Callback>* const list = find(type);
        if (!list)
            return;
        auto const found = std::find(list->begin(), list->end(), callback);
        if (found != list->end())
            list->erase(found);
    }

    qor::vector<Callback>* find(int type) {
        for (auto& entry : types_)
            if (entry.first == type)
                return &entry.second;
        return nullptr;
    }

    bool empty() const {
        return std::all_of(types_.begin(), types_.end(), [](auto const& entry) { return entry.second.empty(); });
    }

private:
    qor::vector<std::pair<int, qor::vector<Callback>>> types_;
};

/// What a widget holds from its first callback on.
struct CallbackTables {
    CallbackTable<Widget::MouseCallback> mouseCallbacks;
    /// All under type 0.
    CallbackTable<Widget::MouseWheelCallback> mouseWheelCallbacks;
    CallbackTable<Widget::KeyboardCallback> keyboardCallbacks;
    CallbackTable<Widget::WidgetCallback> widgetCallbacks;
};

/// Calls the callbacks of a type by index on the live list: one added meanwhile is called too, one that removes itself
/// makes the walk skip the next. Ends when the widget dies or `call` returns false. The running callback is held.
template <class Callback, class Call>
void walkCallbacks(Widget const* widget, CallbackTable<Callback>& table, int type, Call&& call) {
    AliveGuard const self(widget);
    for (std::size_t i = 0; self.alive(); ++i) {
        // Looked up each time: an addition may have moved the lists.
        qor::vector<Callback> const* const list = table.find(type);
        if (!list || i >= list->size())
            return;
        Callback const callback = (*list)[i];
        if (!call(*callback))
            return;
    }
}

}  // namespace gui
