#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "gui_lib/layouts/FairShare.h"

namespace layout_test {
namespace {

using gui::FairShareItem;

struct Limits {
    int min;
    int max;
};

/// Told again in the plainest way: who is held is kept in two maps, and sums are taken anew each time.
class NaiveShare {
public:
    NaiveShare(std::vector<Limits> const& limits, int total) : limits_(limits), total_(total), sizes_(limits.size()) {}

    std::vector<int> run() {
        if (sizes_.empty())
            return {};
        int const per = std::max(0, total_ / static_cast<int>(sizes_.size()));
        for (std::size_t i = 0; i < sizes_.size(); ++i)
            offer_(i, per);
        for (int pass = 1; pass <= 4 && sum_() != total_; ++pass)
            if (correct_(sum_() > total_ ? held_[0] : held_[1], sum_() > total_) == -1)
                break;
        return sizes_;
    }

private:
    void offer_(std::size_t i, int offered) {
        int size = offered;
        if (limits_[i].min > 0 && size < limits_[i].min)
            size = limits_[i].min;
        if (limits_[i].min > 0)
            held_[0][i] = size > offered;
        if (limits_[i].max > 0 && size > limits_[i].max)
            size = limits_[i].max;
        if (limits_[i].max > 0)
            held_[1][i] = size < offered;
        sizes_[i] = size;
    }
    long long sum_() const {
        long long result = 0;
        for (int const size : sizes_)
            result += size;
        return result;
    }
    long long correct_(std::map<std::size_t, bool> const heldBefore, bool shrink) {
        long long rest = total_;
        std::vector<std::size_t> others;
        for (std::size_t i = 0; i < sizes_.size(); ++i) {
            auto const held = heldBefore.find(i);
            if (held != heldBefore.end() && held->second)
                rest -= sizes_[i];
            else
                others.push_back(i);
        }
        if (others.empty())
            return -1;
        rest = std::max(rest, 0LL);
        long long const per = rest / static_cast<long long>(others.size());
        long long extra = rest % static_cast<long long>(others.size());
        for (std::size_t const i : others) {
            bool const more = extra > 0;
            offer_(i, static_cast<int>(per + more));
            if (more && sizes_[i] == per + more)
                --extra;
        }
        return shrink && per == 0 ? -1 : sum_();
    }

    std::vector<Limits> limits_;
    int total_;
    std::vector<int> sizes_;
    /// Held by the minimum, by the maximum.
    std::map<std::size_t, bool> held_[2];
};

std::vector<int> share(std::vector<Limits> const& limits, int total) {
    std::vector<FairShareItem> items;
    for (Limits const& limit : limits)
        items.push_back({.min = limit.min, .max = limit.max});
    gui::shareFairly(items, total);
    std::vector<int> result;
    for (FairShareItem const& item : items)
        result.push_back(item.size);
    return result;
}

using Sizes = std::vector<int>;

TEST(FairShare, LimitsHoldAndWhatADivisionLeavesGoesToTheFirst) {
    EXPECT_EQ(share({{0, 0}, {0, 0}, {0, 0}}, 100), (Sizes{34, 33, 33}));
    EXPECT_EQ(share({{0, 0}, {50, 0}, {0, 0}, {0, 0}, {0, 0}}, 100), (Sizes{13, 50, 13, 12, 12}));
    EXPECT_EQ(share({{0, 10}, {0, 0}, {0, 0}}, 100), (Sizes{10, 45, 45}));
    // The one that cannot take a unit leaves it to the next.
    EXPECT_EQ(share({{0, 33}, {0, 0}, {0, 0}}, 101), (Sizes{33, 34, 34}));
    // All at their limits: the room is left over, or overrun.
    EXPECT_EQ(share({{0, 10}, {0, 20}}, 100), (Sizes{10, 20}));
    EXPECT_EQ(share({{60, 0}, {70, 0}}, 100), (Sizes{60, 70}));
    // The maximum wins over a greater minimum.
    EXPECT_EQ(share({{50, 20}, {0, 0}}, 60)[0], 20);
    EXPECT_EQ(share({}, 100), Sizes());
    EXPECT_EQ(share({{0, 0}, {0, 0}}, 0), (Sizes{0, 0}));
    EXPECT_EQ(share({{0, 0}, {2147483647, 0}, {2147483647, 0}}, 2147483647)[1], 2147483647);
}

TEST(FairShare, IsThatOfAPlainModelForRandomMinimaMaximaAndTotals) {
    std::mt19937 random(7);
    auto const draw = [&random](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    int unequal = 0;
    for (int trial = 0; trial < 200000; ++trial) {
        std::vector<Limits> limits(static_cast<std::size_t>(draw(9)));
        int const scale = 1 << (3 + draw(8));
        for (Limits& limit : limits)
            limit = {draw(3) ? 0 : draw(scale), draw(3) ? 0 : draw(scale)};
        int const total = draw(12) ? draw(4 * scale) : 2147483647 - draw(3);
        std::vector<int> const expected = NaiveShare(limits, total).run();
        ASSERT_EQ(share(limits, total), expected) << "trial " << trial;
        long long sum = 0;
        for (int const size : expected)
            sum += size;
        unequal += sum != total;
    }
    // Both ends are met: shares that come out and shares that cannot.
    EXPECT_GT(unequal, 10000);
    EXPECT_LT(unequal, 190000);
}

}  // namespace
}  // namespace layout_test
