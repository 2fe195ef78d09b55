#include "testkit/ImageCompare.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

namespace {

using osg::Vec2i;
using testkit::Image;

/// Opaque, all of one grey.
Image makeImage(int width, int height, unsigned char grey) {
    Image image;
    image.size = Vec2i(width, height);
    for (int i = 0; i < width * height; ++i)
        for (int channel = 0; channel < 4; ++channel)
            image.pixels.push_back(channel == 3 ? 255 : grey);
    return image;
}

unsigned char& at(Image& image, int x, int y, int channel) {
    return image.pixels[size_t((y * image.size.x() + x) * 4 + channel)];
}

std::string makeFolder() {
    auto const path = std::filesystem::temp_directory_path() / ("vorlex-image-" + std::to_string(getpid()));
    std::filesystem::create_directories(path);
    return path.string();
}

TEST(ImageCompare, CountsThePixelsThatDifferAndFramesThem) {
    Image const expected = makeImage(10, 8, 100);
    Image actual = expected;
    EXPECT_TRUE(testkit::compareImages(expected, actual).equal);
    at(actual, 2, 3, 0) = 90;
    at(actual, 7, 3, 1) = 103;
    at(actual, 4, 6, 3) = 254;
    auto const strict = testkit::compareImages(expected, actual);
    EXPECT_FALSE(strict.equal);
    EXPECT_EQ(strict.differing, 3u);
    EXPECT_EQ(strict.largest, 10);
    EXPECT_EQ(strict.box, osg::RectImpl<Vec2i>(2, 3, 8, 7));
    EXPECT_STREQ(strict.describe().c_str(), "3 pixels differ, by at most 10 levels, between (2, 3) and (8, 7)");

    EXPECT_FALSE(testkit::compareImages(expected, actual, {.levels = 9}).equal);
    EXPECT_TRUE(testkit::compareImages(expected, actual, {.levels = 10}).equal);
    auto const one = testkit::compareImages(expected, actual, {.levels = 3});
    EXPECT_EQ(one.differing, 1u);
    EXPECT_EQ(one.box, osg::RectImpl<Vec2i>(2, 3, 3, 4));
    // One pixel of eighty.
    EXPECT_FALSE(testkit::compareImages(expected, actual, {.levels = 3, .share = 0.0124}).equal);
    EXPECT_TRUE(testkit::compareImages(expected, actual, {.levels = 3, .share = 0.0126}).equal);
}

TEST(ImageCompare, PicturesOfOtherSizesOrWithoutPixelsAreNeverEqual) {
    testkit::ImageTolerance const any{.levels = 255, .share = 1.0};
    Image const wide = makeImage(6, 2, 9);
    Image const high = makeImage(3, 5, 9);
    auto const result = testkit::compareImages(wide, high, any);
    EXPECT_FALSE(result.equal);
    EXPECT_FALSE(result.sameSize);
    EXPECT_EQ(testkit::compareImages(wide, high).differing, 6u + 9u) << "what only one has, not the empty corner";
    EXPECT_NE(result.describe().find("the sizes differ"), qor::string::npos);
    EXPECT_EQ(testkit::makeDifferencePicture(wide, high).size, Vec2i(3 * 6 + 8, 5));

    EXPECT_FALSE(testkit::compareImages(wide, Image(), any).equal);
    Image torn = wide;
    torn.pixels.resize(7);
    EXPECT_FALSE(testkit::compareImages(wide, torn, any).equal);
    EXPECT_FALSE(testkit::compareImages(torn, torn, any).equal);
    EXPECT_EQ(testkit::makeDifferencePicture(torn, wide).size, Vec2i(3 * 6 + 8, 2));
    EXPECT_TRUE(testkit::compareImages(Image(), Image()).equal);
}

TEST(ImageCompare, TheDifferencePictureShowsBothAndMarksEvenTheSmallestDifference) {
    Image const expected = makeImage(5, 4, 120);
    Image actual = expected;
    at(actual, 1, 2, 2) = 121;
    at(actual, 4, 0, 2) = 20;
    Image shown = testkit::makeDifferencePicture(expected, actual);
    ASSERT_EQ(shown.size, Vec2i(3 * 5 + 8, 4));
    EXPECT_EQ(at(shown, 1, 2, 2), 120);
    EXPECT_EQ(at(shown, 1 + 9, 2, 2), 121);
    EXPECT_GT(at(shown, 1 + 18, 2, 0), 2 * at(shown, 2 + 18, 2, 0));
    EXPECT_EQ(at(shown, 1 + 18, 2, 1), 0);
    EXPECT_GT(at(shown, 4 + 18, 0, 0), at(shown, 1 + 18, 2, 0)) << "brighter the more it differs";
    EXPECT_EQ(at(shown, 0 + 18, 0, 0), at(shown, 0 + 18, 0, 1)) << "grey where nothing differs";
}

TEST(ImageCompare, APictureIsReadAsItWasWrittenAndABrokenFileIsRefusedWithTheCause) {
    std::string const folder = makeFolder();
    Image image = makeImage(7, 3, 200);
    // Straight alpha: what is transparent keeps its colour.
    at(image, 2, 1, 3) = 0;
    at(image, 5, 2, 3) = 13;
    qor::string error;
    std::string const path = folder + "/deep/picture.png";
    ASSERT_TRUE(testkit::writePng(path.c_str(), image, error)) << error;
    Image read;
    ASSERT_TRUE(testkit::readPng(path.c_str(), read, error)) << error;
    EXPECT_TRUE(testkit::compareImages(image, read).equal);

    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    EXPECT_FALSE(testkit::readPng(path.c_str(), read, error));
    EXPECT_TRUE(read.pixels.empty() && read.size == Vec2i());
    std::ofstream(path) << "no picture";
    EXPECT_FALSE(testkit::readPng(path.c_str(), read, error));
    EXPECT_NE(error.find(path.c_str()), qor::string::npos) << error;
    EXPECT_FALSE(testkit::readPng((folder + "/none.png").c_str(), read, error));
    EXPECT_FALSE(testkit::writePng(path.c_str(), Image(), error));
    std::filesystem::remove_all(folder);
}

}  // namespace
