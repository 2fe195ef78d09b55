#include "examples/gallery/Watch.h"

#include "examples/gallery/GalleryPages.h"
#include "gui_lib/frame/GUI.h"

Watch::Watch(host::HostApplication& application, GalleryPages& pages, bool watching)
    : application_(application), pages_(pages), watching_(watching) {
    reload_.setReport([this](qor::string const& error) { overlay_.show(error); });
    reload_.watchSkin(gui::GUI::get()->getSkinFile());
    application_.setDrawOver([this] { overlay_.draw(); });
    updateCallback_ = std::make_shared<std::function<void()>>([this] { update_(); });
    application_.addUpdateCallback(updateCallback_);
    keyCallback_ = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [this](gui::KeyboardButton key, int, bool down) { return onKey_(key, down); });
    gui::GUI::get()->addKeyboardCallback(keyCallback_);
}

Watch::~Watch() {
    application_.setDrawOver({});
    application_.removeUpdateCallback(updateCallback_);
    if (gui::GUI* const gui = gui::GUI::get())
        gui->removeKeyboardCallback(keyCallback_);
}

void Watch::update_() {
    if (!watching_)
        return;
    for (GalleryPages::Page const& page : pages_.getPages())
        if (gui::WindowBase* const window = page.file.empty() ? nullptr : page.window.get())
            if (!reload_.getWatched(window))
                reload_.watchWindow(page.file.c_str(), window);
    reload_.update(application_.getTime());
}

bool Watch::onKey_(gui::KeyboardButton key, bool down) {
    constexpr auto keyF11 = static_cast<gui::KeyboardButton>(292);
    if (key != keyF11 || !down)
        return false;
    bool const dark = gui::GUI::get()->getSkinFile().ends_with("dark.lua");
    reload_.watchSkin(dark ? "skins/light.lua" : "skins/dark.lua");
    return true;
}
