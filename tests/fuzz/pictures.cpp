// Any bytes as a picture file, as they are and, where they are a PNG, with its checksums put right.
#include <string>

#include "platform/vtx/vtxPicture.h"
#include "tests/fuzz/shared/FuzzInput.h"

namespace {

uint32_t calcChecksum(std::string_view bytes) {
    uint32_t sum = ~0u;
    for (char const byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320u : 0u);
    }
    return ~sum;
}

/// Each chunk: length, four letters, content, checksum of letters and content.
void mendChecksums(std::string& bytes) {
    auto const at = [&bytes](size_t index) { return uint32_t(static_cast<unsigned char>(bytes[index])); };
    for (size_t begin = 8; begin + 12 <= bytes.size();) {
        size_t const length = at(begin) << 24 | at(begin + 1) << 16 | at(begin + 2) << 8 | at(begin + 3);
        if (length > bytes.size() - begin - 12)
            return;
        uint32_t const sum = calcChecksum(std::string_view(bytes).substr(begin + 4, length + 4));
        begin += 8 + length;
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes[begin++] = char(sum >> shift);
    }
}

void decode(std::string_view bytes) {
    using fuzz::check;
    vtxPictureLimits const limits{2048, 1 << 18};
    osg::Vec2i size;
    qor::string error;
    bool const hasSize = vtxReadPictureSize(bytes, limits, size, error);
    check(hasSize == error.empty(), "the size is known or the cause is told");
    vtxPicture picture;
    picture.width = 7;
    if (!vtxDecodePicture(bytes, limits, picture, error)) {
        check(!error.empty(), "a picture that cannot be read has a cause");
        check(picture.width == 0 && picture.height == 0 && picture.pixels.empty(), "it is left empty");
        return;
    }
    check(hasSize && picture.width == size.x() && picture.height == size.y(), "the size is that of the first bytes");
    check(size.x() > 0 && size.y() > 0 && size.x() <= limits.maxSide && size.y() <= limits.maxSide &&
              int64_t(size.x()) * size.y() <= limits.maxArea,
          "the limits are kept");
    check(picture.pixels.size() == size_t(size.x()) * size_t(size.y()) * 4, "there are four bytes a pixel");
    for (size_t i = 0; i < picture.pixels.size(); i += 4)
        check(std::max({picture.pixels[i], picture.pixels[i + 1], picture.pixels[i + 2]}) <= picture.pixels[i + 3],
              "no colour is above its alpha");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string bytes(reinterpret_cast<char const*>(data), size);
    decode(bytes);
    if (bytes.starts_with("\x89PNG")) {
        mendChecksums(bytes);
        decode(bytes);
    }
    return 0;
}
