// Any bytes as the steps of a monkey, on one small window and the zoo's animals that the steps make.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/windows/Window.h"
#include "tests/support/Monkey.h"

namespace {

/// More say nothing new, but take their time.
constexpr std::size_t mostSteps = 80;

std::shared_ptr<void> makeScene(host::HostApplication&) {
    auto* const window = new gui::Window;
    window->setSize({300, 200});
    window->setResizable(true);
    for (int i = 0; i < 2; ++i) {
        auto* const button = new gui::Button;
        button->setTooltipText(L"A hint");
        button->setTabOrder(i + 1);
        gui::Widget* const widgets[] = {button, new gui::TabGroupItem(i == 0)};
        for (int row = 0; row < 2; ++row) {
            widgets[row]->setPosition({10 + i * 110, 10 + row * 50});
            widgets[row]->setSize({100, 40});
            window->insertWidget(widgets[row], -1);
        }
    }
    window->setVisible(true);
    return nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    support::Monkey::Settings settings;
    settings.makeScene = makeScene;
    settings.skin = "tests/fuzz/events.lua";
    settings.size = {640, 480};
    settings.fewestWidgets = 0;
    support::Monkey monkey(settings);
    std::vector<uint8_t> bytes(data, data + std::min(size, mostSteps * support::MonkeyStep::size));
    std::string const fault = monkey.play(bytes);
    if (fault.empty())
        return 0;
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}
