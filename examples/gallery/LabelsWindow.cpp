#include "examples/gallery/LabelsWindow.h"

#include "examples/gallery/Place.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"

namespace {

constexpr int margin = 16;
constexpr int contentWidth = 328;

void addTexts(gui::Window* window) {
    place(window, new gui::Static, {margin, 12, contentWidth, 24}, L"A plain label: naïve café, Ελληνικά, Кириллица");
    placeNote(window, {margin, 40, contentWidth, 40},
              L"A long text wraps at the edge of its label, and words that would not fit go to the next line.");
    auto* const shortened =
        place(window, new gui::Static, {margin, 84, 200, 24}, L"This one ends in dots as soon as the room is over.");
    shortened->getWidgetSkin()->getSkinData()->setUseEllipsis(true);
}

void addFade(gui::Window* window) {
    auto* const fading = place(window, new gui::AnimatedColorStatic, {margin, 116, 200, 32}, L"Fades to a colour");
    auto* const button = place(window, new gui::Button, {240, 116, 104, 32}, L"Flash");
    button->setTooltipText(L"Fades the text to orange and back.");
    on(button, gui::Widget::changeCallbackName, [fading = Held(fading)] {
        if (fading.get())
            fading.get()->setTextColor({1.0f, 0.55f, 0.1f, 1.0f});
    });
}

gui::TextureView* addTurned(gui::Window* window) {
    auto* const stage = place(window, new gui::Panel, {margin, 160, contentWidth, 112});
    auto* const turned = place(stage, new gui::Static, {20, 28, 130, 24}, L"A turned label");
    turned->setPivotPoint({0, 12});
    turned->setAngle(-20.0);
    gui::TextureView* const picture = placePicture(stage, {176, 16, 128, 80});
    picture->setPivotPoint({64, 40});
    picture->setAngle(8.0);
    return picture;
}

void addTargets(gui::Window* window) {
    auto* const faint = place(window, new gui::Button, {margin, 284, 104, 32}, L"Half opaque");
    faint->setOpacity(0.5f);
    auto* const large = place(window, new gui::Button, {128, 284, 104, 32}, L"Zoomed");
    large->setZoom(1.25f);
    auto* const dialog = place(window, new gui::Button, {240, 284, 104, 32}, L"Ask...");
    dialog->setTooltipText(L"Opens a window that takes all input until it is answered.");
    on(dialog, gui::Widget::changeCallbackName, [] {
        auto* const modal = new gui::ModalWindow(false);
        modal->setLockFlow(false);
        modal->setText(L"A question");
        place(modal, new gui::Static, {margin, 12, 216, 24}, L"Go on?");
        auto* const yes = place(modal, new gui::Button, {128, 48, 104, 32}, L"Yes");
        on(yes, gui::Widget::changeCallbackName, [modal = Held(modal)] {
            if (modal.get())
                modal.get()->gui::WindowBase::kill();
        });
        fitWindow(modal, {248, 96});
        modal->centerWindow();
        modal->setVisible(true);
    });
}

}  // namespace

LabelsWindow makeLabelsWindow() {
    LabelsWindow result;
    result.window = new gui::Window;
    result.window->setName(L"labels");
    result.window->setText(L"Labels");
    result.window->setResizable(true);
    addTexts(result.window);
    addFade(result.window);
    result.picture = addTurned(result.window);
    addTargets(result.window);
    fitWindow(result.window, {2 * margin + contentWidth, 332});
    return result;
}
