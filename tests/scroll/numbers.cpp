#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/scroll/ScrollBarBase.h"

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
double const nan = std::numeric_limits<double>::quiet_NaN();

/// Says which changes come, in their order.
class Numbers : public gui::ScrollBarBase {
public:
    std::string take() { return std::exchange(told_, {}); }

    void onValueChanged_(double newValue) override {
        tell_("value", newValue), ScrollBarBase::onValueChanged_(newValue);
    }
    void onRangeChanged_(double from, double to) override {
        tell_("from", from), tell_("to", to), ScrollBarBase::onRangeChanged_(from, to);
    }
    void onStepChanged_(double newStep) override { tell_("step", newStep), ScrollBarBase::onStepChanged_(newStep); }
    void onPageStepChanged_(double newStep) override {
        tell_("page", newStep), ScrollBarBase::onPageStepChanged_(newStep);
    }
    void onThumbValueChanged_(double newThumb) override {
        tell_("thumb", newThumb), ScrollBarBase::onThumbValueChanged_(newThumb);
    }
    void changeValue_(double newValue) override { tell_("user", newValue), ScrollBarBase::changeValue_(newValue); }

private:
    void tell_(char const* what, double number) {
        char text[64];
        std::snprintf(text, sizeof text, "%s %g ", what, number);
        told_ += text;
    }

    std::string told_;
};

TEST(ScrollNumbers, AValueSnapsToTheStepFromZeroAndStaysInTheRange) {
    struct Row {
        double from, to, thumb, step, asked, expected;
    };
    // Where nothing is to change, the value stays what it is before: the start of the range.
    Row const rows[] = {
        {0, 100, 30, 3, 7.6, 9},
        {0, 100, 30, 3, 69, 69},
        {0, 100, 30, 3, 71, 70},
        {0, 100, 30, 1, -5, 0},
        {0, 100, 30, 1, 12.5, 13},
        {0, 100, 30, 1, 12.49, 12},
        {0, 100, 30, 1, inf, 70},
        {0, 100, 30, 1, -inf, 0},
        {0, 100, 30, 1, nan, 0},
        {-50, 50, 20, 7, -10.5, -7},
        {-50, 50, 20, 7, -11, -14},
        {5, 100, 10, 10, 16, 20},
        {5, 100, 10, 10, 14, 10},
        {4, 100, 10, 10, 4.5, 4},  // the nearest multiple is 0
        {0, 100, 30, 40, 69, 70},  // the nearest multiple is 80
        {0, 100, 100, 1, 50, 0},
        {20, 100, 80, 1, 50, 20},
        {0, 100, 150, 1, 50, 0},  // stored as 100
        {0, 100, -5, 1, 104, 104},
        {0, 100, -5, 1, 105, 100},
        {7, 7, 30, 1, 50, 7},
        {0, 100, 30, 0, 50, 0},  // no multiple of 0 is near
        {0, 100, 30, 0, 70, 70},
        {0, 100, 30, -4, 7, 8},
        {0, 100, 30, 1e-320, 50, 70},  // so many steps that the product is infinite
        {0, inf, 30, 5, 1e9 + 3, 1e9 + 5},
        {-inf, inf, 30, 5, 12, 10},
    };
    for (Row const& row : rows) {
        Numbers numbers;
        numbers.setRange(row.from, row.to);
        numbers.setThumbValue(row.thumb);
        numbers.setStep(row.step);
        numbers.setValue(row.from > -inf ? row.from : 0);
        numbers.setValue(row.asked);
        EXPECT_EQ(numbers.getValue(), row.expected)
            << row.from << " to " << row.to << ", thumb " << row.thumb << ", step " << row.step << ": " << row.asked;
        double const value = numbers.getValue();
        numbers.take();
        numbers.setValue(value);
        EXPECT_EQ(numbers.take(), "") << "a value that was got is one that can be set";
    }
}

TEST(ScrollNumbers, EachSetterChecksFirstAndThenBringsTheOthersIn) {
    Numbers numbers;
    numbers.setValue(60);
    numbers.setValue(60.2);
    EXPECT_EQ(numbers.take(), "value 60 ");
    numbers.setRange(0, 50);
    EXPECT_EQ(numbers.take(), "from 0 to 50 value 20 ");
    numbers.setRange(0, 50);
    numbers.setRange(6, 5);
    numbers.setRange(nan, 5);
    numbers.setRange(5, nan);
    EXPECT_EQ(numbers.take(), "");
    numbers.setThumbValue(45.5);
    EXPECT_EQ(numbers.take(), "thumb 45.5 user 20 value 4.5 ") << "as the user would";
    numbers.setThumbValue(1000);
    EXPECT_EQ(numbers.take(), "thumb 50 user 4.5 value 0 ");
    numbers.setStep(1000);
    numbers.setPageStep(51);
    numbers.setPageStep(50);
    numbers.setStep(-3);
    EXPECT_EQ(numbers.take(), "step 50 page 50 step -3 ") << "at most the width, and nothing limits below";
    numbers.setStep(nan);
    numbers.setPageStep(nan);
    numbers.setThumbValue(nan);
    EXPECT_EQ(numbers.take(), "");
    numbers.setRange(5, 5);
    EXPECT_EQ(numbers.take(), "from 5 to 5 value 5 ");
    EXPECT_EQ(numbers.getThumbValue(), 50) << "a range does not narrow the rest";
    numbers.setThumbValue(50);
    EXPECT_EQ(numbers.take(), "thumb 0 user 5 ");
}

TEST(ScrollNumbers, StepsOfTheUserGoThroughTheSameDoor) {
    Numbers numbers;
    numbers.setStep(20);
    numbers.take();
    numbers.increaseValue_();
    numbers.increaseValue_();
    numbers.increaseValue_();
    numbers.increaseValue_();
    EXPECT_EQ(numbers.take(), "user 20 value 20 user 40 value 40 user 60 value 60 user 80 value 70 ");
    numbers.decreaseValue_();
    EXPECT_EQ(numbers.take(), "user 50 value 60 ") << "50 lies halfway and goes up";
}

TEST(ScrollNumbers, WhateverIsSetTheValueStaysInTheRange) {
    double const odd[] = {0, -0.0, 1, -1, 0.5, 30, 70, 100, 1e9, -1e9, 1e308, -1e308, 1e-320, inf, -inf, nan};
    std::mt19937 random(11);
    Numbers numbers;
    for (int i = 0; i < 20000; ++i) {
        double const a = odd[random() % std::size(odd)];
        double const b = random() % 2 ? odd[random() % std::size(odd)] : a + double(random() % 1000);
        switch (random() % 6) {
            case 0:
                numbers.setRange(std::clamp(a, -1e308, 1e308), std::clamp(b, -1e308, 1e308));
                break;
            case 1:
                numbers.setStep(a);
                break;
            case 2:
                numbers.setThumbValue(a);
                break;
            case 3:
                numbers.increaseValue_();
                break;
            case 4:
                numbers.decreaseValue_();
                break;
            default:
                numbers.setValue(b);
                break;
        }
        double from, to;
        numbers.getRange(from, to);
        double const value = numbers.getValue();
        double const top = to - numbers.getThumbValue();
        ASSERT_LE(from, to);
        ASSERT_GE(value, from);
        ASSERT_TRUE(!(value > std::max(from, top))) << value << " in " << from << " to " << to << " less " << to - top;
    }
}

}  // namespace
