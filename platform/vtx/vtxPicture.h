#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <osg/Vec2i>

#include <cstdint>
#include <string_view>

/// A decoded picture and the limits that are checked before any pixel is decoded.
/// Pixels are premultiplied RGBA, one byte a channel, tightly packed rows from the top.
struct vtxPicture {
    int width = 0;
    int height = 0;
    qor::vector<unsigned char> pixels;
};

/// In pixels.
struct vtxPictureLimits {
    int maxSide = 16384;
    std::int64_t maxArea = std::int64_t(64) << 20;
};

/// The size of a PNG or JPEG file by its first bytes, checked against the limits.
bool vtxReadPictureSize(std::string_view bytes, vtxPictureLimits const& limits, osg::Vec2i& size, qor::string& error);

/// Decodes the bytes of a PNG or JPEG file. False, with the cause in `error`, for anything broken, cut short, too large
/// or of another form; `picture` is then empty.
bool vtxDecodePicture(std::string_view bytes, vtxPictureLimits const& limits, vtxPicture& picture, qor::string& error);
