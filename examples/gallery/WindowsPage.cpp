#include "examples/gallery/WindowsPage.h"

#include <memory>
#include <string>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowBaseSkin.h"

namespace {

constexpr int margin = 16;
constexpr int contentWidth = 328;
constexpr int buttonWidth = 104;
constexpr int buttonHeight = 32;
constexpr int pictureSize = 224;

/// A popup that looks like a window. Its widgets are its own children: popups have no view.
class MessagePopup final : public gui::PopupWindow {
public:
    MessagePopup() {
        skin = new gui::skin::WindowBaseSkin(this);
        skin->load("windowSkin");
    }

    // WindowBase:
    int getWidgetCount() const override { return getWidgetCount_(); }
    gui::Widget* getWidget(int index) const override { return getWidget_(index); }
    void insertWidget(gui::Widget* widget, int index) override { insertWidget_(widget, index); }
};

/// Shows a popup under a widget.
void showUnder(gui::WindowBase* popup, gui::Widget const* widget) {
    if (!popup || !widget)
        return;
    // The shadow around the popup lies outside.
    osg::Vec2i const below = widget->widgetToScreen({-5, widget->getSize().y()});
    popup->setPosition(gui::WindowBase::calcWindowPositionInsideScreen(below, popup->getSize()));
    popup->setVisible(true);
}

MessagePopup* makePopup(wchar_t const* name, std::wstring_view text) {
    auto* const popup = new MessagePopup;
    popup->setName(name);
    popup->setSize({232, 72});
    placeNote(popup, {margin, margin, 200, 40}, text);
    return popup;
}

// --- Modal windows ---

/// A modal window with a wrapped line and room for buttons.
gui::ModalWindow* makeDialog(wchar_t const* name, wchar_t const* title, std::wstring_view text) {
    auto* const dialog = new gui::ModalWindow(false);
    dialog->setName(name);
    dialog->setText(title);
    placeNote(dialog, {margin, 12, contentWidth, 40}, text);
    fitWindow(dialog, {2 * margin + contentWidth, 116});
    dialog->centerWindow();
    return dialog;
}

gui::Button* addAnswer(gui::ModalWindow* dialog, int column, wchar_t const* text) {
    auto* const button = place(dialog, new gui::Button, {margin + column * 112, 68, buttonWidth, buttonHeight}, text);
    button->setTabOrder(column + 1);
    return button;
}

/// Returns when the dialog has been closed; it is ended then.
void run(gui::ModalWindow* dialog) {
    Held<gui::ModalWindow> const held(dialog);
    // The frames that show it and take its input run inside of this call.
    dialog->setVisible(true);
    gui::Widget::destroy(held.get());
}

void tellMore() {
    gui::ModalWindow* const dialog =
        makeDialog(L"changes", L"Changes", L"A modal window over a modal one. A popup lies over both.");
    dialog->setPosition(dialog->getPosition() + osg::Vec2i(40, 64));
    gui::Button* const hint = addAnswer(dialog, 1, L"Hint");
    gui::PopupWindow* const popup = makePopup(L"hint", L"A press anywhere else closes this popup.");
    on(hint, gui::Widget::changeCallbackName,
       [popup = Held(popup), hint = Held(hint)] { showUnder(popup.get(), hint.get()); });
    on(addAnswer(dialog, 2, L"Back"), gui::Widget::changeCallbackName, [dialog = Held(dialog)] {
        if (dialog.get())
            dialog.get()->close();
    });
    Held<gui::PopupWindow> const held(popup);
    run(dialog);
    gui::Widget::destroy(held.get());
}

void ask(Held<gui::Static> status) {
    gui::ModalWindow* const dialog =
        makeDialog(L"unsaved", L"Unsaved changes", L"The program waits for the answer, and the scene goes on behind.");
    auto const answer = std::make_shared<std::wstring>(L"Closed without an answer.");
    auto const close = [dialog = Held(dialog), answer](wchar_t const* text) {
        return [dialog, answer, text] {
            *answer = text;
            if (dialog.get())
                dialog.get()->close();
        };
    };
    on(addAnswer(dialog, 0, L"More..."), gui::Widget::changeCallbackName, tellMore);
    on(addAnswer(dialog, 1, L"Discard"), gui::Widget::changeCallbackName, close(L"Discarded."));
    on(addAnswer(dialog, 2, L"Save"), gui::Widget::changeCallbackName, close(L"Saved."));
    run(dialog);
    say(status, *answer);
}

void addModal(gui::Window* window, Held<gui::Static> status) {
    placeHeading(window, {margin, 44, contentWidth, 24}, L"A modal window takes all input");
    auto* const button = place(window, new gui::Button, {margin, 72, 160, buttonHeight}, L"Ask and wait...");
    button->setTooltipText(L"Frames run inside the callback until the window is closed.");
    button->setTabOrder(1);
    on(button, gui::Widget::changeCallbackName, [status] { ask(status); });
}

// --- Popups ---

void addPopup(gui::Window* window) {
    placeHeading(window, {margin, 116, contentWidth, 24}, L"A popup closes at a press elsewhere");
    auto* const button = place(window, new gui::Button, {margin, 144, buttonWidth, buttonHeight}, L"Popup");
    button->setTabOrder(2);
    auto* const popup = makePopup(L"popup", L"A window over all others, the modal ones included.");
    on(button, gui::Widget::changeCallbackName,
       [popup = Held(popup), button = Held(button)] { showUnder(popup.get(), button.get()); });
}

/// Lets a label write down what is typed to it.
void takeText(gui::Static* field) {
    using Function = std::function<bool(gui::KeyboardButton, int)>;
    auto const hear = [field](gui::KeyboardCallbackType type, Function function) {
        field->addKeyboardCallback(type, std::make_shared<Function>(std::move(function)));
    };
    hear(gui::KeyboardCallbackChar, [field](gui::KeyboardButton, int codePoint) {
        if (codePoint < 32 || codePoint == 127)
            return false;
        field->setText(std::wstring(field->getText()) + static_cast<wchar_t>(codePoint));
        return true;
    });
    hear(gui::KeyboardCallbackDown, [field](gui::KeyboardButton key, int) {
        if (key != gui::KeyBackspace || field->getText().empty())
            return false;
        std::wstring const text(field->getText());
        field->setText(std::wstring_view(text).substr(0, text.size() - 1));
        return true;
    });
}

void addBuddy(gui::Window* window) {
    auto* const panel = place(window, new gui::Panel, {240, 144, buttonWidth, buttonHeight});
    auto* const field = place(panel, new gui::Static, {8, 4, buttonWidth - 16, 24});
    field->setName(L"typed");
    takeText(field);
    auto* const button = place(window, new gui::Button, {128, 144, buttonWidth, buttonHeight}, L"Type...");
    button->setTooltipText(L"Opens a list that hands all keys on to the field beside this button.");
    button->setTabOrder(3);

    auto* const list = new gui::BuddyWindow;
    list->setName(L"list");
    list->getWidgetSkin()->load("windowSkin");
    list->setSize({114, 120});
    list->setBuddyWidget(field);
    wchar_t const* const words[] = {L"north", L"south", L"west"};
    for (int i = 0; i < 3; ++i) {
        auto* const word = place(list, new gui::Button, {11, 12 + i * 33, 92, 28}, words[i]);
        on(word, gui::Widget::changeCallbackName, [field = Held(field), list = Held(list), text = words[i]] {
            say(field, text);
            if (list.get())
                list.get()->setVisible(false);
        });
    }
    on(button, gui::Widget::changeCallbackName,
       [list = Held(list), panel = Held(panel)] { showUnder(list.get(), panel.get()); });
}

// --- Overlays ---

gui::OverlayWindow* makeOverlay(wchar_t const* name, osg::Vec2i const& position, int zOrder) {
    auto* const overlay = new gui::OverlayWindow;
    overlay->setName(name);
    overlay->setText(L"Order " + std::to_wstring(zOrder));
    overlay->setZOrder(zOrder);
    removeCloseButton(overlay);
    place(overlay, new gui::Static, {margin, 8, 160, 24}, L"Below all windows");
    overlay->setPosition(position);
    overlay->setSize({200, 100});
    return overlay;
}

void addOverlays(gui::Window* window) {
    placeHeading(window, {margin, 188, contentWidth, 24}, L"Overlays lie below all windows");
    Held<gui::OverlayWindow> const overlays[] = {makeOverlay(L"overlay", {398, 640}, 0),
                                                 makeOverlay(L"other overlay", {458, 716}, 1)};
    auto* const shown = place(window, new gui::ToggleButton, {margin, 216, buttonWidth, buttonHeight}, L"Overlays");
    shown->setTabOrder(4);
    on(shown, gui::Widget::changeCallbackName, [shown, first = overlays[0], second = overlays[1]] {
        bool const visible = shown->getState() > 0;
        for (Held<gui::OverlayWindow> const& overlay : {first, second})
            if (overlay.get())
                overlay.get()->setVisible(visible);
    });
    auto* const swap = place(window, new gui::Button, {128, 216, buttonWidth, buttonHeight}, L"Swap");
    swap->setTooltipText(L"Changes the order of the two while they are shown.");
    swap->setTabOrder(5);
    on(swap, gui::Widget::changeCallbackName, [first = overlays[0], second = overlays[1]] {
        for (Held<gui::OverlayWindow> const& overlay : {first, second})
            if (overlay.get()) {
                overlay.get()->setZOrder(1 - overlay.get()->getZOrder());
                overlay.get()->setText(L"Order " + std::to_wstring(overlay.get()->getZOrder()));
            }
    });
}

}  // namespace

WindowsPage::WindowsPage() : window_(new gui::Window), picture_({pictureSize, pictureSize}) {
    window_->setName(L"windows");
    window_->setText(L"Windows");
    auto* const status = place(window_, new gui::Static, {margin, 12, contentWidth, 24}, L"Nothing asked.");
    status->setName(L"windows status");
    addModal(window_, status);
    addPopup(window_);
    addBuddy(window_);
    addOverlays(window_);
    addOffscreen_();
    fitWindow(window_, {2 * margin + contentWidth, 432});
}

// --- Off the screen ---

void WindowsPage::addOffscreen_() {
    auto* const offscreen = new gui::OffscreenWindow;
    offscreen_ = offscreen;
    offscreen->setName(L"off the screen");
    offscreen->setText(L"Off the screen");
    removeCloseButton(offscreen);
    offscreen->setSize({pictureSize, pictureSize});
    placeNote(offscreen, {margin, 8, 176, 60}, L"No manager shows this window, and no input reaches it.");
    auto* const count = place(offscreen, new gui::Button, {margin, 84, 176, buttonHeight}, L"0");
    place(offscreen, new gui::ToggleButton(1), {margin, 124, 176, buttonHeight}, L"A picture");
    offscreen->setVisible(true);

    placeHeading(window_, {margin, 260, contentWidth, 24}, L"A window off the screen");
    view_ = placePicture(window_, {margin, 288, 128, 128});
    placeNote(window_, {160, 288, 184, 80}, L"It is drawn into a picture, which the cube in the scene shows too.");
    auto* const button = place(window_, new gui::Button, {160, 384, buttonWidth, buttonHeight}, L"Count");
    button->setTabOrder(6);
    on(button, gui::Widget::changeCallbackName, [count = Held(count)] {
        if (count.get())
            count.get()->setText(std::to_wstring(std::stoi(std::wstring(count.get()->getText())) + 1));
    });
}

void WindowsPage::draw() {
    if (offscreen_.get())
        picture_.render([this](osg::Vec2i const& pixels, osg::Vec2f const& scale) {
            gui::GUI::get()->drawOffscreenWindow(offscreen_.get(), pixels, scale, 1.0f, 1.0f);
        });
    showPicture(view_, picture_);
}
