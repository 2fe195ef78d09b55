#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/qor/Paths.h"

namespace {

namespace fs = std::filesystem;

/// Two asset roots with files, and a working directory beside them; everything is put back at the end.
class Paths : public testing::Test {
protected:
    void SetUp() override {
        place_ = fs::temp_directory_path() / ("qor_paths_" + std::to_string(getpid()));
        write("work/here.txt", "work");
        write("first/here.txt", "first");
        write("first/sub/only.txt", "first only");
        write("second/sub/only.txt", "second");
        write("second/deep/Case.fx", "second deep");
        before_ = fs::current_path();
        rootsBefore_ = qor::getAssetRoots();
        fs::current_path(place_ / "work");
        qor::setAssetRoots({});
        qor::addAssetRoot((place_ / "first").string());
        qor::addAssetRoot((place_ / "second").string());
    }
    void TearDown() override {
        fs::current_path(before_);
        qor::setAssetRoots(rootsBefore_);
        fs::remove_all(place_);
    }

    void write(char const* name, char const* content) {
        fs::create_directories((place_ / name).parent_path());
        std::ofstream(place_ / name) << content;
    }
    std::string read(std::string_view name) {
        qor::string content;
        qor::string error;
        return qor::readFile(name, content, error) ? content.c_str() : "error: " + std::string(error);
    }

    fs::path place_;
    fs::path before_;
    qor::vector<qor::string> rootsBefore_;
};

TEST_F(Paths, looksInTheWorkingDirectoryThenInTheRootsInOrder) {
    EXPECT_EQ(read("here.txt"), "work");
    EXPECT_EQ(read("./sub\\only.txt"), "first only");
    EXPECT_EQ(read("deep//./Case.fx"), "second deep");
    EXPECT_EQ(qor::findFile("deep/case.fx"), "");
    EXPECT_EQ(read((place_ / "second/sub/only.txt").string()), "second");
    EXPECT_EQ(qor::findFile((place_ / "nowhere/here.txt").string()), "");
}

TEST_F(Paths, doesNotTakeAFolderOrAnEmptyNameForAFile) {
    EXPECT_EQ(qor::findFile("sub"), "");
    EXPECT_EQ(qor::findFile(""), "");
    EXPECT_EQ(qor::findFile("."), "");
    EXPECT_EQ(qor::findFile("/dev/zero"), "") << "a device never ends";
    EXPECT_EQ(qor::findFile(std::string_view("here.txt\0.png", 13)), "");
}

TEST_F(Paths, saysWhichFileCannotBeReadAndWhy) {
    EXPECT_NE(read("missing.txt").find("error: missing.txt: not found"), std::string::npos);
    qor::string content;
    qor::string error;
    EXPECT_FALSE(qor::readFile("here.txt", content, error, 3));
    EXPECT_NE(error.find("here.txt"), qor::string::npos);
    EXPECT_TRUE(content.empty());
}

TEST(NormalizePath, mendsSlashesAndKeepsWhatMatters) {
    EXPECT_EQ(qor::normalizePath(".\\a\\.\\b//c.png"), "a/b/c.png");
    EXPECT_EQ(qor::normalizePath("../a"), "../a");
    EXPECT_EQ(qor::normalizePath("/"), "/");
    EXPECT_EQ(qor::normalizePath("//x"), "/x");
    EXPECT_EQ(qor::normalizePath(".hidden"), ".hidden");
}

}  // namespace
