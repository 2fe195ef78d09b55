#include <algorithm>
#include <numeric>
#include <stdexcept>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "tests/models/RandomOps.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

constexpr int slots = 40, actCount = 6;

/// Times are told in quarters of a second.
constexpr double quarter = 0.25;

/// Who is called in which order, with which time, in plain lists of target numbers.
class Model : public Side {
public:
    Model() { std::iota(std::begin(numbers), std::end(numbers), 0); }

    void add(int slot) {
        tell("added at", time);
        std::vector<int>& list = depth > 0 ? pendingAdd : targets;
        if (std::find(list.begin(), list.end(), numbers[slot]) == list.end())
            list.push_back(numbers[slot]);
    }
    void remove(int slot) {
        if (depth == 0)
            std::erase(targets, numbers[slot]);
        else
            pendingRemove.push_back(numbers[slot]);
    }
    void replace(int slot) {
        remove(slot);
        retired.push_back(std::exchange(numbers[slot], made++));
        if (depth == 0)
            bury();
    }
    void wait() { ++time; }
    void tick() {
        int const now = time;
        ++depth;
        try {
            for (std::size_t i = 0; i < targets.size(); ++i)
                if (std::find(pendingRemove.begin(), pendingRemove.end(), targets[i]) == pendingRemove.end())
                    if (targets[i] != none)
                        hear(targets[i], 0, now);
        } catch (...) {
            finish();
            throw;
        }
        finish();
    }
    void finish() {
        --depth;
        for (int const target : std::exchange(pendingAdd, {}))
            if (std::find(targets.begin(), targets.end(), target) == targets.end())
                targets.push_back(target);
        // An outer walk goes by places, so the places stay.
        for (int const target : std::exchange(pendingRemove, {}))
            std::replace(targets.begin(), targets.end(), target, none);
        if (depth > 0)
            return;
        std::erase(targets, none);
        bury();
    }
    void bury() {
        for (int const target : std::exchange(retired, {}))
            tell("ended", target);
    }
    int numberOf(int slot) const { return numbers[slot]; }
    void describe() {}

    std::vector<int> targets, pendingAdd, pendingRemove, retired;
    int numbers[slots];
    int made = slots, depth = 0, time = 0;
};

class Toolkit : public Side {
public:
    Toolkit() {
        for (auto& target : targets_)
            target = std::make_unique<Target>(*this);
    }

    void add(int slot) { tell("added at", quarters(manager_.addTarget(targets_[slot].get()))); }
    void remove(int slot) { manager_.removeTarget(targets_[slot].get()); }
    void replace(int slot) { manager_.retireTarget(std::exchange(targets_[slot], std::make_unique<Target>(*this))); }
    void wait() { host_.app().time += quarter; }
    void tick() { manager_.updateTargets(); }
    void describe() {
        if (manager_.getUpdating())
            tell("still in a tick");
    }

    int numberOf(int slot) const { return targets_[slot]->number; }

private:
    struct Target : gui::UpdateTarget {
        explicit Target(Toolkit& owner) : toolkit(owner), number(owner.made_++) {}
        ~Target() override { toolkit.tell("ended", number); }
        void update(double time) override { toolkit.hear(number, 0, quarters(time)); }
        Toolkit& toolkit;
        int number;
    };
    static int quarters(double time) { return static_cast<int>(time / quarter); }

    int made_ = 0;
    support::TestHost host_;
    gui::UpdateManager& manager_ = gui::UpdateManager::get();
    std::unique_ptr<Target> targets_[slots];
};

class Updates : public Pair<Toolkit, Model> {
public:
    Updates() {
        add("add", 12, {slots}, [](auto& side, int slot, auto...) { side.add(slot); });
        add("remove", 3, {slots}, [](auto& side, int slot, auto...) { side.remove(slot); });
        add("replace", 1, {slots}, [](auto& side, int slot, auto...) { side.replace(slot); });
        add("trap", 8, {slots, actCount, slots}, [](auto& side, int slot, int action, int other) {
            side.traps[{side.numberOf(slot), 0}] = [&side, action, other] { act(side, action, other); };
        });
        add("tick", 4, {}, [](auto& side, auto...) {
            try {
                side.tick();
            } catch (std::runtime_error const&) {
            }
        });
    }

private:
    /// What a target does, once, in an update.
    template <class SideType>
    static void act(SideType& side, int action, int slot) {
        static constexpr void (*table[actCount])(SideType&, int) = {
            [](SideType& s, int other) { s.add(other); },
            [](SideType& s, int other) { s.remove(other); },
            [](SideType& s, int other) { s.replace(other); },
            [](SideType& s, int) { s.tick(); },
            [](SideType& s, int) { s.wait(); },
            [](SideType&, int) { throw std::runtime_error("target"); },
        };
        table[action](side, slot);
    }
};

TEST(Models, TargetsAreUpdatedAsPlainListsSay) { playRandomly<Updates>(); }

}  // namespace

}  // namespace models
