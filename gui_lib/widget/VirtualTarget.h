#pragma once

#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/widget/Widget.h"

namespace gui {

/// Whether a virtual member function, called on two objects, reaches the same function: neither overrides it, or both
/// inherit the override. Where nothing is known of their classes, the answer is false.
template <class Result, class... Arguments>
bool callSameFunction(Result (Widget::*member)(Arguments...) const, Widget const& one, Widget const& other) {
    return VirtualTable::of(one).sharesAll(VirtualTable::of(other), member);
}

}  // namespace gui
