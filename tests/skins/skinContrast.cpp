#include <algorithm>

#include "platform/qor/Paths.h"
#include "platform/vtx/vtxPicture.h"
#include "tests/skins/SkinTree.h"

#include <gtest/gtest.h>

namespace skintest {

namespace {

/// What a skin file shows behind and in its texts.
class Contrasts {
public:
    explicit Contrasts(std::string const& name) : file_(readSkinFile(name)) {
        qor::string bytes;
        qor::string error;
        EXPECT_TRUE(qor::readFile("atlas/parts.png", bytes, error)) << error;
        EXPECT_TRUE(vtxDecodePicture({bytes.data(), bytes.size()}, {}, atlas_, error)) << error;
    }

    /// The colour in the middle of a background that lies on an opaque colour.
    Color getSurface(Value const* bkg, Color const& below) const {
        if (bkg == nullptr)
            return below;
        Color above = parseColor(bkg->find("center_center"));
        if (Value const* const rect = bkg->find("rect")) {
            int const x = int(rect->find("x1")->number + rect->find("x2")->number) / 2;
            int const y = int(rect->find("y1")->number + rect->find("y2")->number) / 2;
            unsigned char const* const texel = &atlas_.pixels[size_t(y * atlas_.width + x) * 4];
            double const alpha = std::max(int(texel[3]), 1);
            above = {above.red * texel[0] / alpha, above.green * texel[1] / alpha, above.blue * texel[2] / alpha,
                     above.alpha * texel[3] / 255.0};
        }
        return blend(above, below);
    }

    /// A drawable of a look, with the fallback of docs/skins.md.
    static Value const* findDrawable(Value const& skin, std::string const& state, std::string const& inner,
                                     std::string const& key) {
        Value const* const states = skin.find("skinData")->find("states");
        for (std::string const& word : {state, std::string("released")}) {
            Value const* const looks = states == nullptr ? nullptr : states->find(word);
            if (looks == nullptr)
                continue;
            Value const* const look = looks->find(inner) != nullptr ? looks->find(inner) : looks->find("1");
            if (look != nullptr && look->find(key) != nullptr)
                return look->find(key);
        }
        return nullptr;
    }

    void checkSkin(std::string const& name, Value const& skin, std::string const& state) const {
        double const wanted = state == "disabled" ? 3.0 : 4.5;
        for (char const* const inner : {"1", "2", "3"}) {
            Value const* const text = findDrawable(skin, state, inner, "text");
            if (text == nullptr)
                continue;
            Value const* const bkg = findDrawable(skin, state, inner, "bkg");
            for (Color const& ground : getGrounds_(state)) {
                Color const surface = getSurface(bkg, ground);
                Color const letters = blend(parseColor(text->find("color")), surface);
                EXPECT_GE(calcContrast(letters, surface), wanted) << name << " " << state << " " << inner;
            }
        }
    }

    void checkAll() const {
        Value const* const parts = file_.skins.at("windowSkin").find("skinData")->find("skins");
        for (char const* const state : {"released", "hover", "pressed", "disabled"}) {
            for (auto const& [name, skin] : file_.skins)
                checkSkin(name, skin, state);
            checkSkin("header", *parts->find("header"), state);
        }
    }

private:
    /// What controls may lie on: a window or a panel, which are disabled only with what lies on them.
    std::vector<Color> getGrounds_(std::string const& state) const {
        std::vector<Color> grounds;
        for (std::string const& word : {std::string("released"), state})
            for (char const* const skin : {"windowSkin", "panelSkin"})
                grounds.push_back(getSurface(findDrawable(file_.skins.at(skin), word, "1", "bkg"), {0, 0, 0, 1}));
        return grounds;
    }

    SkinFile file_;
    vtxPicture atlas_;
};

class DefaultSkinContrast : public testing::TestWithParam<char const*> {};

TEST_P(DefaultSkinContrast, EveryTextCanBeReadOnWhatItLiesOn) { Contrasts(GetParam()).checkAll(); }

INSTANTIATE_TEST_SUITE_P(Files, DefaultSkinContrast, testing::Values("skins/dark.lua", "skins/light.lua"));

TEST(Contrast, IsThatOfTheGuidelines) {
    EXPECT_NEAR(calcContrast({1, 1, 1, 1}, {0, 0, 0, 1}), 21.0, 1e-9);
    Value grey;
    grey.text = "0x767676ff";
    EXPECT_NEAR(calcContrast(parseColor(&grey), {1, 1, 1, 1}), 4.54, 0.01);
}

}  // namespace

}  // namespace skintest
