#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/WidgetZoo.h"

namespace gui {
class WindowBase;
}

/// A host with the dark skin and the bindings, and window files written by the test. Coordinates: GUI units.
class ResourceHost : public support::ZooHost {
public:
    ResourceHost();
    ~ResourceHost();

    /// A file of this text; its name counts up, from r1.lua on.
    std::string write(std::string_view text);
    /// The path of the last one.
    std::string const& getLastFile() const { return lastFile_; }
    /// A window from a file of this text, or null.
    gui::WindowBase* make(std::string_view text);
    /// Fills the window from a file of this text.
    void fill(gui::WindowBase& window, std::string_view text);
    /// What has been reported since the last call, with "FILE" for the file's path.
    std::vector<std::string> takeErrors();
    /// The same as one text.
    std::string takeErrorText();
    /// The truth of a Lua expression, in which `w` is the window and its handle.
    bool check(gui::WindowBase& window, std::string const& expression);
    /// Runs Lua with the window's handle as `w`; false after an error, which is reported.
    bool run(gui::WindowBase& window, std::string const& statements);

    /// Widgets alive, functions kept, and units of Lua memory after a full collection.
    static int countWidgets();
    static int countKept();
    static std::size_t measureLua();

private:
    std::string folder_;
    std::string lastFile_;
    int files_ = 0;
};

/// Gives the focus to the button and clicks it, by its place.
void clickWidget(support::TestHost& host, gui::Widget& widget);
