#include "examples/gallery/GalleryPages.h"

#include <algorithm>

#include "gui_lib/base/HotKey.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Paths.h"

namespace {

constexpr int margin = 16;
constexpr int contentWidth = 328;
constexpr int columns = 3;
constexpr Box firstButton{margin, 12, 104, 28};
constexpr int across = 112;
constexpr int down = 34;

/// Pages without a place of their own open here, each a step from the one before.
osg::Vec2i const firstPlace(424, 72);
constexpr int step = 28;
constexpr int steps = 6;

bool meet(gui::WindowBase const& a, gui::WindowBase const& b) {
    osg::Vec2i const from = a.getPosition();
    osg::Vec2i const to = from + a.getSize();
    osg::Vec2i const otherFrom = b.getPosition();
    osg::Vec2i const otherTo = otherFrom + b.getSize();
    return from.x() < otherTo.x() && otherFrom.x() < to.x() && from.y() < otherTo.y() && otherFrom.y() < to.y();
}

}  // namespace

GalleryPages::GalleryPages() : index_(new gui::Window) {
    gui::Window* const window = index_.get();
    window->setName(L"pages");
    window->setText(L"Pages");
    // There would be no way back to it.
    removeCloseButton(window);
    fitWindow(window, {2 * margin + contentWidth, 12 + margin});
    window->addHotKeyCallback({gui::KeyF1}, std::make_shared<std::function<void()>>([index = index_] {
                                  index.get()->setFocused(true);
                                  if (index.get())
                                      index.get()->setNextWidgetFocused();
                              }));
}

GalleryPages::~GalleryPages() { gui::Widget::destroy(index_.get()); }

gui::Window* GalleryPages::getIndex() const { return index_.get(); }

// --- The list ---

GalleryPages::Page& GalleryPages::add_(std::wstring_view caption) {
    auto const number = pages_.size();
    int const column = static_cast<int>(number) % columns;
    int const row = static_cast<int>(number) / columns;
    auto* const button = place(
        index_.get(), new gui::ToggleButton,
        {firstButton.x + column * across, firstButton.y + row * down, firstButton.width, firstButton.height}, caption);
    button->setTabOrder(static_cast<int>(number) + 1);
    on(button, gui::Widget::changeCallbackName, [this, number] { toggle_(number); });
    fitWindow(index_.get(), {2 * margin + contentWidth, firstButton.y + row * down + firstButton.height + margin});
    pages_.push_back({.window = {}, .file = {}, .button = button});
    return pages_.back();
}

void GalleryPages::add(std::wstring_view caption, gui::WindowBase* window) { add_(caption).window = window; }

void GalleryPages::addFile(std::wstring_view caption, std::string_view name) {
    std::string file = "gallery/" + std::string(name) + ".lua";
    if (!qor::findFile(file).empty())
        add_(caption).file = std::move(file);
}

// --- Opening ---

gui::WindowBase* GalleryPages::makeWindow_(Page& page) {
    if (page.window.get() || page.file.empty())
        return page.window.get();
    page.window = gui::GUI::get()->createWindowFromResource(page.file.c_str());
    return page.window.get();
}

void GalleryPages::open(Page& page) {
    gui::WindowBase* const window = makeWindow_(page);
    if (!window)
        return;
    if (window->getPosition() == osg::Vec2i()) {
        int const distance = opened_++ % steps * step;
        window->setPosition(gui::WindowBase::calcWindowPositionInsideScreen(firstPlace + osg::Vec2i(distance, distance),
                                                                            window->getSize()));
    }
    window->setVisible(true);
    if (gui::WindowBase* const live = page.window.get())
        live->setFocused(true);
}

void GalleryPages::openAll() {
    for (Page& page : pages_)
        open(page);
}

bool GalleryPages::isCovered_(gui::WindowBase* window) const {
    qor::vector<gui::WindowBase*> shown;
    gui::WindowsManager::get(window->getSurfaceId())->getShownWindows(shown);
    auto const place = std::find(shown.begin(), shown.end(), window);
    return place != shown.end() && std::any_of(place + 1, shown.end(), [this, window](gui::WindowBase* other) {
               return other != index_.get() && meet(*window, *other);
           });
}

void GalleryPages::toggle_(std::size_t number) {
    Page& page = pages_[number];
    gui::WindowBase* const window = page.window.get();
    if (window && window->getVisible(false) && !isCovered_(window))
        window->setVisible(false);
    else
        open(page);
}

void GalleryPages::update() {
    for (Page const& page : pages_)
        if (gui::ToggleButton* const button = page.button.get())
            button->setState(page.window.get() && page.window.get()->getVisible(false));
}
