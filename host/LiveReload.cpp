#include "host/LiveReload.h"

#include <algorithm>
#include <utility>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/KeptWindow.h"
#include "host/lua/WindowResources.h"
#include "platform/qor/Lua.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"

namespace host {

LiveReload::LiveReload() = default;
LiveReload::~LiveReload() = default;

// --- What is watched ---

bool LiveReload::watchSkin(qor::string const& skinFile) {
    gui::GUI* const gui = gui::GUI::get();
    if (!gui)
        return false;
    auto const skin = std::make_shared<Watched>();
    skin->source = skinFile;
    bool const taken = skinFile == gui->getSkinFile() || gui->reloadSkin(skinFile, &skin->error);
    std::erase_if(watched_, [](auto const& watched) { return !watched->window; });
    findFiles_(*skin);
    watched_.insert(watched_.begin(), skin);
    tell_();
    return taken;
}

void LiveReload::watchWindow(qor::string const& resource, gui::WindowBase* window) {
    if (!window || !gui::GUI::get())
        return;
    forgetWindow(window);
    auto const watched = std::make_shared<Watched>();
    watched->source = resource;
    watched->window = window->getHandler();
    watched->position = window->getPosition();
    watched->size = window->getSize();
    findFiles_(*watched);
    watched_.push_back(watched);
}

void LiveReload::forgetWindow(gui::WindowBase const* window) {
    std::erase_if(watched_,
                  [window](auto const& watched) { return watched->window && getWindow_(*watched) == window; });
}

bool LiveReload::getWatched(gui::WindowBase const* window) const {
    return std::any_of(watched_.begin(), watched_.end(),
                       [window](auto const& watched) { return watched->window && getWindow_(*watched) == window; });
}

gui::WindowBase* LiveReload::getWindow_(Watched const& watched) {
    return dynamic_cast<gui::WindowBase*>(gui::WidgetHandler::get(watched.window));
}

// --- Files ---

/// Brings the list up to date; files that are new in it count as read now.
void LiveReload::findFiles_(Watched& watched) {
    qor::vector<qor::string> names = qor::getLuaFiles(gui::GUI::get()->getLuaState(), watched.source);
    if (!watched.window) {
        vtxRenderer& renderer = *vtxRenderer::get();
        for (auto const& more : {renderer.getTextureManager()->getFiles(), renderer.getFontManager()->getFiles()})
            names.insert(names.end(), more.begin(), more.end());
    }
    qor::vector<File> files;
    files.reserve(names.size());
    for (qor::string& name : names) {
        auto const known = std::find_if(watched.files.begin(), watched.files.end(),
                                        [&name](File const& file) { return file.name == name; });
        if (known != watched.files.end()) {
            files.push_back(std::move(*known));
            continue;
        }
        qor::FileStamp const stamp = qor::getFileStamp(name);
        files.push_back({std::move(name), stamp, stamp});
    }
    watched.files = std::move(files);
}

/// Whether a file differs from what was read, and none is being written.
bool LiveReload::getChanged_(Watched& watched) {
    bool changed = false;
    bool still = true;
    for (File& file : watched.files) {
        qor::FileStamp const stamp = qor::getFileStamp(file.name);
        still = still && stamp == file.seen;
        changed = changed || stamp != file.read;
        file.seen = stamp;
    }
    return changed && still;
}

void LiveReload::noteRead_(Watched& watched) {
    // As they were before reading: what has changed since is found at the next look.
    for (File& file : watched.files)
        file.read = file.seen;
    findFiles_(watched);
}

// --- Each frame ---

void LiveReload::update(double now) {
    if (!gui::GUI::get() || updating_ || (looked_ && now >= lastLook_ && now - lastLook_ < lookInterval))
        return;
    looked_ = true;
    lastLook_ = now;
    updating_ = true;
    std::erase_if(watched_, [](auto const& watched) { return watched->window && !getWindow_(*watched); });
    for (std::shared_ptr<Watched> const& watched : qor::vector<std::shared_ptr<Watched>>(watched_)) {
        findFiles_(*watched);
        if (getChanged_(*watched) && reload_(*watched))
            noteRead_(*watched);
    }
    updating_ = false;
    tell_();
}

/// False if it must wait.
bool LiveReload::reload_(Watched& watched) { return watched.window ? reloadWindow_(watched) : reloadSkin_(watched); }

bool LiveReload::reloadSkin_(Watched& watched) {
    gui::GUI* const gui = gui::GUI::get();
    if (!gui->getSkinReloadable())
        return false;
    ++reloadCount_;
    gui->reloadSkin(watched.source, &watched.error);
    return true;
}

bool LiveReload::reloadWindow_(Watched& watched) {
    gui::GUI* const gui = gui::GUI::get();
    gui::WindowBase* window = getWindow_(watched);
    if (!window)
        return true;
    if (gui->getBusy() || !gui->getSkinReloadable())
        return false;
    ++reloadCount_;
    KeptWindow const kept(*window, watched.position, watched.size);
    // Those of before are in the log.
    takeResourceErrors();
    gui->loadWindowFromResource(watched.source.c_str(), window);
    watched.error.clear();
    for (qor::string const& error : takeResourceErrors())
        watched.error += (watched.error.empty() ? "" : "\n") + error;
    window = getWindow_(watched);
    if (!window)
        return true;
    watched.position = window->getPosition();
    watched.size = window->getSize();
    kept.restore(watched.window);
    return true;
}

void LiveReload::tell_() {
    qor::string error;
    for (auto const& watched : watched_)
        if (!watched->error.empty())
            error += watched->error + "\n";
    while (!error.empty() && error.back() == '\n')
        error.pop_back();
    if (error == error_)
        return;
    error_ = std::move(error);
    if (report_)
        report_(error_);
}

}  // namespace host
