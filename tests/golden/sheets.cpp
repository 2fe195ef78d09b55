#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/golden/ContactSheet.h"
#include "tests/golden/Stage.h"

namespace {

using golden::Stage;
using gui::Align;
using gui::Align2;
using gui::Widget;
using osg::Vec2i;
using osg::Vec4f;
using support::ZooAnimal;

// --- Every class in its states ---

struct State {
    char const* name;
    std::function<void(Stage&, Widget&)> enter;
};

Vec2i getMiddle(Widget const& widget) {
    return widget.widgetToScreen(Vec2i(widget.getSize().x() / 2, widget.getSize().y() / 2));
}

State const released{"released", [](Stage&, Widget& widget) { widget.setFocused(false); }};
State const hovered{"hovered", [](Stage& stage, Widget& widget) { stage.moveMouse(getMiddle(widget)); }};
State const pressed{"pressed", [](Stage& stage, Widget& widget) {
                        stage.moveMouse(getMiddle(widget));
                        stage.getHost().pressMouse();
                    }};
State const disabled{"disabled", [](Stage&, Widget& widget) { widget.setEnabled(false); }};
State const focused{"focused", [](Stage&, Widget& widget) {
                        widget.setTabOrder(1);
                        widget.setTabFocused();
                    }};
State const faint{"half transparent", [](Stage&, Widget& widget) { widget.setOpacity(0.5f); }};
State const zoomed{"zoomed", [](Stage&, Widget& widget) { widget.setZoom(1.5f); }};

/// The animals that fit into a small cell, or the others.
std::vector<ZooAnimal> select(bool small) {
    std::vector<ZooAnimal> chosen;
    support::ZooHost const host;
    for (ZooAnimal const& animal : support::getZoo()) {
        Vec2i const size = animal.make()->getSize();
        if (small == (!animal.window && size.x() <= 130 && size.y() <= 34))
            chosen.push_back(animal);
    }
    return chosen;
}

struct Zoo {
    char const* skin;
    float scale;
    bool small;
    std::vector<State> states;
    int columns;
};

void PrintTo(Zoo const& zoo, std::ostream* out) { *out << zoo.skin << " at " << zoo.scale; }

std::string getName(Zoo const& zoo) {
    return std::string(zoo.small ? "small" : "large") + "_" + zoo.skin + "_" + (zoo.scale == 1.0f ? "1x" : "2x");
}

class GoldenZoo : public testing::TestWithParam<Zoo> {};

INSTANTIATE_TEST_SUITE_P(
    All, GoldenZoo,
    testing::Values(Zoo{"dark", 1, true, {released, hovered, pressed, disabled, focused, faint, zoomed}, 7},
                    Zoo{"light", 1, true, {released, hovered, pressed, disabled, focused, faint, zoomed}, 7},
                    Zoo{"dark", 2, true, {released, pressed, focused}, 3},
                    Zoo{"dark", 1, false, {released, focused, disabled, faint}, 4},
                    Zoo{"light", 1, false, {released, focused, disabled, zoomed}, 4},
                    Zoo{"dark", 2, false, {focused}, 2}),
    [](auto const& info) { return getName(info.param); });

TEST_P(GoldenZoo, EveryClassLooksAsItDidInEachState) {
    Zoo const& zoo = GetParam();
    std::vector<ZooAnimal> const animals = select(zoo.small);
    Stage stage(("skins/" + std::string(zoo.skin) + ".lua").c_str(), zoo.small ? Vec2i(142, 50) : Vec2i(250, 166),
                zoo.scale);
    golden::ContactSheet sheet(getName(zoo), stage.getPixels(), zoo.columns);
    for (ZooAnimal const& animal : animals) {
        for (State const& state : zoo.states) {
            Widget& widget = stage.place(animal);
            state.enter(stage, widget);
            sheet.add(std::string(animal.name) + ", " + state.name, stage.takePicture(widget));
            stage.clear();
        }
    }
    sheet.finish();
}

// --- Drawables ---

constexpr char const* regular = "fonts/Inter-Regular.otf";
constexpr Align::Type alignments[] = {Align::Min, Align::Center, Align::Max};

gui::Text::Info makeText(char const* font = regular, int size = 14) {
    gui::Text::Info info;
    info.font = font;
    info.fontSize = size;
    info.color = Vec4f(1, 1, 1, 1);
    return info;
}

/// A background of cells in one colour.
gui::Bkg::Info makeGround(Vec4f const& color) {
    gui::Bkg::Info info;
    info.cellColors.assign(gui::Bkg::CellCount, color);
    return info;
}

/// A window without a look, full of labels, photographed as a sheet of one picture.
class Board {
public:
    Board(std::string name, float scale)
        : stage_("", Vec2i(480, 480), scale), name_(std::move(name) + (scale == 1.0f ? "_1x" : "_2x")) {
        window_->setSize(Vec2i(520, 560));
        window_->setVisible(true);
        stage_.getHost().settle();
        window_->setPosition(Vec2i() - window_->getView()->widgetToScreen(Vec2i()));
    }

    gui::Static& add(osg::RectImpl<Vec2i> const& place, gui::Bkg::Info const* bkg, std::wstring_view text = {},
                     gui::Text::Info const* look = nullptr) {
        auto* const label = new gui::Static;
        window_->insertWidget(label, -1);
        label->setText(text);
        label->setPosition(place.leftTop());
        label->setSize(place.size());
        label->getWidgetSkin()->getSkinData()->setBkg(bkg, gui::skin::InteractiveStateReleased, 1);
        label->getWidgetSkin()->getSkinData()->setText(look, gui::skin::InteractiveStateReleased, 1);
        return *label;
    }

    void compare() {
        golden::ContactSheet sheet(name_, stage_.getPixels(), 1);
        sheet.add("all", stage_.takePicture(*window_));
        sheet.finish();
    }

private:
    Stage stage_;
    std::string name_;
    gui::Window* window_ = new gui::Window;
};

osg::RectImpl<Vec2i> makeRect(int x, int y, int width, int height) { return {x, y, x + width, y + height}; }

class GoldenBoard : public testing::TestWithParam<float> {};

INSTANTIATE_TEST_SUITE_P(Scales, GoldenBoard, testing::Values(1.0f, 2.0f));

void addAligned(Board& board, std::wstring_view words, bool wrapping, Vec2i const& corner) {
    gui::Text::Info text = makeText();
    gui::Bkg::Info const ground = makeGround(Vec4f(0.1f, 0.2f, 0.3f, 1));
    for (int i = 0; i < 9; ++i) {
        text.align = Align2(Align(alignments[i % 3], 0), Align(alignments[i / 3], 0));
        auto const place = makeRect(corner.x() + i % 3 * 78, corner.y() + i / 3 * 50, 75, 47);
        gui::skin::Data& data = *board.add(place, &ground, words, &text).getWidgetSkin()->getSkinData();
        data.setTextWrapping(wrapping);
        data.setUseEllipsis(!wrapping);
        data.setInsets({3, 2, 5, 4});
    }
}

void addEffects(Board& board) {
    gui::Text::Info text = makeText(regular, 20);
    text.shadowColor = Vec4f(0, 0, 0, 0.8f);
    text.shadowOffset = Vec2i(1, 2);
    board.add(makeRect(4, 336, 100, 30), nullptr, L"Shadow", &text);
    text = makeText(regular, 20);
    text.bkgColor = Vec4f(0.5f, 0, 0, 1);
    text.lineThroughColor = Vec4f(1, 1, 0, 1);
    text.lineThroughHeight = 2;
    board.add(makeRect(104, 336, 150, 30), nullptr, L"Line through", &text);
    text = makeText(regular, 20);
    text.blurColor = Vec4f(1, 0.3f, 0, 1);
    text.blur = vtxFont::BlurSmall;
    board.add(makeRect(254, 336, 60, 30), nullptr, L"Halo", &text);
    text.blur = vtxFont::BlurLarge;
    board.add(makeRect(314, 336, 60, 30), nullptr, L"Halo", &text);
    board.add(makeRect(384, 386, 90, 26), nullptr, L"Turned", &text).setAngle(33.0);
}

TEST_P(GoldenBoard, TextLooksAsItDid) {
    Board board("text", GetParam());
    char const* const fonts[] = {regular,
                                 "fonts/Inter-Medium.otf",
                                 "fonts/Inter-SemiBold.otf",
                                 "fonts/Inter-Bold.otf",
                                 "fonts/Inter-Italic.otf",
                                 "fonts/DejaVuSans.ttf",
                                 "fonts/JetBrainsMono-Regular.ttf"};
    int y = 2;
    for (char const* font : fonts) {
        gui::Text::Info const text = makeText(font);
        board.add(makeRect(4, y, 236, 20), nullptr, L"Sphinx of black quartz 0123", &text);
        y += 20;
    }
    y = 2;
    for (int size : {9, 11, 17, 29, 41}) {
        gui::Text::Info const text = makeText(regular, size);
        board.add(makeRect(244, y, 232, size + 12), nullptr, L"AVATAR To We LT y.", &text);
        y += size + 12;
    }
    gui::Text::Info text = makeText();
    board.add(makeRect(4, 146, 236, 24), nullptr,
              L"\u0416\u0451 \u03a9\u03c0 \u2192 \u2713 \u265e \u4e2d e\u0301 \u00c5", &text);
    addAligned(board, L"Lines that wrap", true, Vec2i(4, 178));
    addAligned(board, L"Shortened text\nof two", false, Vec2i(244, 178));
    addEffects(board);
    text.lineHeight = 21;
    board
        .add(makeRect(4, 370, 370, 106), nullptr,
             L"A text over lines of a height of their own, and a Wordthatistoolongforanyandalllinesinthisbox "
             L"in it.\n\nAfter an empty line.",
             &text)
        .getWidgetSkin()
        ->getSkinData()
        ->setTextWrapping(true);
    board.compare();
}

TEST_P(GoldenBoard, BackgroundsAndPicturesOfOddSizesLookAsTheyDid) {
    Board board("backgrounds", GetParam());
    gui::Bkg::Info button = makeGround(Vec4f(1, 1, 1, 1));
    button.file = "atlas/parts.png";
    button.rect = {28, 40, 52, 64};
    button.insets = {8, 8, 8, 8};
    gui::Bkg::Info plain = makeGround(Vec4f());
    for (int cell = 0; cell < gui::Bkg::CellCount; ++cell)
        plain.cellColors[size_t(cell)] = Vec4f(float(cell % 3) / 2, float(cell / 3) / 2, 0.4f, 0.75f);
    plain.insets = {3, 1, 6, 4};
    int y = 3;
    for (int height : {1, 3, 15, 16, 17, 33}) {
        int x = 3;
        for (int width : {1, 3, 7, 15, 16, 17, 23, 24, 31, 57})
            for (gui::Bkg::Info const* const info : {&button, &plain}) {
                board.add(makeRect(x, y, width, height), info);
                x += width + 3;
            }
        y += height + 5;
    }
    gui::Image::Info picture;
    picture.file = "atlas/parts.png";
    picture.rect = {62, 66, 80, 84};
    gui::Bkg::Info const ground = makeGround(Vec4f(0.1f, 0.2f, 0.3f, 1));
    for (int i = 0; i < 40; ++i) {
        picture.tileHorizontally = i & 1;
        picture.tileVertically = i & 2;
        picture.resizeToFill = i & 4;
        picture.userTexSampler = i / 8 % 3;
        picture.size = i < 24 ? Vec2i() : Vec2i(i < 32 ? 7 : 29, i < 32 ? 31 : 11);
        Align const align(alignments[i % 3], i % 5 - 2);
        picture.align = Align2(align, align);
        auto const place = makeRect(3 + i % 8 * 59, 150 + i / 8 * 66, 51 + i % 3, 58 + i % 4);
        gui::skin::Data& data = *board.add(place, &ground).getWidgetSkin()->getSkinData();
        data.setImage(&picture, gui::skin::InteractiveStateReleased, 1);
        data.setInsets({i % 4, i % 3, 5, 0});
    }
    board.compare();
}

TEST(Golden, TheReferencesAreFewAndSmall) {
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator("tests/golden")) {
        if (entry.path().extension() != ".png")
            continue;
        ++count;
        EXPECT_LT(entry.file_size(), 200'000u) << entry.path();
    }
    EXPECT_LE(count, 40);
}

}  // namespace
