#include <gtest/gtest.h>

#include "platform/vtx/vtxPicture.h"
#include "tests/platform/RendererFixture.h"
#include "tests/support/LogCapture.h"

#include <array>
#include <string>

namespace {

using Pixel = std::array<int, 4>;

class PictureFiles : public RendererFixture {
protected:
    bool decode(std::string const& bytes) { return vtxDecodePicture(bytes, {}, picture, error); }
    Pixel pixel(int x, int y) const {
        unsigned char const* const p = &picture.pixels[(size_t(y) * size_t(picture.width) + size_t(x)) * 4];
        return {p[0], p[1], p[2], p[3]};
    }
    vtxPicture picture;
    qor::string error;
};

/// The width and height that a PNG file tells in its first bytes, its checksum mended.
std::string withPngSize(std::string bytes, unsigned width, unsigned height) {
    auto const put = [&bytes](size_t at, unsigned value) {
        for (int i = 0; i < 4; ++i)
            bytes[at + size_t(i)] = static_cast<char>(value >> (24 - 8 * i));
    };
    put(16, width);
    put(20, height);
    unsigned crc = ~0u;
    for (size_t i = 12; i < 29; ++i) {
        crc ^= static_cast<unsigned char>(bytes[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320u : 0u);
    }
    put(29, ~crc);
    return bytes;
}

TEST_F(PictureFiles, PixelsComePremultipliedAndTopRowFirst) {
    ASSERT_TRUE(decode(makePng(3, 2, [](int x, int y) { return y == 0 && x == 1 ? 0xFF804080u : 0x00FF00FFu; })));
    EXPECT_EQ(pixel(1, 0), (Pixel{128, 64, 32, 128}));
    EXPECT_EQ(pixel(1, 1), (Pixel{0, 255, 0, 255}));
    ASSERT_TRUE(decode(makePng(1, 1, 0xFFFFFF00u)));
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 0, 0, 0}));
    ASSERT_TRUE(decode(makeJpeg(16, 9, 0xC86432FFu)));
    EXPECT_EQ(picture.width, 16);
    EXPECT_EQ(picture.height, 9);
    EXPECT_NEAR(pixel(8, 4)[0], 0xC8, 3);
    EXPECT_NEAR(pixel(8, 4)[2], 0x32, 3);
    EXPECT_EQ(pixel(8, 4)[3], 255);
}

TEST_F(PictureFiles, NothingBrokenOrCutShortIsTaken) {
    std::string const png = makePng(40, 40, [](int x, int y) { return unsigned(x * 7919 + y * 104729) | 0xFFu; });
    std::string const jpeg = makeJpeg(64, 64, 0x336699FFu);
    for (std::string const& whole : {png, jpeg}) {
        ASSERT_TRUE(decode(whole)) << error;
        for (size_t length = 0; length < whole.size() - 20; length += whole.size() / 9) {
            EXPECT_FALSE(decode(whole.substr(0, length))) << length << " of " << whole.size();
            EXPECT_TRUE(picture.pixels.empty());
            EXPECT_FALSE(error.empty());
        }
    }
    std::string damaged = png;
    damaged[png.size() / 2] = static_cast<char>(~damaged[png.size() / 2]);
    EXPECT_FALSE(decode(damaged));
    EXPECT_FALSE(decode("GIF89a..."));
    EXPECT_FALSE(decode(""));
}

TEST_F(PictureFiles, AHugePictureIsRefusedByItsHeaderAlone) {
    std::string const small = makePng(4, 4, 0xFFu);
    for (auto const& [width, height] : {std::pair(100000u, 4u), std::pair(4u, 100000u), std::pair(16000u, 16000u)}) {
        EXPECT_FALSE(decode(withPngSize(small, width, height)));
        EXPECT_NE(error.find("too many"), qor::string::npos) << error;
    }
    EXPECT_FALSE(decode(withPngSize(small, 0x7FFFFFFFu, 0x7FFFFFFFu)));
    std::string jpeg = makeJpeg(8, 8, 0xFFu);
    size_t const frame = jpeg.find("\xFF\xC0");
    jpeg.replace(frame + 5, 4, "\x7F\xF0\x7F\xF0");
    EXPECT_FALSE(decode(jpeg));
    EXPECT_NE(error.find("too many"), qor::string::npos) << error;
}

TEST_F(PictureFiles, AFailedFileGivesNullAndOneLineHoweverOftenAsked) {
    write("broken.png", makePng(30, 30, 0x123456FFu).substr(0, 50));
    support::LogCapture log;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(textures().getTexture("broken.png", {}, nullptr), nullptr);
        EXPECT_EQ(textures().getTexture("./broken.png", {0, 0, 2, 2}, nullptr), nullptr);
        EXPECT_EQ(textures().getTexture("nowhere\\missing.png", {}, nullptr), nullptr);
        EXPECT_EQ(textures().getTexture("", {}, nullptr), nullptr);
        textures().flushReleased();
    }
    EXPECT_EQ(log.count("broken.png"), 1u) << log.dump();
    EXPECT_EQ(log.count("missing.png"), 1u) << log.dump();
    EXPECT_EQ(log.getLines().size(), 2u) << log.dump();
}

}  // namespace
