#include "gui_lib/base/UpdateManager.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/UpdateTarget.h"
#include "platform/qor/Log.h"

#include <algorithm>
#include <utility>

namespace gui {

namespace {

/// So few are looked through sooner than found by a table.
constexpr std::size_t fewTargets = 16;

}  // namespace

UpdateManager* UpdateManager::instance_ = nullptr;

// --- TargetList ---

std::size_t UpdateManager::TargetList::find_(UpdateTarget* target) const {
    if (!indices_.empty()) {
        auto const found = indices_.find(target);
        return found == indices_.end() ? absent_ : found->second;
    }
    auto const found = std::find(slots_.begin(), slots_.end(), target);
    return found == slots_.end() ? absent_ : static_cast<std::size_t>(found - slots_.begin());
}

bool UpdateManager::TargetList::append(UpdateTarget* target) {
    if (contains(target))
        return false;
    slots_.push_back(target);
    ++count_;
    if (!indices_.empty())
        addIndex_(slots_.size() - 1);
    else if (slots_.size() > fewTargets)
        for (std::size_t slot = 0; slot < slots_.size(); ++slot)
            addIndex_(slot);
    return true;
}

void UpdateManager::TargetList::addIndex_(std::size_t slot) {
    UpdateTarget* const target = slots_[slot];
    if (!target)
        return;
    if (spares_.empty()) {
        indices_.emplace(target, slot);
        return;
    }
    Indices::node_type entry = std::move(spares_.back());
    spares_.pop_back();
    entry.key() = target;
    entry.mapped() = slot;
    indices_.insert(std::move(entry));
}

void UpdateManager::TargetList::erase(UpdateTarget* target, bool keepSlots) {
    std::size_t const slot = find_(target);
    if (slot == absent_)
        return;
    slots_[slot] = nullptr;
    --count_;
    if (!indices_.empty())
        forget_(indices_.find(target));
    // Closing the holes only once they are the half keeps a removal cheap among many.
    if (!keepSlots && count_ <= slots_.size() / 2)
        compact();
}

void UpdateManager::TargetList::compact() {
    if (count_ == slots_.size())
        return;
    slots_.erase(std::remove(slots_.begin(), slots_.end(), nullptr), slots_.end());
    if (slots_.size() <= fewTargets) {
        while (!indices_.empty())
            forget_(indices_.begin());
    }
    for (std::size_t slot = 0; !indices_.empty() && slot < slots_.size(); ++slot)
        indices_[slots_[slot]] = slot;
}

void UpdateManager::TargetList::clear() {
    slots_.clear();
    count_ = 0;
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
