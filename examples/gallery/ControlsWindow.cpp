#include "examples/gallery/ControlsWindow.h"

#include <string>

#include "examples/gallery/Place.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/buttons/SwitchButton.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/windows/Window.h"

namespace {

constexpr int margin = 16;
constexpr int contentWidth = 328;

void addHeading(gui::Window* window, int y, std::wstring_view text) {
    placeHeading(window, {margin, y, contentWidth, 24}, text);
}

void addButtons(gui::Window* window, Held<gui::Static> status) {
    auto* const button = place(window, new gui::Button, {margin, 40, 104, 32}, L"Press me");
    button->setTooltipText(L"A click counts when the mouse is released inside.");
    button->setTabOrder(1);
    on(button, gui::Widget::changeCallbackName, [status, count = 0]() mutable {
        ++count;
        say(status, L"Pressed " + std::to_wstring(count) + (count == 1 ? L" time." : L" times."));
    });
    auto* const toggle = place(window, new gui::ToggleButton, {128, 40, 104, 32}, L"Toggle");
    toggle->setTooltipText(L"Stays down until it is clicked again.");
    toggle->setTabOrder(2);
    on(toggle, gui::Widget::changeCallbackName,
       [status, toggle] { say(status, toggle->getState() > 0 ? L"Toggle is on." : L"Toggle is off."); });
    auto* const disabled = place(window, new gui::Button, {240, 40, 104, 32}, L"Disabled");
    disabled->setEnabled(false);
}

void addChecks(gui::Window* window, Held<gui::Static> status) {
    auto* const check = place(window, new gui::CheckBox(1), {margin, 120, 156, 24}, L"Shadows");
    check->setTooltipText(L"A check box is on, off or undefined.");
    check->setTabOrder(3);
    on(check, gui::Widget::changeCallbackName,
       [status, check] { say(status, check->getState() > 0 ? L"Shadows are on." : L"Shadows are off."); });
    auto* const mixed = place(window, new gui::CheckBox(-1), {margin, 148, 156, 24}, L"Some layers");
    mixed->setTabOrder(4);
    auto* const disabled = place(window, new gui::CheckBox(1), {margin, 176, 156, 24}, L"Locked");
    disabled->setEnabled(false);

    auto* const group = place(window, new gui::Panel, {188, 112, 156, 96});
    wchar_t const* const names[] = {L"Low", L"Medium", L"High"};
    for (int i = 0; i < 3; ++i) {
        auto* const radio = place(group, new gui::RadioButton, {8, 8 + i * 28, 140, 24}, names[i]);
        radio->setTabOrder(5 + i);
        radio->setState(i == 1);
        on(radio, gui::Widget::changeCallbackName,
           [status, radio] { say(status, L"Quality: " + std::wstring(radio->getText()) + L"."); });
    }
}

void addSwitches(gui::Window* window, Held<gui::Static> status) {
    auto* const group = place(window, new gui::Panel, {margin, 248, contentWidth, 48});
    wchar_t const* const names[] = {L"Move", L"Turn", L"Scale"};
    for (int i = 0; i < 3; ++i) {
        auto* const button = place(group, new gui::SwitchButton, {8 + i * 106, 8, 100, 32}, names[i]);
        button->setTabOrder(8 + i);
        button->setState(i == 0);
        on(button, gui::Widget::changeCallbackName,
           [status, button] { say(status, L"Tool: " + std::wstring(button->getText()) + L"."); });
    }
}

void addTabs(gui::Window* window) {
    auto* const tabs = place(window, new gui::Panel, {margin, 336, contentWidth, 96});
    wchar_t const* const names[] = {L"Scene", L"Camera", L"About"};
    wchar_t const* const texts[] = {L"Six columns, a cube and a screen\nthat shows a surface of its own.",
                                    L"The camera stands still;\nthe screen turns.",
                                    L"Windows, widgets and skins\nover a live scene."};
    for (int i = 0; i < 3; ++i) {
        auto* const page = placeNote(tabs, {16, 48, contentWidth - 32, 40}, texts[i]);
        page->setVisible(i == 0);
        auto* const item = place(tabs, new gui::TabGroupItem(i == 0), {8 + i * 106, 8, 100, 32}, names[i]);
        auto const show = [page = Held<gui::Widget>(page)](bool visible) {
            if (page.get())
                page.get()->setVisible(visible);
        };
        on(item, gui::TabGroupItem::showCallbackName, [show] { show(true); });
        on(item, gui::TabGroupItem::hideCallbackName, [show] { show(false); });
    }
}

}  // namespace

gui::Window* makeControlsWindow() {
    auto* const window = new gui::Window;
    window->setName(L"controls");
    window->setText(L"Controls");

    auto* const status = place(window, new gui::Static, {margin, 12, contentWidth, 24}, L"Nothing pressed.");
    status->setName(L"status");
    addButtons(window, status);
    addHeading(window, 84, L"Check boxes and a radio group");
    addChecks(window, status);
    addHeading(window, 220, L"A group of switches");
    addSwitches(window, status);
    addHeading(window, 308, L"Tabs");
    addTabs(window);
    fitWindow(window, {2 * margin + contentWidth, 448});
    return window;
}
