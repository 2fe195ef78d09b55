#include "testkit/ImageCompare.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <spng.h>

#include "host/PngWriter.h"

namespace testkit {

namespace {

using osg::Vec2i;
using Pixel = unsigned char const*;

constexpr int gap = 4;
constexpr std::size_t maxBytes = std::size_t(1) << 30;

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
struct FreeContext {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};

std::size_t countBytes(Vec2i const& size) {
    return std::size_t(std::max(size.x(), 0)) * std::size_t(std::max(size.y(), 0)) * 4;
}

bool isWhole(Image const& image) {
    return image.size.x() >= 0 && image.size.y() >= 0 && image.pixels.size() == countBytes(image.size);
}

std::size_t countOffset(Image const& image, int x, int y) {
    return (std::size_t(y) * std::size_t(image.size.x()) + std::size_t(x)) * 4;
}

/// Null outside of the picture.
Pixel find(Image const& image, int x, int y) {
    if (x >= image.size.x() || y >= image.size.y() || !isWhole(image))
        return nullptr;
    return image.pixels.data() + countOffset(image, x, y);
}

/// The largest difference of a channel.
int calcDistance(Pixel a, Pixel b) {
    if (!a || !b)
        return a == b ? 0 : 255;
    int largest = 0;
    for (int i = 0; i < 4; ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

int decode(spng_ctx* context, FILE* file, Image& image) {
    spng_ihdr header = {};
    std::size_t bytes = 0;
    int result = spng_set_png_file(context, file);
    if (!result)
        result = spng_get_ihdr(context, &header);
    if (!result)
        result = spng_decoded_image_size(context, SPNG_FMT_RGBA8, &bytes);
    if (!result && bytes > maxBytes)
        result = SPNG_EMEM;
    if (!result) {
        image.size = Vec2i(int(header.width), int(header.height));
        image.pixels.resize(bytes);
        result = spng_decode_image(context, image.pixels.data(), bytes, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    }
    return result;
}

}  // namespace

bool readPng(char const* path, Image& image, qor::string& error) {
    image = Image();
    std::unique_ptr<FILE, CloseFile> file(std::fopen(path, "rb"));
    if (!file) {
        error.format("%s cannot be read: %s", path, std::strerror(errno));
        return false;
    }
    std::unique_ptr<spng_ctx, FreeContext> context(spng_ctx_new(0));
    if (int const result = decode(context.get(), file.get(), image)) {
        error.format("%s cannot be read: %s", path, spng_strerror(result));
        image = Image();
        return false;
    }
    return true;
}

bool writePng(char const* path, Image const& image, qor::string& error) {
    if (isWhole(image) && !image.pixels.empty())
        return host::writePng(path, image.size, image.pixels.data(), error);
    error.format("%s cannot be written: the picture has no pixels, or not as many as its size says", path);
    return false;
}

// --- Comparing ---

qor::string ImageDifference::describe() const {
    qor::string text;
    if (differing)
        text.format("%zu pixels differ, by at most %d levels, between (%d, %d) and (%d, %d)%s", differing, largest,
                    box.x1, box.y1, box.x2, box.y2, equal ? ", which is tolerated" : "");
    else if (largest)
        text.format("no pixel differs by more than %d levels", largest);
    else
        text = equal ? "no pixel differs" : "no pixel can be compared";
    if (!sameSize)
        text += "; the sizes differ";
    return text;
}

ImageDifference compareImages(Image const& expected, Image const& actual, ImageTolerance const& tolerance) {
    ImageDifference result;
    result.sameSize = expected.size == actual.size;
    int const width = std::max(expected.size.x(), actual.size.x());
    int const height = std::max(expected.size.y(), actual.size.y());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int const distance = calcDistance(find(expected, x, y), find(actual, x, y));
            result.largest = std::max(result.largest, distance);
            if (distance <= tolerance.levels)
                continue;
            ++result.differing;
            result.box = result.box.united({x, y, x + 1, y + 1});
        }
    result.equal = result.sameSize && isWhole(expected) && isWhole(actual) &&
                   double(result.differing) <= tolerance.share * double(width) * double(height);
    return result;
}

Image makeDifferencePicture(Image const& expected, Image const& actual) {
    int const width = std::max({expected.size.x(), actual.size.x(), 0});
    int const height = std::max({expected.size.y(), actual.size.y(), 1});
    Image picture;
    picture.size = Vec2i(3 * width + 2 * gap, height);
    picture.pixels.assign(countBytes(picture.size), 255);
    static constexpr unsigned char missing[4] = {255, 0, 255, 255};
    auto const put = [&](int x, int y, Pixel pixel) {
        std::memcpy(picture.pixels.data() + countOffset(picture, x, y), pixel, 4);
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            Pixel const wanted = find(expected, x, y);
            Pixel const given = find(actual, x, y);
            put(x, y, wanted ? wanted : missing);
            put(x + width + gap, y, given ? given : missing);
            int const distance = calcDistance(wanted, given);
            int const grey = wanted ? (wanted[0] + 2 * wanted[1] + wanted[2]) / 12 : 0;
            auto const rest = static_cast<unsigned char>(distance ? 0 : grey);
            auto const red = static_cast<unsigned char>(distance ? std::min(255, 128 + distance) : grey);
            unsigned char const shown[4] = {red, rest, rest, 255};
            put(x + 2 * (width + gap), y, wanted && given ? shown : missing);
        }
    return picture;
}

}  // namespace testkit
