// What the eye sees of an X display, for run.sh: saves regions of the root window, waits until they change or come
// back, and reads the cursor.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>
#include <spng.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

char const* const usage =
    "Usage: x11_probe COMMAND, on the display of DISPLAY; places are pixels of the root window.\n"
    "  save FILE X Y W H        keeps a region\n"
    "  differ FILE [X Y]        prints how many pixels now differ from the region that was kept, and their bounds as\n"
    "                           LEFT TOP RIGHT BOTTOM; X Y: compares with another place\n"
    "  same FILE [X Y]          0 if none differs\n"
    "  wait-differ FILE N       waits until at least N pixels differ\n"
    "  wait-same FILE [X Y]     waits until none differs\n"
    "  wait-still X Y W H       waits until the region stays the same for a second\n"
    "  png FILE                 writes the whole root window\n"
    "  cursor                   prints a hash of the cursor's picture, and width and height of what is opaque\n"
    "  wait-cursor HASH         waits until the cursor is that one\n"
    "  wait-cursor-not HASH...  waits until it is none of those, and prints as cursor does\n"
    "  close WINDOW             asks the window to close, as a window manager does\n"
    "  cover X Y W H            lays a window of its own over the region until it is killed\n"
    "A wait gives up after 10 seconds with status 1; bad use is status 2.\n";

using Words = std::vector<std::string>;

/// Pixels 0xRRGGBB, rows from the top.
struct Picture {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

struct Difference {
    long count = 0;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

[[noreturn]] void fail(std::string const& message) {
    std::fprintf(stderr, "x11_probe: %s\n", message.c_str());
    std::exit(2);
}

int toNumber(std::string const& word) {
    char* end = nullptr;
    long const number = std::strtol(word.c_str(), &end, 10);
    if (word.empty() || *end)
        fail("\"" + word + "\" is no number");
    return static_cast<int>(number);
}

// --- The display ---

/// The part of the region that lies on the screen; what lies outside is black.
Picture grab(Display* display, Picture const& region) {
    Picture result = region;
    result.pixels.assign(static_cast<std::size_t>(region.width) * static_cast<std::size_t>(region.height), 0);
    int const screen = DefaultScreen(display);
    int const left = std::max(region.x, 0);
    int const top = std::max(region.y, 0);
    int const right = std::min(region.x + region.width, DisplayWidth(display, screen));
    int const bottom = std::min(region.y + region.height, DisplayHeight(display, screen));
    if (left >= right || top >= bottom)
        return result;
    XImage* const image = XGetImage(display, DefaultRootWindow(display), left, top, static_cast<unsigned>(right - left),
                                    static_cast<unsigned>(bottom - top), AllPlanes, ZPixmap);
    if (!image)
        fail("the screen cannot be read");
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            result.pixels[static_cast<std::size_t>((y - region.y) * region.width + x - region.x)] =
                static_cast<std::uint32_t>(XGetPixel(image, x - left, y - top)) & 0xffffffu;
    XDestroyImage(image);
    return result;
}

struct Cursor {
    std::string hash;
    int width = 0;
    int height = 0;
};

Cursor getCursor(Display* display) {
    XFixesCursorImage* const image = XFixesGetCursorImage(display);
    if (!image)
        fail("the cursor cannot be read");
    // FNV-1a over size and pixels.
    std::uint64_t hash = 14695981039346656037u;
    auto const mix = [&hash](std::uint64_t value) { hash = (hash ^ value) * 1099511628211u; };
    mix(image->width);
    mix(image->height);
    int left = image->width;
    int top = image->height;
    int right = -1;
    int bottom = -1;
    for (int i = 0; i < image->width * image->height; ++i) {
        auto const pixel = static_cast<std::uint32_t>(image->pixels[i]);
        mix(pixel);
        if (pixel >> 24 < 128)
            continue;
        left = std::min(left, i % image->width);
        right = std::max(right, i % image->width);
        top = std::min(top, i / image->width);
        bottom = std::max(bottom, i / image->width);
    }
    XFree(image);
    char text[17];
    std::snprintf(text, sizeof(text), "%016llx", static_cast<unsigned long long>(hash));
    return {text, std::max(right - left + 1, 0), std::max(bottom - top + 1, 0)};
}

void print(Cursor const& cursor) { std::printf("%s %d %d\n", cursor.hash.c_str(), cursor.width, cursor.height); }

// --- Regions that were kept ---

void write(std::string const& path, Picture const& picture) {
    std::ofstream file(path, std::ios::binary);
    file << picture.x << ' ' << picture.y << ' ' << picture.width << ' ' << picture.height << '\n';
    for (std::uint32_t const pixel : picture.pixels)
        file << pixel << '\n';
    file.close();
    if (!file)
        fail("cannot write " + path);
}

Picture read(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    Picture result;
    file >> result.x >> result.y >> result.width >> result.height;
    if (file && result.width > 0 && result.height > 0)
        result.pixels.resize(static_cast<std::size_t>(result.width) * static_cast<std::size_t>(result.height));
    for (std::uint32_t& pixel : result.pixels)
        file >> pixel;
    if (!file || result.pixels.empty())
        fail("cannot read " + path);
    return result;
}

/// Bounds in root coordinates, the last pixel included.
Difference compare(Display* display, Picture const& kept, int x, int y) {
    Picture place = kept;
    place.x = x;
    place.y = y;
    Picture const now = grab(display, place);
    Difference result;
    for (std::size_t i = 0; i < kept.pixels.size(); ++i) {
        if (kept.pixels[i] == now.pixels[i])
            continue;
        int const column = x + static_cast<int>(i) % kept.width;
        int const row = y + static_cast<int>(i) / kept.width;
        bool const first = result.count++ == 0;
        result.left = first ? column : std::min(result.left, column);
        result.top = first ? row : std::min(result.top, row);
        result.right = first ? column : std::max(result.right, column);
        result.bottom = first ? row : std::max(result.bottom, row);
    }
    return result;
}

void writePng(std::string const& path, Picture const& picture) {
    std::vector<unsigned char> bytes;
    for (std::uint32_t const pixel : picture.pixels)
        for (int const shift : {16, 8, 0})
            bytes.push_back(static_cast<unsigned char>(pixel >> shift));
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file)
        fail("cannot write " + path);
    spng_ctx* const context = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(picture.width);
    header.height = static_cast<std::uint32_t>(picture.height);
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    header.bit_depth = 8;
    spng_set_png_file(context, file);
    spng_set_ihdr(context, &header);
    int const error = spng_encode_image(context, bytes.data(), bytes.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
    spng_ctx_free(context);
    std::fclose(file);
    if (error)
        fail("cannot write " + path);
}

// --- Commands ---

int waitFor(std::function<bool()> const& condition) {
    using namespace std::chrono;
    auto const end = steady_clock::now() + seconds(10);
    while (!condition()) {
        if (steady_clock::now() > end)
            return 1;
        std::this_thread::sleep_for(milliseconds(30));
    }
    return 0;
}

int waitUntilStill(Display* display, Picture const& region) {
    using namespace std::chrono;
    Picture last = grab(display, region);
    auto since = steady_clock::now();
    return waitFor([&] {
        Picture now = grab(display, region);
        if (now.pixels != last.pixels) {
            last = std::move(now);
            since = steady_clock::now();
        }
        return steady_clock::now() - since > seconds(1);
    });
}

int runPicture(Display* display, Words const& words) {
    std::string const& command = words[0];
    if (command == "save" && words.size() == 6) {
        write(words[1],
              grab(display, {toNumber(words[2]), toNumber(words[3]), toNumber(words[4]), toNumber(words[5]), {}}));
        return 0;
    }
    if (command == "png" && words.size() == 2) {
        int const screen = DefaultScreen(display);
        writePng(words[1], grab(display, {0, 0, DisplayWidth(display, screen), DisplayHeight(display, screen), {}}));
        return 0;
    }
    if (command == "wait-still" && words.size() == 5)
        return waitUntilStill(display,
                              {toNumber(words[1]), toNumber(words[2]), toNumber(words[3]), toNumber(words[4]), {}});
    Picture const kept = read(words[1]);
    if (command == "wait-differ" && words.size() == 3) {
        int const least = toNumber(words[2]);
        return waitFor([&] { return compare(display, kept, kept.x, kept.y).count >= least; });
    }
    if (words.size() != 2 && words.size() != 4)
        fail(usage);
    int const x = words.size() == 4 ? toNumber(words[2]) : kept.x;
    int const y = words.size() == 4 ? toNumber(words[3]) : kept.y;
    if (command == "wait-same")
        return waitFor([&] { return compare(display, kept, x, y).count == 0; });
    Difference const difference = compare(display, kept, x, y);
    if (command == "same")
        return difference.count == 0 ? 0 : 1;
    if (command != "differ")
        fail(usage);
    std::printf("%ld %d %d %d %d\n", difference.count, difference.left, difference.top, difference.right,
                difference.bottom);
    return 0;
}

/// Like the window of another program.
[[noreturn]] void cover(Display* display, Words const& words) {
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = WhitePixel(display, DefaultScreen(display));
    Window const window =
        XCreateWindow(display, DefaultRootWindow(display), toNumber(words[1]), toNumber(words[2]),
                      static_cast<unsigned>(toNumber(words[3])), static_cast<unsigned>(toNumber(words[4])), 0,
                      CopyFromParent, InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &attributes);
    XMapRaised(display, window);
    for (XEvent event;;)
        XNextEvent(display, &event);
}

void requestClose(Display* display, Window window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &event);
}

int runCursor(Display* display, Words const& words) {
    if (words[0] == "cursor") {
        print(getCursor(display));
        return 0;
    }
    bool const wanted = words[0] == "wait-cursor";
    if (words.size() < 2 || (!wanted && words[0] != "wait-cursor-not"))
        fail(usage);
    int const status = waitFor(
        [&] { return (std::find(words.begin() + 1, words.end(), getCursor(display).hash) != words.end()) == wanted; });
    print(getCursor(display));
    return status;
}

}  // namespace

int main(int count, char** arguments) {
    Words const words(arguments + 1, arguments + count);
    if (words.empty())
        fail(usage);
    Display* const display = XOpenDisplay(nullptr);
    if (!display)
        fail("no display; see to DISPLAY");
    int event = 0;
    int error = 0;
    if (!XFixesQueryExtension(display, &event, &error))
        fail("the display has no XFixes");
    if (words[0] == "cover" && words.size() == 5)
        cover(display, words);
    if (words[0] == "close" && words.size() == 2) {
        requestClose(display, static_cast<Window>(toNumber(words[1])));
        XCloseDisplay(display);
        return 0;
    }
    bool const ofCursor = words[0].find("cursor") != std::string::npos;
    if (!ofCursor && words.size() < 2)
        fail(usage);
    int const status = ofCursor ? runCursor(display, words) : runPicture(display, words);
    XCloseDisplay(display);
    return status;
}
