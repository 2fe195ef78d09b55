#pragma once

#include <osg/Vec2i>

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

/// Writes pixels as PNG files; folders on the way are made.
namespace host {

/// RGBA, four bytes a pixel, rows from the top, straight alpha. False, with the cause in `error`, if it cannot be
/// written.
VORLEX_API bool writePng(char const* path, osg::Vec2i const& size, unsigned char const* pixels, qor::string& error);

}  // namespace host
