#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <osg/Vec2i>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Paths.h"
#include "platform/qor/String.h"

namespace gui {
class WidgetHandler;
class WindowBase;
}  // namespace gui

namespace host {

/// Shows edits of the skin and of window resources while the program runs: it looks at the time stamps of the files, of
/// all that they read, and of the pictures and fonts in use, and reloads what has changed. A broken file leaves the
/// last good look, and its error can be asked for. Windows keep focus, scroll positions, place, size and visibility.
/// Order: `update` once a frame, before GUI::processMessages. Lifetime: between GUI::create and GUI::destroy; windows
/// may end at any time.
class VORLEX_API LiveReload {
public:
    /// Seconds between two looks at the files. A change counts once the file has stood still between two looks, so that
    /// nothing is read while it is being written.
    static constexpr double lookInterval = 0.25;

    LiveReload();
    ~LiveReload();
    LiveReload(LiveReload const&) = delete;
    LiveReload& operator=(LiveReload const&) = delete;

    // --- What is watched ---
    /// A skin file with all it reads; it is taken first if another is in force. False, with the cause in `getError`, if
    /// that fails: the look stays until the file is mended.
    bool watchSkin(qor::string const& skinFile);
    /// A window that was made from the resource. Its place and size of now count as those of the resource.
    void watchWindow(qor::string const& resource, gui::WindowBase* window);
    void forgetWindow(gui::WindowBase const* window);
    bool getWatched(gui::WindowBase const* window) const;

    // --- Each frame ---
    /// `now` in seconds, from any start. A skin waits while a pass or a Lua function runs, a window also while a
    /// message is delivered: the frames of a modal window that a callback has opened.
    void update(double now);

    // --- Errors ---
    /// What is wrong in the files as they are, "file:line: ..."; lines; empty if nothing is.
    qor::string const& getError() const { return error_; }
    /// Called from `update` and `watchSkin` whenever `getError` has changed.
    void setReport(std::function<void(qor::string const& error)> report) { report_ = std::move(report); }

    /// How often something was reloaded, also in vain.
    int getReloadCount() const { return reloadCount_; }

private:
    struct File {
        qor::string name;
        /// At the last reading, and at the last look.
        qor::FileStamp read;
        qor::FileStamp seen;
    };
    struct Watched {
        qor::string source;
        /// Null for the skin.
        gui::WidgetHandler* window = nullptr;
        qor::vector<File> files;
        qor::string error;
        /// Of the window, as the resource left them.
        osg::Vec2i position;
        osg::Vec2i size;
    };

    static gui::WindowBase* getWindow_(Watched const& watched);
    static void findFiles_(Watched& watched);
    static bool getChanged_(Watched& watched);
    static void noteRead_(Watched& watched);
    bool reload_(Watched& watched);
    bool reloadSkin_(Watched& watched);
    bool reloadWindow_(Watched& watched);
    void tell_();

    /// Shared with the look that is under way, during which windows may be watched and forgotten.
    qor::vector<std::shared_ptr<Watched>> watched_;
    qor::string error_;
    std::function<void(qor::string const& error)> report_;
    double lastLook_ = 0.0;
    bool looked_ = false;
    bool updating_ = false;
    int reloadCount_ = 0;
};

}  // namespace host
