#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "tests/support/HeapScope.h"
#include "tests/support/TestHost.h"

namespace {

using gui::UpdateManager;

class Updates : public testing::Test {
protected:
    struct Target : gui::UpdateTarget {
        ~Target() override {
            if (alive)
                --*alive;
        }
        void update(double) override {
            if (action)
                action();
        }
        std::function<void()> action;
        int* alive = nullptr;
    };

    support::TestHost host;
    UpdateManager& manager = UpdateManager::get();
};

TEST_F(Updates, JoiningAndLeavingAgainAllocatesNothing) {
    Target a, b;
    auto const round = [&] {
        for (Target* target : {&a, &b, static_cast<Target*>(nullptr)})
            manager.addTarget(target);
        manager.updateTargets();
        for (Target* target : {&a, static_cast<Target*>(nullptr), &b})
            manager.removeTarget(target);
    };
    round();
    round();
    support::HeapScope const heap;
    round();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

TEST_F(Updates, ARetiredTargetLivesUntilTheOutermostTickIsOver) {
    int alive = 1;
    auto owned = std::make_unique<Target>();
    owned->alive = &alive;
    manager.addTarget(owned.get());
    Target retiring;
    manager.addTarget(&retiring);
    retiring.action = [&] {
        if (!owned)
            return;
        manager.retireTarget(std::move(owned));
        manager.updateTargets();
        EXPECT_EQ(alive, 1);
    };
    manager.updateTargets();
    EXPECT_EQ(alive, 0);
    manager.removeTarget(&retiring);
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

}  // namespace
