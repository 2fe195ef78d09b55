// Opens a window with one button on the toolkit's own skin and one from a window file, clicks a button in each, and
// checks that the clicks arrived.
#include <cstdio>
#include <functional>
#include <memory>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "testkit/Driver.h"

int main() {
    auto& application = *new host::HeadlessApplication(host::HeadlessApplication::BackEnd::Trace);
    if (!host::addToolkitAssets() || !application.start({}))
        return 1;

    auto* const button = new gui::Button;
    button->setText(L"Press");
    button->setPosition({20, 20});
    button->setSize({120, 32});
    int clicks = 0;
    button->addWidgetCallback(gui::getWidgetCallbackType("widget change"),
                              std::make_shared<std::function<void()>>([&clicks] { ++clicks; }));

    auto* const window = new gui::Window;
    window->setPosition({100, 100});
    window->setSize({300, 200});
    window->insertWidget(button, 0);
    window->setVisible(true);

    gui::WindowBase* const described = gui::GUI::get()->createWindowFromResource("gallery/row.lua");
    if (!described)
        return 1;
    described->setPosition({420, 100});
    described->setVisible(true);
    gui::Container& row = static_cast<gui::Container&>(*described->findWidgetByName(L"row"));
    int const before = row.getWidgetCount();

    testkit::Driver(application).click(testkit::byText("Button", "Press"));
    testkit::Driver(application).click(testkit::byText("Button", "Add"));
    int const added = row.getWidgetCount() - before;
    application.stop();
    gui::Application::destroy();

    std::printf("consumer: %d click, %d item added\n", clicks, added);
    return clicks == 1 && added == 1 ? 0 : 1;
}
