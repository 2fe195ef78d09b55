#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "gui_lib/controls/buttons/ButtonBase.h"
#include "gui_lib/controls/scroll/ScrollBar.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/ClassBinding.h"
#include "tests/resources/ResourceHost.h"

namespace {

/// The window files that are shipped or shown in the documentation.
std::vector<std::string> findFiles() {
    std::vector<std::string> files;
    for (char const* const folder : {"assets/gallery", "docs/examples"})
        for (auto const& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().extension() == ".lua" && entry.path().filename() != "parts.lua")
                files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

template <class Kind>
std::vector<gui::WidgetHandler*> collect() {
    std::vector<gui::WidgetHandler*> found;
    for (int i = 0; i < gui::WidgetHandler::getCount(); ++i) {
        gui::WidgetHandler* const handler = gui::WidgetHandler::getAt(i);
        if (dynamic_cast<Kind*>(gui::WidgetHandler::get(handler)))
            found.push_back(handler);
    }
    return found;
}

TEST(WindowFiles, openAndTakeWhateverIsClicked) {
    std::vector<std::string> const files = findFiles();
    ASSERT_GE(files.size(), 8u);
    for (std::string const& file : files) {
        ResourceHost host;
        gui::WindowBase* const window = gui::GUI::get()->createWindowFromResource(file.c_str());
        ASSERT_TRUE(window) << file << "\n" << host.takeErrorText();
        window->setPosition({60, 40});
        window->setVisible(true);
        host.settle();
        // What the clicks open is not clicked.
        for (gui::WidgetHandler* const handler : collect<gui::ButtonBase>()) {
            gui::Widget* const button = gui::WidgetHandler::get(handler);
            if (button && button->getVisible(true) && std::string(button->getWidgetType()) != "CloseButton")
                clickWidget(host, *button);
            host.frame();
        }
        for (gui::WidgetHandler* const handler : collect<gui::ScrollBar>())
            if (auto* const bar = dynamic_cast<gui::ScrollBar*>(gui::WidgetHandler::get(handler)))
                bar->changeValue_(bar->getValue() + 3.0);
        window->setSize(window->getSize() + osg::Vec2i(120, 80));
        host.settle();
        EXPECT_EQ(host.takeErrorText(), "") << file;
    }
}

TEST(WindowFiles, theirPageNamesEverythingThatAFileMayUse) {
    std::ifstream file("docs/resources.md");
    std::string const page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    auto const expectNamed = [&page](char const* name, char const* of) {
        bool const named = page.find("`" + std::string(name) + "`") != std::string::npos ||
                           page.find("`" + std::string(name) + "(") != std::string::npos;
        EXPECT_TRUE(named) << name << " of " << of << " is not in docs/resources.md";
    };
    for (host::lua::ClassBinding const& binding : host::lua::getClassBindings()) {
        if (binding.make)
            expectNamed(binding.getConstructor(), "the classes");
        for (std::string_view const member : host::lua::getMemberNames(binding))
            expectNamed(std::string(member).c_str(), binding.word);
    }
}

TEST(WindowFiles, theirPageShowsThemAsTheyAre) {
    std::ifstream file("docs/resources.md");
    std::string const page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    for (char const* const name : {"first", "list"}) {
        std::ifstream example("docs/examples/" + std::string(name) + ".lua");
        std::string const text((std::istreambuf_iterator<char>(example)), std::istreambuf_iterator<char>());
        EXPECT_NE(page.find("```lua\n" + text + "```"), std::string::npos) << name;
    }
}

}  // namespace
