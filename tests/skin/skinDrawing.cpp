#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/CommandPlayer.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "tests/skin/SkinBox.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using support::TestHost;

std::string const textState =
    "text = {font = '" + std::string(support::fontFile) + "', fontSize = 14, color = 'ffffffff'}";

std::string skins() {
    return "Skin = {"
           "full = " +
           support::skinFunction(
               "insets = {left = 3, top = 4, right = 5, bottom = 6}, focusRectColor = 'ff0000ff'",
               "bkg = {center_center = '336699ff', insets = {left = 2, right = 5, top = 1}}, " + textState) +
           ", clear = " + support::skinFunction("", "bkg = {center_center = 'ffffff00'}") +
           ", plain = " + support::skinFunction("", "bkg = {center_center = '0000ffff'}") +
           ", wrapped = " + support::skinFunction("textWrapping = true", textState) +
           ", clipped = " + support::skinFunction("clipInsets = {left = 5, top = 6, right = 7, bottom = 8}", "") + "}";
}

std::size_t countText(std::string const& text, std::string const& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// The operations of the contract that begin with `prefix` while a frame is drawn, one a line.
std::string tracedOperations(TestHost& host, gui::Widget& widget, char const* prefix) {
    host.trace().setContractWanted(true);
    std::string const lines = host.traceDraw(widget);
    host.trace().setContractWanted(false);
    std::string result;
    for (std::size_t begin = 0; begin < lines.size();) {
        std::size_t const end = lines.find('\n', begin);
        if (lines.compare(begin, std::string(prefix).size(), prefix) == 0)
            result += lines.substr(begin, end - begin + 1);
        begin = end + 1;
    }
    return result;
}

TEST(SkinSize, IsThatOfTheReleasedStateWithItsInsets) {
    TestHost host(skins());
    auto* const box = new SkinBox("full");
    EXPECT_EQ(box->calcSize(), osg::Vec2i(8, 10)) << "no text, no picture: the insets";
    box->setText(L"Wide");
    osg::Vec2i const size = box->calcSize();
    EXPECT_GT(size.x(), 20);
    EXPECT_GT(size.y(), 20);
    gui::Text::Info larger = *box->look().getSkinData()->getText(gui::skin::InteractiveStateReleased, 1);
    larger.fontSize = 40;
    box->look().getSkinData()->setText(&larger, gui::skin::InteractiveStateDisabled, 1);
    box->setEnabled(false);
    EXPECT_EQ(box->calcSize(), size);
    EXPECT_EQ(box->look().calcBkgSize_(gui::skin::InteractiveStateReleased, 1), osg::Vec2i(7, 1));
    box->setText(L"a\tb");
    osg::Vec2i const tabbed = box->calcSize();
    box->setText(L"a    b");
    EXPECT_EQ(box->calcSize(), tabbed) << "a tab counts as its spaces";
}

TEST(SkinDrawables, ExistOnlyWhileThereIsSomethingToSee) {
    TestHost host(skins());
    auto* const box = new SkinBox("full");
    host.frame();
    EXPECT_EQ(box->look().bkg, nullptr) << "no size";
    box->setSize(osg::Vec2i(40, 30));
    box->setText(L"x");
    host.frame();
    EXPECT_NE(box->look().bkg, nullptr);
    ASSERT_NE(box->look().text, nullptr);
    box->look().getSkinData()->setText(nullptr, gui::skin::InteractiveStateReleased, 1);
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    EXPECT_EQ(box->look().text, nullptr);

    auto* const clear = new SkinBox("clear");
    clear->setSize(osg::Vec2i(40, 30));
    host.frame();
    EXPECT_EQ(clear->look().bkg, nullptr) << "all cells are transparent";
}

TEST(SkinDrawables, ALookThatIsWrittenShowsAtTheNextRedraw) {
    TestHost host(skins());
    auto* const box = new SkinBox("full");
    box->place(0, 0, 60, 30);
    box->setText(L"x");
    gui::skin::Data& data = *box->look().getSkinData();
    auto const released = gui::skin::InteractiveStateReleased;
    gui::Bkg::Info bkg = *data.getBkg(released, 1);
    gui::Text::Info text = *data.getText(released, 1);
    std::string shown;
    for (int round = 0; round < 3; ++round) {
        // The second write goes to the entry that the first one made.
        bkg.cellColors[gui::Bkg::CenterCenter].set(0.2f * float(round), 1, 0, 1);
        text.color.set(1, 0.2f * float(round), 1, 1);
        data.setBkg(&bkg, released, 1);
        data.setText(&text, released, 1);
        box->setDirty(gui::Widget::DirtySelf);
        host.frame();
        EXPECT_EQ(box->look().bkg->getColorsToDraw()[0], osg::Vec4f(0.2f * float(round), 1, 0, 1)) << round;
        EXPECT_EQ(box->look().text->getColor(), text.color) << round;
    }
    // What others than the skin have set is set back.
    box->look().bkg->setCellColors(qor::vector<osg::Vec4f>(9, osg::Vec4f(1, 1, 1, 1)));
    box->look().text->setColor(osg::Vec4f(0, 0, 0, 1));
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    EXPECT_EQ(box->look().bkg->getColorsToDraw()[0], bkg.cellColors[gui::Bkg::CenterCenter]);
    EXPECT_EQ(box->look().text->getColor(), text.color);
}

/// Both tell what was called.
class NotingData final : public gui::skin::Data {
public:
    NotingData(gui::skin::Skin* newOwner, std::string& calls) : Data(newOwner), calls_(calls) {}
    gui::skin::StateInfo* findStateInfo_(gui::skin::InteractiveState state, int inner) const override {
        calls_ += "find ";
        return Data::findStateInfo_(state, inner);
    }

private:
    std::string& calls_;
};

class NotingSkin final : public gui::skin::Skin {
public:
    NotingSkin(gui::Widget* owner, std::string& calls) : Skin(owner, true), calls_(calls) {}
    using Skin::redrawImage_;
    void redrawImage_(gui::skin::InteractiveState state, int inner) override {
        calls_ += bkg ? "image " : "image without background ";
        Skin::redrawImage_(state, inner);
    }

private:
    std::string& calls_;
};

TEST(SkinDrawables, AStepOrASearchOfAClassOfItsOwnIsCalledInItsTurn) {
    struct Box final : gui::Container {
        explicit Box(bool notesData) {
            skin = notesData ? new gui::skin::Skin(this, false) : new NotingSkin(this, calls);
            if (notesData)
                skin->setSkinData(new NotingData(skin, calls), true);
            skin->load("full");
            setSize(osg::Vec2i(40, 30));
        }
        std::string calls;
    };
    TestHost host(skins());
    Box* const boxes[] = {new Box(false), new Box(true)};
    for (int round = 0; round < 2; ++round) {
        for (Box* box : boxes) {
            box->calls.clear();
            box->setDirty(gui::Widget::DirtySelf);
        }
        host.frame();
        EXPECT_EQ(boxes[0]->calls, "image ");
        EXPECT_EQ(boxes[1]->calls, "find find find ");
    }
}

/// Takes the picture's look away while it tells its text.
class BoxWithoutPicture : public SkinBox {
public:
    using SkinBox::SkinBox;
    qor::basic_string<wchar_t> const& getText() const override {
        if (skin)
            skin->getSkinData()->setImage(nullptr, gui::skin::InteractiveStateReleased, 1);
        return SkinBox::getText();
    }
};

TEST(SkinDrawables, ALookThatGoesWhileTheOthersAreLaidOutIsNotShown) {
    TestHost host(skins());
    auto* const box = new BoxWithoutPicture("full");
    box->place(0, 0, 60, 30);
    gui::Image::Info const picture;
    box->look().getSkinData()->setImage(&picture, gui::skin::InteractiveStateReleased, 1);
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    EXPECT_TRUE(box->look().text);
    EXPECT_FALSE(box->look().image);
}

TEST(SkinDrawables, AStateThatFollowsAnotherDrawsAsIfItHadBeenTheFirst) {
    host::addToolkitAssets();
    char const* const looks[] = {
        "center_center = '336699ff', left_top = 'ff0000ff', insets = {left = 2, top = 3}",
        "center_center = '00ff0080', left_top = 'ff0000ff', insets = {left = 2, top = 3}",
        "center_center = '00ff0080', left_top = '00000000', insets = {left = 2, top = 3}",
        "center_center = '00000000', left_top = 'ff0000ff', insets = {left = 2, top = 3}",
        "center_center = '336699ff', left_top = 'ff0000ff', insets = {left = 5, top = 3}",
        "center_center = '336699ff', left_top = 'ff0000ff', insets = {left = 2, top = 3}, file = 'atlas/parts.png'",
    };
    constexpr int count = std::size(looks);
    std::string states;
    for (char const* const look : looks)
        states += std::string("{bkg = {") + look + "}, " + textState + "}, ";
    TestHost host("Skin = {a = function() return {skinData = {states = {released = {" + states + "}}}} end}");
    auto const show = [&host](SkinBox& box, int look) {
        box.inner = look + 1;
        box.setDirty(gui::Widget::DirtySelf);
        host.frame();
        return host.traceDraw(box);
    };
    auto const makeBox = [] {
        auto* const box = new SkinBox("a");
        box->place(3, 4, 60, 30);
        box->setText(L"x");
        return box;
    };
    std::vector<std::string> alone;
    for (int look = 0; look < count; ++look)
        alone.push_back(show(*makeBox(), look));
    SkinBox& box = *makeBox();
    show(box, 1);
    show(box, 0);
    osg::Vec4f const* const colors = box.look().bkg->getColorsToDraw();
    EXPECT_EQ(colors[0], osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(colors[1], osg::Vec4f(0x33 / 255.0f, 0x66 / 255.0f, 0x99 / 255.0f, 1));
    for (int from = 0; from < count; ++from)
        for (int to = 0; to < count; ++to)
            for (int const look : {from, to})
                EXPECT_EQ(show(box, look), alone[std::size_t(look)]) << from << " to " << to;
}

TEST(SkinDrawables, LinesAreBroughtUpToDateBeforeTheyAreGiven) {
    TestHost host(skins());
    auto* const box = new SkinBox("wrapped");
    EXPECT_EQ(box->look().getTextLines().size(), 1u);
    box->setSize(osg::Vec2i(1, 100));
    box->setText(L"one two");
    auto const lines = box->look().getTextLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], L"two");
    EXPECT_FALSE(box->look().textChanged);
}

TEST(SkinFocus, TheFrameShowsForAFocusedWidgetInTheTabChain) {
    TestHost host(skins());
    auto* const box = new SkinBox("full");
    box->setSize(osg::Vec2i(40, 30));
    host.frame();
    std::string const without = host.traceDraw(*box);
    box->setFocused(true);
    host.frame();
    EXPECT_EQ(host.traceDraw(*box), without) << "tab order 0";
    box->setTabOrder(1);
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    host.trace().takeFrame();
    std::string const with = host.traceDraw(*box);
    EXPECT_EQ(host.trace().takeFrame().quads, 1u + 4u);
    EXPECT_EQ(host.traceMake(*box), with);
    box->look().getSkinData()->setFocusRectInsets({20, 2, 20, 2});
    host.frame();
    EXPECT_EQ(host.traceDraw(*box), without) << "nothing is left between the insets";
    box->look().getSkinData()->setFocusRectInsets({2, 2, 2, 2});
    host.frame();
    EXPECT_EQ(host.traceDraw(*box), with);
}

TEST(SkinClip, LiesInsideTheInsetsOnTheScreenAndInATarget) {
    TestHost host(skins());
    auto* const outer = new SkinBox("plain");
    outer->place(100, 50, 200, 100);
    auto* const box = outer->add(new SkinBox("clipped"));
    box->place(10, 20, 60, 40);
    host.frame();
    std::string const clips = tracedOperations(host, *outer, "> pushClipRect");
    EXPECT_EQ(countText(clips, "115 76 163 102"), 1u) << clips;
    outer->setDrawToTarget(true);
    host.update();
    host.trace().setContractWanted(true);
    std::string const lines = host.traceFrame();
    host.trace().setContractWanted(false);
    EXPECT_EQ(countText(lines, "15 26 63 52"), 1u) << lines;
    EXPECT_EQ(countText(lines, "115 76 163 102"), 0u) << lines;
    EXPECT_EQ(gui::GUI::get()->getTargetWidget(), nullptr);
}

TEST(SkinTarget, TargetsNestAndRecordingShowsWhatDrawingShows) {
    TestHost host(skins());
    auto* const outer = new SkinBox("plain");
    outer->place(100, 50, 200, 100);
    auto* const inner = outer->add(new SkinBox("plain"));
    inner->place(10, 10, 50, 50);
    auto* const after = outer->add(new SkinBox("full"));
    after->place(20, 30, 100, 60);
    after->setText(L"After the inner target");
    inner->add(new SkinBox("clipped"))->place(1, 2, 30, 30);
    outer->setOpacity(0.5f);
    inner->setOpacity(0.25f);
    host.frame();
    ASSERT_TRUE(outer->look().target && inner->look().target);
    EXPECT_EQ(host.traceMake(*outer), host.traceDraw(*outer));

    outer->setDirty(gui::Widget::DirtyTree);
    host.update();
    host.trace().setContractWanted(true);
    std::string const lines = host.traceFrame();
    host.trace().setContractWanted(false);
    EXPECT_NE(lines.find("20 30 120 90"), std::string::npos)
        << "behind a target of its own, clips are relative to the outer target again: " << lines;
    EXPECT_EQ(gui::GUI::get()->getTargetWidget(), nullptr);
}

TEST(SkinTarget, FollowsTheWidgetsSizeAndTheSettings) {
    TestHost host(skins());
    auto* const box = new SkinBox("plain");
    box->setSize(osg::Vec2i(40, 30));
    box->setDrawToTarget(true);
    host.frame();
    ASSERT_TRUE(box->look().target);
    auto const first = box->look().target;
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    EXPECT_EQ(box->look().target, first);
    box->setSize(osg::Vec2i(50, 30));
    host.frame();
    EXPECT_EQ(box->look().getTargetSize(), osg::Vec2i(50, 30));
    box->look().setTargetSize(osg::Vec2i(0, 5));
    host.frame();
    EXPECT_EQ(box->look().getTargetSize(), osg::Vec2i(50, 30)) << "half a size is none";
    box->look().setTargetSize(osg::Vec2i(128, 64));
    box->look().setTargetMsaa(4);
    host.frame();
    EXPECT_EQ(box->look().getTargetSize(), osg::Vec2i(128, 64));
    EXPECT_EQ(box->look().target->getMsaa(), 4);
    box->look().setTargetMsaa(-1);
    box->look().setTargetMips(0);
    host.frame();
    auto const settled = box->look().target;
    box->setDirty(gui::Widget::DirtySelf);
    host.frame();
    EXPECT_EQ(box->look().target, settled) << "settings that no target has ask for the nearest";
    box->setSize(osg::Vec2i(0, 30));
    box->look().setTargetSize(osg::Vec2i());
    host.frame();
    EXPECT_FALSE(box->look().target);
    box->setSize(osg::Vec2i(40, 30));
    host.frame();
    EXPECT_TRUE(box->look().target);
    box->setDrawToTarget(false);
    host.frame();
    EXPECT_FALSE(box->look().target);
}

TEST(SkinTarget, AZoomedWidgetIsLaidOutAtItsOwnSizeAndPutBack) {
    TestHost host(skins());
    auto* const box = new SkinBox("plain");
    box->setZoom(2.0f);
    box->setSize(osg::Vec2i(80, 60));
    host.frame();
    EXPECT_EQ(box->look().getTargetSize(), osg::Vec2i(40, 30));
    EXPECT_EQ(box->getSize(), osg::Vec2i(80, 60));
    EXPECT_EQ(box->getZoom(), 2.0f);
}

TEST(SkinTarget, AWidgetMayDieWhileItIsLaidOutForItsTarget) {
    TestHost host(skins());
    auto* const box = new SkinBox("plain");
    auto* const child = box->add(new SkinBox("plain"));
    child->setSize(osg::Vec2i(10, 10));
    box->setSize(osg::Vec2i(80, 60));
    box->setZoom(2.0f);
    host.update();
    box->addWidgetCallback(gui::getWidgetCallbackType(gui::Widget::sizeCallbackName),
                           std::make_shared<std::function<void()>>([box] { gui::Widget::destroy(box); }));
    gui::WidgetHandler* const handler = box->getHandler();
    host.frame();
    EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
    EXPECT_EQ(gui::GUI::get()->getTargetWidget(), nullptr);
}

/// Notes its name when it is parsed, directly or by a list that is played.
class ParsedBox final : public SkinBox {
public:
    ParsedBox(char name, std::string& visits) : SkinBox("plain"), name_(name), visits_(visits) {}

protected:
    void parse_() override {
        visits_ += name_;
        SkinBox::parse_();
    }
    void makeParse_(gui::GraphicCommands* commands) override {
        commands->parse([this] { visits_ += name_; });
        SkinBox::makeParse_(commands);
    }

private:
    char name_;
    std::string& visits_;
};

TEST(Parsing, VisitsWhatIsVisibleInTheOrderInWhichItIsDrawn) {
    TestHost host(skins());
    std::string visits;
    auto* const window = new gui::Window;
    auto* const first = new ParsedBox('a', visits);
    auto* const hidden = first->add(new ParsedBox('b', visits));
    hidden->add(new ParsedBox('c', visits));
    first->add(new ParsedBox('d', visits));
    window->insertWidget(first, -1);
    window->insertWidget(new ParsedBox('e', visits), -1);
    window->setVisible(true);
    host.frame();
    for (char const* expected : {"abcde", "ade"}) {
        visits.clear();
        gui::GUI::get()->parse();
        EXPECT_EQ(visits, expected);
        gui::GraphicCommands list;
        window->makeParse(&list);
        EXPECT_EQ(visits, expected) << "recording calls nothing";
        visits.clear();
        host::CommandPlayer::parse(list);
        EXPECT_EQ(visits, expected);
        host::CommandPlayer::release(list);
        hidden->setVisible(false);
    }
    window->setVisible(false);
    visits.clear();
    gui::GUI::get()->parse();
    EXPECT_EQ(visits, "");
}

TEST(SkinCost, AnUnchangedLookIsRedrawnAndRecordedWithoutAllocating) {
    TestHost host(skins());
    auto* const outer = new SkinBox("plain");
    outer->place(10, 10, 200, 100);
    auto* const box = outer->add(new SkinBox("full"));
    box->place(0, 0, 100, 50);
    box->setText(L"A text with\ta tab that is long enough for the heap");
    box->setTabOrder(1);
    box->setFocused(true);
    gui::GraphicCommands list;
    auto const run = [&] {
        box->look().redraw();
        box->look().doRedraw();
        outer->make(&list);
        host::CommandPlayer::release(list);
    };
    for (int i = 0; i < 3; ++i) {
        host.frame();
        run();
    }
    support::HeapScope const heap;
    run();
    EXPECT_EQ(heap.getAllocations(), 0u);

    outer->setDrawToTarget(true);
    for (int i = 0; i < 3; ++i) {
        host.frame();
        run();
    }
    support::HeapScope const targetHeap;
    outer->make(&list);
    EXPECT_EQ(targetHeap.getAllocations(), 0u);
    host::CommandPlayer::release(list);
}

// --- Constant tables ---

std::string constantSkins(bool constant) {
    return "SkinTablesConstant = " + std::string(constant ? "true" : "1") + R"(
        local a = {skinData = {params = {textLineHeight = 3}, states = {released = {{bkg = {file = 'a'}}}}}}
        function change(file) a.skinData.states.released[1].bkg.file = file; a.skinData.params.textLineHeight = 4 end
        Skin = {a = function() calls = (calls or 0) + 1; if calls == 2 then change('b') end; return a end})";
}

std::string fileOf(SkinBox& box) {
    gui::Bkg::Info const* const info = box.look().getSkinData()->getBkg(gui::skin::InteractiveStateReleased, 1);
    return info ? info->file.c_str() : "none";
}

TEST(SkinTables, AreReadOnceOnlyWhereTheFileSaysThatTheyAreConstant) {
    TestHost host(constantSkins(true));
    auto* const first = new SkinBox("a");
    auto* const second = new SkinBox("a");
    EXPECT_EQ(fileOf(*second), "a");
    EXPECT_EQ(second->look().getSkinData()->getTextLineHeight(), 3);

    gui::Bkg::Info changed;
    changed.file = "mine";
    second->look().getSkinData()->setBkg(&changed, gui::skin::InteractiveStateReleased, 1);
    EXPECT_EQ(fileOf(*second), "mine");
    EXPECT_EQ(fileOf(*first), "a") << "a write stays with its widget";
    EXPECT_EQ(fileOf(*new SkinBox("a")), "a");
    second->look().load("a");
    EXPECT_EQ(fileOf(*second), "b") << "merging into looks of one's own reads the table";
    second->look().getSkinData()->setUseEllipsis(true);
    second->look().load("a");
    EXPECT_EQ(second->look().getSkinData()->getTextLineHeight(), 4);
    EXPECT_TRUE(second->look().getSkinData()->getUseEllipsis());

    host.destroyGui();
    host.createGui(constantSkins(false));
    EXPECT_EQ(fileOf(*new SkinBox("a")), "a");
    EXPECT_EQ(fileOf(*new SkinBox("a")), "b");
}

TEST(SkinTables, AFailingSkinFunctionLeavesTheSkinAsItWas) {
    TestHost host(
        "Skin = {bad = function() error('oops') end, none = 5, text = function() return 'x' end,"
        "partly = function() return {skinData = {params = {textLineHeight = 9}, states = 7, skins = 7}} end}");
    support::LogCapture log;
    SkinBox* const box = new SkinBox("bad");
    EXPECT_EQ(log.count("Skin loading failed! Error: "), 1u) << log.dump();
    for (char const* name : {"none", "text", "missing"})
        box->look().load(name);
    EXPECT_FALSE(box->look().getSkinData()->getLoaded());
    box->look().load("partly");
    EXPECT_TRUE(box->look().getSkinData()->getLoaded());
    EXPECT_EQ(box->look().getSkinData()->getTextLineHeight(), 9);
}

}  // namespace
