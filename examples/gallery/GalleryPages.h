#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "examples/gallery/Place.h"

namespace gui {
class ToggleButton;
class Window;
}  // namespace gui

/// The gallery's pages, each a window, and the index: a window with a button a page, which is on while its page is
/// shown. F1 goes to the index, Tab along it. A page is a window made in code, or a resource file "gallery/NAME.lua"
/// below an asset root, made into a window when it is first opened.
class GalleryPages {
public:
    struct Page {
        Held<gui::WindowBase> window;
        /// Path below an asset root; empty where code makes the window.
        std::string file;
        Held<gui::ToggleButton> button;
    };

    GalleryPages();
    /// Ends the index, not the pages.
    ~GalleryPages();
    GalleryPages(GalleryPages const&) = delete;
    GalleryPages& operator=(GalleryPages const&) = delete;

    /// The page's window is the toolkit's, as any.
    void add(std::wstring_view caption, gui::WindowBase* window);
    /// Nothing happens without the file "gallery/NAME.lua".
    void addFile(std::wstring_view caption, std::string_view name);

    gui::Window* getIndex() const;
    std::vector<Page> const& getPages() const { return pages_; }
    /// Shows a page over the others and gives it the focus; a file that gives no window shows nothing.
    void open(Page& page);
    void openAll();
    /// At the start of each frame: the buttons tell which pages are shown.
    void update();

private:
    Page& add_(std::wstring_view caption);
    void toggle_(std::size_t number);
    gui::WindowBase* makeWindow_(Page& page);
    bool isCovered_(gui::WindowBase* window) const;

    Held<gui::Window> index_;
    std::vector<Page> pages_;
    int opened_ = 0;
};
