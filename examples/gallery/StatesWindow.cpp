#include "examples/gallery/StatesWindow.h"

#include "examples/gallery/Place.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/buttons/SwitchButton.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/windows/Window.h"

namespace {

constexpr int margin = 16;
constexpr int labelWidth = 132;
constexpr int cellWidth = 108;
constexpr int cellHeight = 24;
constexpr int gap = 6;

/// A control that looks as it would in a state, whatever the mouse does.
template <class Control>
class Posed final : public Control {
public:
    template <class... Arguments>
    explicit Posed(gui::skin::InteractiveState pose, Arguments... arguments) : Control(arguments...), pose_(pose) {}

    // Widget:
    gui::skin::InteractiveState getInteractiveState() const override { return pose_; }

private:
    gui::skin::InteractiveState pose_;
};

class Rows {
public:
    explicit Rows(gui::Window* window) : window_(window) {}

    /// `finish` gives a new control its inner state.
    template <class Control, class Finish>
    void add(wchar_t const* name, Finish finish) {
        place(window_, new gui::Static, {margin, y_, labelWidth, cellHeight}, name);
        for (int state = 0; state < gui::skin::interactiveStateCount; ++state) {
            auto* const control = new Posed<Control>(static_cast<gui::skin::InteractiveState>(state));
            int const x = margin + labelWidth + gap + state * (cellWidth + gap);
            place(window_, control, {x, y_, cellWidth, cellHeight}, L"Caption");
            finish(*control);
            // What is posed must not change by a click.
            if (state != gui::skin::InteractiveStateDisabled)
                continue;
            control->setEnabled(false);
        }
        y_ += cellHeight + gap;
    }

    void addHeader() {
        wchar_t const* const names[] = {L"Released", L"Hover", L"Pressed", L"Disabled"};
        for (int state = 0; state < gui::skin::interactiveStateCount; ++state)
            placeHeading(window_, {margin + labelWidth + gap + state * (cellWidth + gap), y_, cellWidth, cellHeight},
                         names[state]);
        y_ += cellHeight + 4;
    }

    int getBottom() const { return y_ - gap + margin; }

private:
    gui::Window* window_;
    int y_ = 12;
};

auto keep = [](auto&) {};

template <class Control>
void addThreeStates(Rows& rows, wchar_t const* off, wchar_t const* on, wchar_t const* undefined) {
    rows.add<Control>(off, keep);
    rows.add<Control>(on, [](auto& control) { control.setState(1); });
    rows.add<Control>(undefined, [](auto& control) { control.setState(-1); });
}

/// Switches of one parent are a group; each row stands alone here.
template <class Control>
class Alone : public Control {
public:
    // Widget:
    int getInnerState() const override { return inner; }
    int inner = 1;
};

template <class Control>
void addGroupStates(Rows& rows, wchar_t const* off, wchar_t const* on, wchar_t const* undefined) {
    wchar_t const* const names[] = {off, on, undefined};
    for (int inner = 1; inner <= 3; ++inner)
        rows.add<Alone<Control>>(names[inner - 1], [inner](auto& control) { control.inner = inner; });
}

}  // namespace

gui::Window* makeStatesWindow() {
    auto* const window = new gui::Window;
    window->setName(L"states");
    window->setText(L"States");
    Rows rows(window);
    rows.addHeader();
    rows.add<gui::Button>(L"Button", keep);
    addThreeStates<gui::ToggleButton>(rows, L"Toggle off", L"Toggle on", L"Toggle undefined");
    addThreeStates<gui::CheckBox>(rows, L"Check off", L"Check on", L"Check undefined");
    addGroupStates<gui::RadioButton>(rows, L"Radio off", L"Radio on", L"Radio undefined");
    addGroupStates<gui::SwitchButton>(rows, L"Switch off", L"Switch on", L"Switch undefined");
    rows.add<Alone<gui::TabGroupItem>>(L"Tab", [](auto& tab) { tab.inner = 1; });
    rows.add<Alone<gui::TabGroupItem>>(L"Tab selected", [](auto& tab) { tab.inner = 2; });
    fitWindow(window, {margin * 2 + labelWidth + 4 * (cellWidth + gap), rows.getBottom()});
    return window;
}
