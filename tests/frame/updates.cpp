#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "tests/support/HeapScope.h"
#include "tests/support/TestHost.h"

namespace {

using gui::UpdateManager;

class Updates : public testing::Test {
protected:
    /// Notes its name and the time, then does what the test says.
    class Target : public gui::UpdateTarget {
    public:
        Target(Updates& test, char name) : test_(test), name_(name) {}
        ~Target() override {
            if (UpdateManager::exists())
                UpdateManager::get().removeTarget(this);
        }
        void update(double time) override {
            test_.order += name_;
            lastTime = time;
            if (action)
                action();
        }

        std::function<void()> action;
        double lastTime = -1.0;

    private:
        Updates& test_;
        char name_;
    };

    std::string tick() {
        UpdateManager::get().updateTargets();
        return std::exchange(order, {});
    }

    support::TestHost host;
    UpdateManager& manager = UpdateManager::get();
    std::string order;
    Target a{*this, 'a'}, b{*this, 'b'}, c{*this, 'c'};
};

TEST_F(Updates, EachTargetIsTickedOnceInOrderOfJoiningWithOneTime) {
    host.app().time = 5.5;
    for (Target* target : {&a, &b, &a, &c, &b})
        EXPECT_EQ(manager.addTarget(target), 4.5);
    a.action = [&] { host.app().time = 7.0; };
    EXPECT_EQ(tick(), "abc");
    EXPECT_EQ(a.lastTime, 4.5);
    EXPECT_EQ(c.lastTime, 4.5);
    EXPECT_EQ(manager.addTarget(&c), 6.0);
    manager.removeTarget(&a);
    manager.addTarget(&a);
    manager.removeTarget(nullptr);
    manager.addTarget(nullptr);
    a.action = {};
    EXPECT_EQ(tick(), "bca");
}

TEST_F(Updates, ChangesDuringATickTakeEffectAsTheyShould) {
    manager.addTarget(&a);
    manager.addTarget(&b);
    a.action = [&] {
        manager.removeTarget(&a);
        manager.addTarget(&c);
    };
    EXPECT_EQ(tick(), "ab") << "the next one is not skipped, a new one waits";
    EXPECT_EQ(tick(), "bc");
    b.action = [&] { manager.removeTarget(&c); };
    EXPECT_EQ(tick(), "b") << "one removed is not called any more";
    b.action = [&] {
        manager.addTarget(&c);
        manager.removeTarget(&c);
        manager.addTarget(&c);
    };
    EXPECT_EQ(tick(), "b");
    b.action = {};
    EXPECT_EQ(tick(), "b") << "added and removed within a tick ends removed";
}

TEST_F(Updates, ATickWithinATickLeavesTheOuterOneWhole) {
    for (Target* target : {&a, &b, &c})
        manager.addTarget(target);
    Target d(*this, 'd');
    bool nested = false;
    a.action = [&] {
        if (std::exchange(nested, true))
            return;
        manager.removeTarget(&b);
        manager.addTarget(&d);
        order += '(';
        manager.updateTargets();
        order += ')';
        EXPECT_TRUE(manager.getUpdating());
        manager.addTarget(&b);
    };
    // The nested tick takes b out and d in at its end; the outer one goes on with what there is now.
    EXPECT_EQ(tick(), "a(ac)cd");
    EXPECT_FALSE(manager.getUpdating());
    EXPECT_EQ(tick(), "acdb");
}

TEST_F(Updates, ATargetThatThrowsLeavesTheManagerInOrder) {
    manager.addTarget(&a);
    manager.addTarget(&b);
    a.action = [&] {
        manager.addTarget(&c);
        manager.removeTarget(&a);
        throw std::runtime_error("host");
    };
    EXPECT_THROW(manager.updateTargets(), std::runtime_error);
    EXPECT_FALSE(manager.getUpdating());
    order.clear();
    EXPECT_EQ(tick(), "bc");
}

TEST_F(Updates, ARetiredTargetLivesUntilTheOutermostTickIsOver) {
    struct Counted : gui::UpdateTarget {
        explicit Counted(int& alive) : alive_(alive) { ++alive_; }
        ~Counted() override { --alive_; }
        void update(double) override {}
        int& alive_;
    };
    int alive = 0;
    auto owned = std::make_unique<Counted>(alive);
    manager.addTarget(owned.get());
    manager.addTarget(&a);
    a.action = [&] {
        if (!owned)
            return;
        manager.retireTarget(std::move(owned));
        manager.updateTargets();
        EXPECT_EQ(alive, 1);
    };
    tick();
    EXPECT_EQ(alive, 0);
}

TEST_F(Updates, TheModelClockIsTheHostsWhereItGaveOne) {
    host.app().time = 3.0;
    EXPECT_EQ(manager.getModelTime(), 2.0);
    manager.setModelTimeFunc([] { return 42.0; });
    EXPECT_EQ(manager.getModelTime(), 42.0);
    EXPECT_EQ(manager.getTime(), 2.0);
    manager.setModelTimeFunc({});
    EXPECT_EQ(manager.getModelTime(), 2.0);
}

TEST_F(Updates, RandomJoiningAndLeavingKeepsTheOrderOfASimpleList) {
    std::vector<std::unique_ptr<Target>> targets;
    for (char name = 'A'; name <= 'Z'; ++name)
        targets.push_back(std::make_unique<Target>(*this, name));
    std::vector<Target*> model;
    std::mt19937 random(11);
    for (int step = 0; step < 3000; ++step) {
        Target* const target = targets[random() % 26].get();
        auto const place = std::find(model.begin(), model.end(), target);
        if (random() % 2) {
            manager.addTarget(target);
            if (place == model.end())
                model.push_back(target);
        } else {
            manager.removeTarget(target);
            if (place != model.end())
                model.erase(place);
        }
        if (step % 37 != 0)
            continue;
        std::string expected;
        for (Target* each : model)
            each->update(0.0);
        expected = std::exchange(order, {});
        ASSERT_EQ(tick(), expected) << step;
    }
    order.reserve(64);
    support::HeapScope const heap;
    manager.updateTargets();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

}  // namespace
