#include "gui_lib/base/UpdateManager.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/UpdateTarget.h"
#include "platform/qor/Log.h"

#include <utility>

namespace gui {

UpdateManager* UpdateManager::instance_ = nullptr;

// --- TargetList ---

bool UpdateManager::TargetList::append(UpdateTarget* target) {
    if (contains(target))
        return false;
    if (spares_.empty()) {
        indices_.emplace(target, slots_.size());
    } else {
        Indices::node_type entry = std::move(spares_.back());
        spares_.pop_back();
        entry.key() = target;
        entry.mapped() = slots_.size();
        indices_.insert(std::move(entry));
    }
    slots_.push_back(target);
    return true;
}

void UpdateManager::TargetList::erase(UpdateTarget* target, bool keepSlots) {
    auto found = indices_.find(target);
    if (found == indices_.end())
        return;
    slots_[found->second] = nullptr;
    forget_(found);
    // Closing the holes only once they are the half keeps a removal cheap among many.
    if (!keepSlots && indices_.size() <= slots_.size() / 2)
        compact();
}

void UpdateManager::TargetList::compact() {
    if (indices_.size() == slots_.size())
        return;
    std::size_t kept = 0;
    for (UpdateTarget* target : slots_) {
        if (!target)
            continue;
        indices_[target] = kept;
        slots_[kept++] = target;
    }
    slots_.resize(kept);
}

void UpdateManager::TargetList::clear() {
    slots_.clear();
    while (!indices_.empty())
        forget_(indices_.begin());
}

void UpdateManager::TargetList::forget_(Indices::iterator place) { spares_.push_back(indices_.extract(place)); }

// --- UpdateManager ---

UpdateManager::UpdateManager() : startTime(Application::get()->getTime()) {}

UpdateManager::~UpdateManager() = default;

UpdateManager& UpdateManager::get() { return *instance_; }

bool UpdateManager::exists() { return instance_ != nullptr; }

void UpdateManager::create_() {
    if (!instance_)
        instance_ = new UpdateManager;
}

void UpdateManager::destroy_() { delete std::exchange(instance_, nullptr); }

double UpdateManager::addTarget(UpdateTarget* target) {
    if (target) {
        if (updating)
            pendingAdd.append(target);
        else
            targets.append(target);
    }
    return getTime();
}

void UpdateManager::removeTarget(UpdateTarget* target) {
    if (!target)
        return;
    if (updating)
        pendingRemove.append(target);
    else
        targets.erase(target, depth_ > 0);
}

/// Ends a tick, also when a target threw: what was added and removed meanwhile takes effect. While an outer tick walks,
/// removed targets leave empty slots, which the outermost tick closes.
class UpdateManager::TickScope {
public:
    explicit TickScope(UpdateManager& manager) : manager_(manager) {
        manager_.updating = true;
        ++manager_.depth_;
    }
    ~TickScope() {
        --manager_.depth_;
        manager_.updating = manager_.depth_ > 0;
        manager_.applyPending_();
    }
    TickScope(TickScope const&) = delete;
    TickScope& operator=(TickScope const&) = delete;

private:
    UpdateManager& manager_;
};

void UpdateManager::retireTarget(std::unique_ptr<UpdateTarget> target) {
    removeTarget(target.get());
    if (updating && target)
        retired_.push_back(std::move(target));
}

void UpdateManager::updateTargets() {
    TickScope scope(*this);
    double const now = getTime();
    for (std::size_t i = 0; i < targets.size(); ++i) {
        UpdateTarget* const target = targets[i];
        if (target && !pendingRemove.contains(target))
            target->update(now);
    }
}

void UpdateManager::applyPending_() {
    for (std::size_t i = 0; i < pendingAdd.size(); ++i)
        targets.append(pendingAdd[i]);
    pendingAdd.clear();
    for (std::size_t i = 0; i < pendingRemove.size(); ++i)
        targets.erase(pendingRemove[i], true);
    pendingRemove.clear();
    if (depth_ > 0)
        return;
    targets.compact();
    retired_.clear();
}

double UpdateManager::getTime() const { return Application::get()->getTime() - startTime; }

double UpdateManager::getModelTime() const { return modelTimeFunc ? modelTimeFunc() : getTime(); }

void UpdateManager::setModelTimeFunc(std::function<double()> function) { modelTimeFunc = std::move(function); }

}  // namespace gui
