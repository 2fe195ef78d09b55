#include "examples/gallery/Options.h"

#include <charconv>
#include <cstring>

char const* const usage =
    "Usage: gallery [options]\n"
    "Shows every widget in windows over a live 3D scene, and one surface inside the scene.\n"
    "\n"
    "  --headless        needs no display: plays a tour and writes pictures (taken by itself where there is none)\n"
    "  --skin NAME       dark, light, or the path of a skin file (default dark)\n"
    "  --scale S         pixels per unit, 0.5 to 4 (default: the display's, headless 1)\n"
    "  --size WxH        size of the window in units (default 1440x900)\n"
    "  --out FOLDER      where the tour's pictures go (default out/gallery)\n"
    "  --back-end NAME   headless only: gl, es, or trace (writes trace.txt instead of pictures)\n"
    "  --record FILE     writes the session down: what a report of a fault attaches\n"
    "  --replay FILE     plays such a file headless, with its skin, size and scale, and compares the widgets at the "
    "end;\n"
    "                    leaves replay.png and tree.txt, or trace.txt for --back-end trace, in the folder of --out\n"
    "  --still           the object in the scene stands still; the space key changes it\n"
    "  --watch           headless too, shows changes of the skin and of the pages' files as they are saved\n"
    "  --help            this text\n"
    "\n"
    "Keys: F1 the index of pages; F11 the other skin; F12 debug skins, tree and counters; space stops and turns the "
    "object; Escape ends.\n";

namespace {

bool parseNumber(char const* text, float& number) {
    char const* const end = text + std::strlen(text);
    auto const [stop, result] = std::from_chars(text, end, number);
    return result == std::errc() && stop == end;
}

bool parseSize(char const* text, osg::Vec2i& size) {
    char const* const end = text + std::strlen(text);
    int width = 0;
    int height = 0;
    auto const first = std::from_chars(text, end, width);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x')
        return false;
    auto const second = std::from_chars(first.ptr + 1, end, height);
    size = osg::Vec2i(width, height);
    return second.ec == std::errc() && second.ptr == end;
}

/// Reads the value of an option that has one.
bool parseValue(std::string const& name, char const* value, Options& options, std::string& error) {
    if (name == "--skin") {
        options.skin = value;
    } else if (name == "--out") {
        options.out = value;
    } else if (name == "--record") {
        options.record = value;
    } else if (name == "--replay") {
        options.replay = value;
    } else if (name == "--back-end") {
        options.backEnd = value;
        if (options.backEnd != "gl" && options.backEnd != "es" && options.backEnd != "trace")
            error = "--back-end takes gl, es or trace, not \"" + options.backEnd + "\".";
    } else if (name == "--scale") {
        if (!parseNumber(value, options.scale) || !(options.scale >= 0.5f && options.scale <= 4.0f))
            error = std::string("--scale takes a number from 0.5 to 4, not \"") + value + "\".";
    } else if (!parseSize(value, options.size) || options.size.x() < 320 || options.size.y() < 240 ||
               options.size.x() > 8192 || options.size.y() > 8192) {
        error = std::string("--size takes WIDTHxHEIGHT from 320x240 to 8192x8192, such as 1440x900, not \"") + value +
                "\".";
    }
    return error.empty();
}

}  // namespace

bool parseOptions(int count, char const* const* words, Options& options, std::string& error) {
    for (int i = 1; i < count; ++i) {
        std::string const word = words[i];
        if (word == "--help" || word == "-h") {
            options.help = true;
        } else if (word == "--headless") {
            options.headless = true;
        } else if (word == "--still") {
            options.still = true;
        } else if (word == "--watch") {
            options.watch = true;
        } else if (word == "--skin" || word == "--scale" || word == "--size" || word == "--out" ||
                   word == "--back-end" || word == "--record" || word == "--replay") {
            if (i + 1 >= count) {
                error = word + " needs a value.";
                return false;
            }
            if (!parseValue(word, words[++i], options, error))
                return false;
        } else {
            error = "Unknown option \"" + word + "\".";
            return false;
        }
    }
    if (!options.record.empty() && !options.replay.empty())
        error = "--record and --replay do not go together.";
    return error.empty();
}
