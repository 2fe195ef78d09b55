#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "examples/gallery/Gallery.h"
#include "examples/gallery/Watch.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Paths.h"
#include "platform/trace/vtxTraceLog.h"
#include "tests/reload/Folder.h"

namespace {

/// The gallery at rest over the trace back end, with its files watched.
class WatchedGallery {
public:
    explicit WatchedGallery(qor::string const& skin)
        : application(*new host::HeadlessApplication(host::HeadlessApplication::BackEnd::Trace)) {
        host::HostOptions start;
        start.skin = skin;
        start.size = {1440, 900};
        options.still = true;
        // Whatever test came before.
        host::addToolkitAssets();
        EXPECT_TRUE(application.start(start));
        gallery.emplace(application, options);
        watch.emplace(application, gallery->getPages(), true);
        application.runFrames(10);
    }
    ~WatchedGallery() {
        watch.reset();
        gallery.reset();
        gui::Application::destroy();
    }

    void pressF11() {
        application.pushKey(static_cast<gui::KeyboardButton>(292), 0, true);
        application.pushKey(static_cast<gui::KeyboardButton>(292), 0, false);
        application.runFrames(10);
    }
    std::string trace() {
        application.getTraceLog()->clearLines();
        application.runFrames(1);
        return std::string(application.getTraceLog()->getText().c_str());
    }

    host::HeadlessApplication& application;
    Options options;
    std::optional<Gallery> gallery;
    std::optional<Watch> watch;
};

TEST(GalleryReload, TheOtherSkinByKeyLooksAsIfTheGalleryHadBeenStartedWithIt) {
    std::string const dark = WatchedGallery("skins/dark.lua").trace();
    std::string const light = WatchedGallery("skins/light.lua").trace();
    ASSERT_NE(dark, light);
    WatchedGallery gallery("skins/dark.lua");
    gallery.pressF11();
    EXPECT_EQ(gallery.trace(), light);
    gallery.pressF11();
    EXPECT_EQ(gallery.trace(), dark);
}

TEST(GalleryReload, SavedSkinsShowWithinASecondAndErrorsLieOverEverything) {
    Folder folder;
    folder.copy("skin.lua", "assets/skins/dark.lua");
    WatchedGallery gallery(folder.path("skin.lua"));
    std::string const before = gallery.trace();
    auto const runSecond = [&] { gallery.application.runFrames(60); };
    folder.write("skin.lua", "Skin =");
    runSecond();
    EXPECT_TRUE(gallery.watch->getOverlay().getShown());
    EXPECT_EQ(gallery.trace().substr(0, before.rfind("closePass")), before.substr(0, before.rfind("closePass")))
        << "under the error all is as it was";
    EXPECT_GT(gallery.trace().size(), before.size());
    folder.copy("skin.lua", "assets/skins/light.lua");
    runSecond();
    EXPECT_FALSE(gallery.watch->getOverlay().getShown());
    EXPECT_NE(gallery.trace(), before);
}

TEST(GalleryReload, APageFromAFileIsWatchedFromItsOpeningOn) {
    Folder folder;
    std::filesystem::create_directories(folder.path("gallery").c_str());
    for (char const* const file : {"form.lua", "parts.lua"})
        folder.copy(std::string("gallery/") + file, std::string("assets/gallery/") + file);
    qor::vector<qor::string> const roots = qor::getAssetRoots();
    qor::setAssetRoots({folder.path(""), "assets", "."});
    {
        WatchedGallery gallery("skins/dark.lua");
        for (GalleryPages::Page const& page : gallery.gallery->getPages().getPages()) {
            if (page.file != "gallery/form.lua")
                continue;
            gui::Widget* const button = page.button.get();
            osg::Vec2i const point = button->widgetToScreen({5, 5});
            gallery.application.pushMouseMove(point.x(), point.y());
            gallery.application.pushMouseButton(gui::MouseButtonMain, true);
            gallery.application.pushMouseButton(gui::MouseButtonMain, false);
            gallery.application.runFrames(60);
            gui::WindowBase* const window = page.window.get();
            ASSERT_TRUE(window);
            osg::Vec2i const place = window->getPosition();
            folder.write("gallery/form.lua", "return Window { text = 'edited' }");
            gallery.application.runFrames(60);
            EXPECT_EQ(window->getText(), L"edited");
            EXPECT_EQ(window->getPosition(), place);
            EXPECT_TRUE(window->getVisible(false));
        }
    }
    qor::setAssetRoots(roots);
}

}  // namespace
