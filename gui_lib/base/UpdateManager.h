#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"

#include <functional>
#include <memory>

namespace gui {

class UpdateTarget;

/// Ticks timed objects: each joined target gets one `update` an `updateTargets` until it leaves. Targets may add and
/// remove targets, themselves included, and may run a nested tick. Lifetime: made and ended by GUI. Targets are not
/// owned.
class VORLEX_API UpdateManager {
public:
    /// Exists between GUI::create and GUI::destroy only.
    static UpdateManager& get();
    static bool exists();

    /// Joins a target (once) and returns the present time. During a tick its first `update` comes with the next one.
    double addTarget(UpdateTarget* target);
    /// Ends a target's ticks at once.
    void removeTarget(UpdateTarget* target);
    /// Removes a target and deletes it, but not before a running tick is over, so that no new target gets its address
    /// meanwhile.
    void retireTarget(std::unique_ptr<UpdateTarget> target);
    /// One tick: every target with one and the same time.
    void updateTargets();

    bool getUpdating() const { return updating; }

    /// Seconds since the manager was made, by Application::getTime.
    double getTime() const;
    /// The host's model time if a function is set, else `getTime`.
    double getModelTime() const;
    void setModelTimeFunc(std::function<double()> function);

private:
    friend class GUI;
    /// Targets in order; a slot is null after a removal, until the list is compacted.
    class TargetList {
    public:
        bool append(UpdateTarget* target);
        /// A removed target leaves an empty slot; `keepSlots` forbids to close such slots at once.
        void erase(UpdateTarget* target, bool keepSlots);
        bool contains(UpdateTarget* target) const { return find_(target) != absent_; }
        void compact();
        void clear();
        std::size_t size() const { return slots_.size(); }
        UpdateTarget* operator[](std::size_t index) const { return slots_[index]; }

    private:
        using Indices = qor::hash_map<UpdateTarget*, std::size_t>;

        static constexpr auto absent_ = static_cast<std::size_t>(-1);

        /// Compares addresses only: a target may have died.
        std::size_t find_(UpdateTarget* target) const;
        void addIndex_(std::size_t slot);
        void forget_(Indices::iterator place);

        qor::vector<UpdateTarget*> slots_;
        /// Slots in use.
        std::size_t count_ = 0;
        /// Of all targets, while they are too many to be looked through; else empty.
        Indices indices_;
        /// Entries out of use: tooltips join and leave with every move of the mouse, which must allocate nothing.
        qor::vector<Indices::node_type> spares_;
    };
    class TickScope;

    UpdateManager();
    ~UpdateManager();
    static void create_();
    static void destroy_();
    void applyPending_();

    static UpdateManager* instance_;

    TargetList targets;
    TargetList pendingAdd;
    TargetList pendingRemove;
    bool updating = false;
    double startTime = 0.0;
    std::function<double()> modelTimeFunc;
    int depth_ = 0;
    qor::vector<std::unique_ptr<UpdateTarget>> retired_;
};

}  // namespace gui
