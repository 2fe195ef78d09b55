#pragma once

#include <cstddef>

#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Containers.h"
#include "platform/qor/SmallVector.h"

namespace gui {

/// Groups of widgets by their parent, in order of joining. `Member` has the fields `groupIndex_` and `inGroup_`.
template <class Member>
class ParentGroups {
public:
    using Handlers = qor::small_vector<WidgetHandler*, 16>;

    bool join(WidgetHandler* parent, Member* member) {
        if (member->inGroup_)
            return false;
        auto& group = groups_[parent];
        member->groupIndex_ = group.size();
        member->inGroup_ = true;
        group.push_back(member);
        return true;
    }

    void leave(WidgetHandler* parent, Member* member) {
        auto const found = groups_.find(parent);
        if (!member->inGroup_ || found == groups_.end())
            return;
        auto& group = found->second;
        group.erase(group.begin() + static_cast<std::ptrdiff_t>(member->groupIndex_));
        for (std::size_t i = member->groupIndex_; i < group.size(); ++i)
            group[i]->groupIndex_ = i;
        member->inGroup_ = false;
        if (group.empty())
            groups_.erase(found);
    }

    /// The members at this moment, by handler: what is called for one may end others.
    Handlers getMembers(WidgetHandler* parent) const {
        Handlers handlers;
        auto const found = groups_.find(parent);
        if (found != groups_.end())
            for (Member* member : found->second)
                handlers.push_back(member->getHandler());
        return handlers;
    }

private:
    qor::hash_map<WidgetHandler*, qor::vector<Member*>> groups_;
};

}  // namespace gui
