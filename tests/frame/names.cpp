#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/base/Keyboard.h"

namespace {

std::string nameOf(int code) { return gui::getKeyboardButtonName(static_cast<gui::KeyboardButton>(code)); }

TEST(KeyNames, TwoHundredThirtyKeysHaveANameThatLeadsBack) {
    gui::registerKeyboardButtonsNames();
    gui::registerKeyboardButtonsNames();
    std::set<std::string> names;
    for (int code = -10; code < 1000; ++code) {
        std::string const name = nameOf(code);
        if (name == "unknown")
            continue;
        names.insert(name);
        EXPECT_EQ(gui::getKeyboardButtonByName(name.c_str()), code) << name;
    }
    EXPECT_EQ(names.size(), 230u);
}

TEST(KeyNames, StandAtTheirNumbers) {
    gui::registerKeyboardButtonsNames();
    // The ends of the runs of numbers, and who stands out of line.
    std::istringstream rows(
        "8 backspace,32 space,64 @,91 [,97 a,122 z,127 delete,160 world 0,255 world 95,256 [0],266 [.],271 enter,"
        "273 up,276 left,280 page up,282 f1,296 f15,300 numlock,303 right shift,310 left meta,313 alt gr,"
        "316 print screen,321 euro");
    for (std::string row; std::getline(rows, row, ',');)
        EXPECT_EQ(nameOf(std::stoi(row)), row.substr(row.find(' ') + 1));
    for (int absent : {0, 7, 37, 65, 90, 123, 126, 128, 159, 297, 299, 322})
        EXPECT_EQ(nameOf(absent), "unknown") << absent;
    for (char const* absent : {"%", "Escape", "A", "unknown", "", "f16", "world 96"})
        EXPECT_EQ(gui::getKeyboardButtonByName(absent), 0) << absent;
}

TEST(CallbackNames, AreExactWords) {
    char const* const mouse[] = {"move", "down", "double down", "up", "released", "enter", "leave"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(gui::getMouseCallbackType(mouse[i]), i + 1);
    char const* const keyboard[] = {"down", "char", "up"};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(gui::getKeyboardCallbackType(keyboard[i]), i + 1);
    EXPECT_EQ(gui::getGridRowCallbackType("grid row selected"), 1);
    EXPECT_EQ(gui::getGridRowCallbackType("grid row hovered"), 2);
    for (char const* other : {"", "Move", "move ", "char "}) {
        EXPECT_EQ(gui::getMouseCallbackType(other), 0) << other;
        EXPECT_EQ(gui::getKeyboardCallbackType(other), 0) << other;
        EXPECT_EQ(gui::getGridRowCallbackType(other), 0) << other;
    }
}

TEST(CallbackNames, AnyWordGetsTheNextNumberAtItsFirstUse) {
    int const first = gui::getWidgetCallbackType("names test, first");
    EXPECT_EQ(gui::getWidgetCallbackType("names test, second"), first + 1);
    EXPECT_EQ(gui::getWidgetCallbackType("names test, first"), first);
    EXPECT_EQ(gui::getWidgetCallbackType("Names test, first"), first + 2);
}

}  // namespace
