// One window with one button: a click changes the label.

#include <memory>
#include <string>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/sdl/SdlApplication.h"

int main() {
    host::addToolkitAssets();
    auto* const application = new host::SdlApplication;  // ended by Application::destroy

    host::HostOptions options;
    options.title = "Hello";
    options.size = {480, 320};
    if (!application->start(options)) {
        gui::Application::destroy();
        return 1;
    }

    auto* const window = new gui::Window;  // the toolkit ends every widget
    window->setText(L"Hello");
    window->setSize({260, 150});

    auto* const label = new gui::Static;
    label->setText(L"Press the button.");
    label->setPosition({16, 12});
    label->setSize({228, 24});
    window->insertWidget(label, -1);

    auto* const button = new gui::Button;
    button->setText(L"Press");
    button->setPosition({16, 52});
    button->setSize({100, 32});
    int const change = gui::getWidgetCallbackType(gui::Widget::changeCallbackName);
    button->addWidgetCallback(change, std::make_shared<std::function<void()>>([label, count = 0]() mutable {
                                  label->setText(L"Presses: " + std::to_wstring(++count));
                              }));
    window->insertWidget(button, -1);

    window->centerWindow();
    window->setVisible(true);

    application->run();
    gui::Application::destroy();
    return 0;
}
