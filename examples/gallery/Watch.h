#pragma once

#include <functional>
#include <memory>

#include "gui_lib/base/Keyboard.h"
#include "host/ErrorOverlay.h"
#include "host/HostApplication.h"
#include "host/LiveReload.h"

class GalleryPages;

/// The gallery's part in live reload: edits of the skin and of the pages' files show while it runs, and an error shows
/// over everything until the file is mended. F11 changes between the dark and the light skin.
class Watch {
public:
    /// Without `watching` files are read again only by the key.
    Watch(host::HostApplication& application, GalleryPages& pages, bool watching);
    ~Watch();
    Watch(Watch const&) = delete;
    Watch& operator=(Watch const&) = delete;

    host::LiveReload& getReload() { return reload_; }
    host::ErrorOverlay& getOverlay() { return overlay_; }

private:
    void update_();
    bool onKey_(gui::KeyboardButton key, bool down);

    host::HostApplication& application_;
    GalleryPages& pages_;
    bool const watching_;
    host::LiveReload reload_;
    host::ErrorOverlay overlay_;
    std::shared_ptr<std::function<void()>> updateCallback_;
    std::shared_ptr<std::function<bool(gui::KeyboardButton, int, bool)>> keyCallback_;
};
