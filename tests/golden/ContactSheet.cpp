#include "tests/golden/ContactSheet.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <regex>
#include <sstream>

#include <epoxy/gl.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <gtest/gtest.h>
#include <hb.h>

namespace golden {

namespace {

using osg::Vec2i;
using testkit::Image;

std::string const references = "tests/golden/";
std::string const leftovers = "out/golden/";

bool isUpdate() { return std::getenv("VORLEX_UPDATE_GOLDEN") != nullptr; }

std::string findVersion(GLenum text, char const* pattern) {
    std::cmatch match;
    char const* const words = reinterpret_cast<char const*>(glGetString(text));
    return words && std::regex_search(words, match, std::regex(pattern)) ? match[1].str() : "none";
}

/// What decides about pixels, as this machine has it.
std::string readVersions() {
    int major = 0, minor = 0, patch = 0;
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) == 0) {
        FT_Library_Version(library, &major, &minor, &patch);
        FT_Done_FreeType(library);
    }
    std::ostringstream text;
    text << "Mesa " << findVersion(GL_VERSION, "Mesa ([0-9.]+)") << '\n'
         << "LLVM " << findVersion(GL_RENDERER, "LLVM ([0-9.]+)") << '\n'
         << "FreeType " << major << '.' << minor << '.' << patch << '\n'
         << "HarfBuzz " << hb_version_string() << '\n';
    return text.str();
}

/// What is tolerated here; the first call says so where it is more than nothing, or writes VERSIONS on an update.
testkit::ImageTolerance const& getTolerance() {
    static testkit::ImageTolerance const tolerance = [] {
        std::string const here = readVersions();
        std::string const path = references + "VERSIONS";
        if (isUpdate())
            std::ofstream(path) << here;
        std::ostringstream wanted;
        wanted << std::ifstream(path).rdbuf();
        if (wanted.str() == here)
            return testkit::ImageTolerance();
        std::cerr << "\n**** GOLDEN IMAGES ARE COMPARED LOOSELY: within 3 levels, but for 0.1 % of the pixels.\n"
                  << "**** The references were drawn with\n"
                  << wanted.str() << "**** and this machine has\n"
                  << here << '\n';
        return testkit::ImageTolerance{.levels = 3, .share = 0.001};
    }();
    return tolerance;
}

void copy(Image const& from, Vec2i const& at, Image& to) {
    for (int y = 0; y < from.size.y(); ++y)
        std::memcpy(&to.pixels[size_t((at.y() + y) * to.size.x() + at.x()) * 4],
                    &from.pixels[size_t(y * from.size.x()) * 4], size_t(from.size.x()) * 4);
}

Image cut(Image const& from, Vec2i const& at, Vec2i const& size) {
    Image part;
    part.size = size;
    for (int y = at.y(); y < at.y() + size.y(); ++y) {
        auto const row = from.pixels.begin() + (y * from.size.x() + at.x()) * 4;
        part.pixels.insert(part.pixels.end(), row, row + size.x() * 4);
    }
    return part;
}

void write(std::string const& path, Image const& image) {
    qor::string error;
    EXPECT_TRUE(testkit::writePng(path.c_str(), image, error)) << error;
}

}  // namespace

ContactSheet::ContactSheet(std::string name, Vec2i const& cell, int columns)
    : name_(std::move(name)), cell_(cell), columns_(columns), rows_(maxSide / cell.y()) {
    EXPECT_LE(cell.x() * columns, maxSide);
}

void ContactSheet::add(std::string const& what, Image const& picture) {
    ASSERT_EQ(picture.size, cell_);
    if (pages_.empty() || int(pages_.back().cells.size()) == columns_ * rows_)
        pages_.emplace_back();
    Page& page = pages_.back();
    osg::RectImpl<Vec2i> const rect = getRect_(int(page.cells.size()));
    page.image.size = Vec2i(cell_.x() * columns_, rect.y2);
    page.image.pixels.resize(size_t(page.image.size.x() * page.image.size.y()) * 4);
    copy(picture, rect.leftTop(), page.image);
    page.cells.push_back(what);
}

osg::RectImpl<Vec2i> ContactSheet::getRect_(int index) const {
    Vec2i const at(index % columns_ * cell_.x(), index / columns_ * cell_.y());
    return {at, at + cell_};
}

void ContactSheet::finish() const {
    EXPECT_FALSE(pages_.empty());
    for (size_t i = 0; i < pages_.size(); ++i)
        compare_(name_ + "-" + std::to_string(i + 1), pages_[i]);
}

void ContactSheet::compare_(std::string const& name, Page const& page) const {
    for (char const* kind : {"-actual.png", "-expected.png", "-difference.png"})
        std::filesystem::remove(leftovers + name + kind);
    testkit::ImageTolerance const& tolerance = getTolerance();
    if (isUpdate())
        return write(references + name + ".png", page.image);
    Image reference;
    qor::string error;
    if (!testkit::readPng((references + name + ".png").c_str(), reference, error)) {
        write(leftovers + name + "-actual.png", page.image);
        FAIL() << error << "\ntests/golden/update.sh makes it; look at out/golden/" << name << "-actual.png first";
    }
    testkit::ImageDifference const difference = testkit::compareImages(reference, page.image, tolerance);
    if (difference.equal)
        return;
    write(leftovers + name + "-actual.png", page.image);
    write(leftovers + name + "-expected.png", reference);
    write(leftovers + name + "-difference.png", testkit::makeDifferencePicture(reference, page.image));
    std::vector<std::string> cells;
    for (size_t i = 0; i < page.cells.size() && difference.sameSize; ++i) {
        Vec2i const at = getRect_(int(i)).leftTop();
        if (!testkit::compareImages(cut(reference, at, cell_), cut(page.image, at, cell_)).equal)
            cells.push_back(page.cells[i]);
    }
    std::ostringstream words;
    for (size_t i = 0; i < std::min<size_t>(cells.size(), 12); ++i)
        words << "\n  " << cells[i];
    if (cells.size() > 12)
        words << "\n  and " << cells.size() - 12 << " more";
    FAIL() << name << ": " << difference.describe() << words.str() << "\nsee out/golden/" << name
           << "-difference.png; if all is as it should be, tests/golden/update.sh makes it the reference";
}

}  // namespace golden
