#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/TestHost.h"

namespace gui {
class Widget;
}

namespace support {

/// One widget class in a state worth looking at.
struct ZooAnimal {
    /// A word of letters: the class, and the state where a class comes in several.
    char const* name;
    /// A new widget with place, size and contents, without parent.
    gui::Widget* (*make)();
    /// Shown by itself; other widgets live in a window's view.
    bool window = false;
    /// `clone` gives a widget of the class.
    bool clones = true;
    /// It shows something of its own, not only its children.
    bool seen = true;
    /// The mouse reaches it.
    bool pointed = true;
    /// Widget callbacks that `ZooHost::tease` or `stir` calls, beside those that every widget has.
    std::vector<char const*> callbacks = {};
    /// Does what calls the callbacks that teasing does not reach.
    void (*stir)(gui::Widget&) = nullptr;
};

/// Every class of the toolkit that a host can make.
std::vector<ZooAnimal> const& getZoo();
ZooAnimal const* findAnimal(std::string const& name);

/// A TestHost with a default skin of the toolkit and, on request, one animal in a shown window.
class ZooHost : public TestHost {
public:
    /// `skinFile` as the asset roots know it; empty gives no skins at all.
    explicit ZooHost(std::string const& skinFile = "skins/dark.lua", Settings const& settings = {});

    /// Makes the animal and shows it; where it is no window, in the view of `window()`.
    gui::Widget* show(ZooAnimal const& animal);
    /// From now on no skin is found, whatever is made.
    void forgetSkins();
    /// Frames until nothing is marked any more.
    void settle();
    /// Moves the mouse in over the middle of the widget, presses, drags out and in, releases, double-clicks, turns the
    /// wheel, types, tabs through, resizes, and moves out; stops when the widget is gone. Calls `step` after each.
    void tease(gui::Widget& widget, std::function<void(char const*)> const& step);
};

}  // namespace support
