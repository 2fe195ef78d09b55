#include <algorithm>
#include <deque>
#include <stdexcept>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "tests/models/RandomOps.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

constexpr int slots = 8;

/// What a target does, once, in its next update.
enum Act { ActAdd, ActRemove, ActReplace, ActTick, ActTime, ActThrow, actCount };
struct Plan {
    int act, slot;
};

template <class List, class T>
bool contains(List const& list, T const& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

/// Who is called in which order, with which time, in plain lists of target numbers.
struct Model {
    std::vector<int> targets, pendingAdd, pendingRemove, dead, retired;
    int depth = 0;

    void add(int target) {
        std::vector<int>& list = depth > 0 ? pendingAdd : targets;
        if (!contains(list, target))
            list.push_back(target);
    }
    void remove(int target) {
        if (depth == 0)
            std::erase(targets, target);
        else if (!contains(pendingRemove, target))
            pendingRemove.push_back(target);
    }
    void retire(int target) {
        remove(target);
        (depth > 0 ? retired : dead).push_back(target);
    }
    template <class Update>
    void tick(Update update) {
        ++depth;
        try {
            for (std::size_t i = 0; i < targets.size(); ++i)
                if (targets[i] != none && !contains(pendingRemove, targets[i]))
                    update(targets[i]);
        } catch (...) {
            finish();
            throw;
        }
        finish();
    }
    void finish() {
        --depth;
        for (int const target : std::exchange(pendingAdd, {}))
            if (!contains(targets, target))
                targets.push_back(target);
        // An outer walk goes by places, so the places stay.
        for (int const target : std::exchange(pendingRemove, {}))
            std::replace(targets.begin(), targets.end(), target, none);
        if (depth > 0)
            return;
        std::erase(targets, none);
        dead.insert(dead.end(), retired.begin(), retired.end());
        retired.clear();
    }
};

class Updates : public Trial {
public:
    Updates() {
        for (int slot = 0; slot < slots; ++slot)
            refill(slot);
        verbs = {
            {"add", 4, {slots}, [this](int slot, int, int) { addBoth(slot); }},
            {"remove", 3, {slots}, [this](int slot, int, int) { removeBoth(slot); }},
            {"replace", 1, {slots}, [this](int slot, int, int) { replaceBoth(slot); }},
            {"plan",
             8,
             {slots, actCount, slots},
             [this](int slot, int act, int other) {
                 for (auto& plans : plans_)
                     plans[numbers_[slot]].push_back({act, other});
             }},
            {"tick", 4, {}, [this](int, int, int) { tickBoth(); }},
        };
    }

    std::string compare(bool) override {
        if (heard_[0] != heard_[1])
            return "called " + testing::PrintToString(heard_[0]) + ", not " + testing::PrintToString(heard_[1]);
        for (auto& heard : heard_)
            heard.clear();
        std::vector<int> dead = dead_, wanted = model_.dead;
        std::sort(dead.begin(), dead.end());
        std::sort(wanted.begin(), wanted.end());
        if (dead != wanted)
            return "ended " + testing::PrintToString(dead) + ", not " + testing::PrintToString(wanted);
        return manager_.getUpdating() ? "still in a tick" : "";
    }

private:
    using Call = std::pair<int, double>;

    struct Target : gui::UpdateTarget {
        Target(Updates& owner, int itsNumber) : trial(owner), number(itsNumber) {}
        ~Target() override { trial.dead_.push_back(number); }
        void update(double time) override {
            trial.heard_[0].emplace_back(number, time);
            trial.act(0, number);
        }
        Updates& trial;
        int number;
    };

    /// A new target with a number of its own.
    void refill(int slot) {
        numbers_[slot] = made_++;
        targets_[slot] = std::make_unique<Target>(*this, numbers_[slot]);
        modelNumbers_[slot] = numbers_[slot];
        for (auto& plans : plans_)
            plans.emplace_back();
    }

    // --- Outside a tick: both at once ---
    void addBoth(int slot) {
        heard_[0].emplace_back(none, manager_.addTarget(targets_[slot].get()));
        model_.add(numbers_[slot]);
        heard_[1].emplace_back(none, time());
    }
    void removeBoth(int slot) {
        manager_.removeTarget(targets_[slot].get());
        model_.remove(numbers_[slot]);
    }
    void replaceBoth(int slot) {
        model_.retire(numbers_[slot]);
        manager_.retireTarget(std::move(targets_[slot]));
        refill(slot);
    }
    void tickBoth() {
        double const start = host_.app().time;
        run([this] { manager_.updateTargets(); });
        host_.app().time = start;
        run([this] { tickModel(); });
        // What a tick has replaced is replaced on both sides by now.
        for (int slot = 0; slot < slots; ++slot)
            if (!targets_[slot])
                refill(slot);
    }
    template <class Function>
    void run(Function function) {
        try {
            function();
        } catch (std::runtime_error const&) {
        }
    }
    /// The host's clock stood at 1 when GUI was made.
    double time() { return host_.app().time - 1.0; }
    void tickModel() {
        double const now = time();
        model_.tick([this, now](int target) {
            heard_[1].emplace_back(target, now);
            act(1, target);
        });
    }

    /// Inside a tick: side 0 is the toolkit, side 1 the model.
    void act(int side, int number) {
        auto& plans = plans_[side][static_cast<std::size_t>(number)];
        if (plans.empty())
            return;
        Plan const plan = plans.front();
        plans.pop_front();
        bool const real = side == 0;
        gui::UpdateTarget* const target = targets_[plan.slot].get();
        int& modelNumber = modelNumbers_[plan.slot];
        if (plan.act == ActTick)
            real ? manager_.updateTargets() : tickModel();
        else if (plan.act == ActTime)
            host_.app().time += 0.25;
        else if (plan.act == ActThrow)
            throw std::runtime_error("target");
        else if (real ? !target : modelNumber == none)
            return;
        else if (plan.act == ActAdd)
            real ? void(manager_.addTarget(target)) : model_.add(modelNumber);
        else if (plan.act == ActRemove)
            real ? manager_.removeTarget(target) : model_.remove(modelNumber);
        else if (real)
            manager_.retireTarget(std::move(targets_[plan.slot]));
        else
            model_.retire(std::exchange(modelNumber, none));
    }

    int made_ = 0;
    std::vector<int> dead_;
    std::vector<Call> heard_[2];
    std::vector<std::deque<Plan>> plans_[2];
    int numbers_[slots], modelNumbers_[slots];
    Model model_;
    std::unique_ptr<Target> targets_[slots];
    support::TestHost host_;
    gui::UpdateManager& manager_ = gui::UpdateManager::get();
};

TEST(Models, TargetsAreUpdatedAsPlainListsSay) { playRandomly("updates", makeTrial<Updates>); }

}  // namespace

}  // namespace models
