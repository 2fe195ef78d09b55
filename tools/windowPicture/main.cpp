// Draws the window of a window file without a display, cut to the window, and writes it as a PNG file.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/ModalWindow.h"
#include "host/Assets.h"
#include "host/PngWriter.h"
#include "host/headless/HeadlessApplication.h"
#include "host/lua/WindowResources.h"

namespace {

char const* const usage =
    "windowPicture FILE.lua PICTURE.png [--skin FILE] [--scale NUMBER] [--size WIDTHxHEIGHT]\n"
    "  --size   resizes the window before the picture is taken, GUI units\n";

struct Options {
    std::string file;
    std::string picture;
    std::string skin = "skins/dark.lua";
    float scale = 1.0f;
    osg::Vec2i size;
};

bool readOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        std::string const word = argv[i];
        char const* const value = i + 1 < argc ? argv[i + 1] : nullptr;
        if (word == "--skin" && value)
            options.skin = value, ++i;
        else if (word == "--scale" && value)
            options.scale = std::strtof(value, nullptr), ++i;
        else if (word == "--size" && value && std::sscanf(value, "%dx%d", &options.size.x(), &options.size.y()) == 2)
            ++i;
        else if (!word.starts_with("--") && options.picture.empty())
            (options.file.empty() ? options.file : options.picture) = word;
        else
            return false;
    }
    return !options.picture.empty() && options.scale > 0.0f;
}

/// Around the window, GUI units.
constexpr int margin = 12;
osg::Vec2i const screen(1000, 800);

/// Cuts the window and its margin out of the frame.
bool savePicture(host::HeadlessApplication& application, gui::WindowBase const& window, Options const& options) {
    qor::vector<unsigned char> const frame = application.readPixels();
    int const width = application.getWidth();
    auto const toPixels = [&](int units) { return static_cast<int>(static_cast<float>(units) * options.scale); };
    osg::Vec2i const wanted = window.getSize() + osg::Vec2i(2 * margin, 2 * margin);
    osg::Vec2i const size(std::min(toPixels(wanted.x()), width),
                          std::min(toPixels(wanted.y()), application.getHeight()));
    qor::vector<unsigned char> cut(static_cast<std::size_t>(size.x()) * size.y() * 4);
    for (int row = 0; row < size.y(); ++row)
        std::memcpy(cut.data() + static_cast<std::size_t>(row) * size.x() * 4,
                    frame.data() + static_cast<std::size_t>(row) * width * 4, static_cast<std::size_t>(size.x()) * 4);
    qor::string error;
    if (!host::writePng(options.picture.c_str(), size, cut.data(), error))
        std::fprintf(stderr, "windowPicture: %s\n", error.c_str());
    return error.empty();
}

bool draw(host::HeadlessApplication& application, Options const& options) {
    gui::WindowBase* const window = gui::GUI::get()->createWindowFromResource(options.file.c_str());
    if (!window)
        return false;
    // A picture waits for nobody.
    if (auto* const modal = dynamic_cast<gui::ModalWindow*>(window))
        modal->setLockFlow(false);
    window->setPosition({margin, margin});
    window->setVisible(true);
    application.runFrames(2);
    if (options.size.x() > 0)
        window->setSize(options.size);
    application.runFrames(4);
    return host::takeResourceErrors().empty() && savePicture(application, *window, options);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!readOptions(argc, argv, options)) {
        std::fputs(usage, stderr);
        return 2;
    }
    auto& application = *new host::HeadlessApplication(host::HeadlessApplication::BackEnd::GL);
    host::HostOptions start;
    start.skin = options.skin.c_str();
    start.scale = options.scale;
    start.size = screen;
    bool const drawn = host::addToolkitAssets() && application.start(start) && draw(application, options);
    application.stop();
    gui::Application::destroy();
    return drawn ? 0 : 1;
}
