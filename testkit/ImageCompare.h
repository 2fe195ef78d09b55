#pragma once

#include <cstddef>

#include <osg/Vec2i>

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

/// Pictures of a test: reading and writing them, comparing them, and a picture that shows a person what differs.
namespace testkit {

/// RGBA, four bytes a pixel, rows from the top, straight alpha: what `HeadlessApplication::readPixels` gives of an
/// opaque frame.
struct Image {
    /// Pixels.
    osg::Vec2i size;
    qor::vector<unsigned char> pixels;
};

/// False, with the cause in `error`, if the PNG file cannot be read; `image` is then empty.
VORLEX_API bool readPng(char const* path, Image& image, qor::string& error);
/// Folders on the way are made. False, with the cause in `error`, if it cannot be written.
VORLEX_API bool writePng(char const* path, Image const& image, qor::string& error);

/// What is not yet a difference. The default wants every pixel to be the same.
struct ImageTolerance {
    /// A pixel counts as the same if no channel differs by more; 0 to 255.
    int levels = 0;
    /// The part of all pixels that may differ by more than that, 0 to 1.
    double share = 0.0;
};

struct ImageDifference {
    /// Within the tolerance.
    bool equal = true;
    bool sameSize = true;
    /// Pixels that differ by more than the levels; those that only one of two pictures of different sizes has, too.
    std::size_t differing = 0;
    /// The largest difference of a channel, within the levels or not; 255 where only one picture has a pixel.
    int largest = 0;
    /// Around all pixels that count as differing; the empty rectangle without any.
    osg::RectImpl<osg::Vec2i> box;

    /// One line for a message.
    VORLEX_API qor::string describe() const;
};

/// Pictures of different sizes are never equal, whatever the tolerance; nor is a picture without the pixels that its
/// size asks for.
VORLEX_API ImageDifference compareImages(Image const& expected, Image const& actual,
                                         ImageTolerance const& tolerance = {});

/// Side by side: expected, actual, and the difference: a dim grey copy of the expected picture with each pixel that
/// differs, however little, in red, the brighter the more it differs. What one picture lacks is magenta.
VORLEX_API Image makeDifferencePicture(Image const& expected, Image const& actual);

}  // namespace testkit
