#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "examples/gallery/Gallery.h"
#include "gui_lib/base/textutil.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/RandomObject.h"
#include "platform/qor/Utf8.h"
#include "platform/trace/vtxTraceLog.h"
#include "testkit/Recorder.h"
#include "testkit/RecordingText.h"
#include "testkit/Replay.h"
#include "testkit/TreeDump.h"
#include "tests/support/Attach.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Soak.h"

namespace {

using host::HeadlessApplication;
using testkit::Recorder;
using testkit::Replay;

std::string getPath(char const* name) {
    return (std::filesystem::temp_directory_path() / (std::to_string(getpid()) + "-" + name)).string();
}

std::string readFile(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

void writeFile(std::string const& path, std::string const& text) { std::ofstream(path, std::ios::binary) << text; }

/// A file that goes with the test.
struct File {
    explicit File(char const* name) : path(getPath(name)) {}
    ~File() { std::filesystem::remove(path); }
    std::string path;
};

/// A program that notes all that a host can tell it, in every frame; its button blocks it in a modal window.
class Program : public gui::GUI::MouseListener {
public:
    explicit Program(HeadlessApplication& application) : application_(application) {
        application_.addUpdateCallback(std::make_shared<std::function<void()>>([this] { look_(); }));
        application_.setOnQuitCallback([this] { note_("quit"); });
        application_.setOnActivateCallback([this](bool active) { note_(active ? "on" : "off"); });
        gui::GUI::get()->addMouseListener(this);
        window_ = new gui::Window;
        window_->setPosition({20, 20});
        window_->setSize({300, 200});
        button_ = addButton_(*window_, [this] { block_(); });
        button_->setTooltipText(L"It blocks.");
        window_->setVisible(true);
    }

    ~Program() override { gui::GUI::get()->removeMouseListener(this); }

    // MouseListener:
    void onMouseWheel(int, int, int delta) override { note_("wheel " + std::to_string(delta)); }

    std::string history;
    int blocked = 0;

private:
    static gui::Button* addButton_(gui::WindowBase& window, std::function<void()> pressed) {
        auto* const button = new gui::Button;
        button->setText(L"Press");
        button->setSize({160, 80});
        support::onEvent(*button, gui::Widget::changeCallbackName, std::move(pressed));
        window.insertWidget(button, -1);
        return button;
    }
    void note_(std::string const& what) { history += what + "\n"; }
    void look_() {
        osg::Vec2i cursor;
        application_.getCursorScreenPosition(cursor);
        char line[200];
        std::snprintf(line, sizeof(line), "%a %d %d %a %dx%d %g %d %d", application_.getTime(), cursor.x(), cursor.y(),
                      double(random_.get()), application_.getWidth(), application_.getHeight(),
                      double(application_.getScale()), application_.getMouseButtonDown(1),
                      application_.getKeyDown(gui::KeyLeftShift));
        note_(line);
        for (int i = 0; i < 2 && application_.getKeyDown(gui::KeyLeftShift); ++i) {
            note_(qor::wchar_to_utf8(textutil::getTextFromClipboard()).c_str());
            textutil::copyTextToClipboard(L"of the program");
        }
    }
    void block_() {
        gui::ModalWindow modal(false);
        modal.setPosition({60, 40});
        modal.setSize({220, 160});
        addButton_(modal, [&modal] { modal.setVisible(false); });
        ++blocked;
        // Input of the program's own, which no recording may double.
        application_.pushMouseWheel(1);
        modal.setVisible(true);
        note_("free at " + std::to_string(application_.getTime()));
    }

    HeadlessApplication& application_;
    RandomObject random_;
    gui::Window* window_;
    gui::Button* button_;
};

/// What a display does: uneven time, a cursor that may be elsewhere, and random input, in nested frames too.
class Display {
public:
    explicit Display(HeadlessApplication& application) : application_(application) {
        application_.setInputSource([this] { act_(); });
    }

private:
    int pick_(int count) { return int(engine_() % unsigned(count)); }
    void act_() {
        time_ += 0.001 + 0.1 * double(engine_()) / double(engine_.max());
        application_.setTime(time_);
        application_.setFrameTime(0.01 * pick_(3));
        qor::wstring text = L"clip \"board\"\n\\ \U0001F600 ";
        application_.setClipboardText(text += wchar_t(L'a' + pick_(26)));
        for (int i = pick_(4); i > 0; --i)
            push_();
        if (pick_(6) == 0)
            application_.setCursorPosition({-pick_(50), 7});
    }
    void push_() {
        auto const key = pick_(2) ? gui::KeyLeftShift : gui::KeySpace;
        switch (pick_(16)) {
            case 0:
                application_.pushMouseWheel(pick_(5) - 2);
                break;
            case 1:
                application_.pushKey(key, pick_(4), pick_(2));
                break;
            case 2:
                application_.pushChar(key, pick_(0x11000));
                break;
            case 3:
                application_.pushRawKey({1, 2, 3, true, false});
                break;
            case 4:
                application_.pushRawMouse({1, 2, 3, 4, 5, true, 7});
                break;
            case 5:
                application_.releaseAllInput();
                break;
            case 6:
                application_.push({host::HostInput::Resize, {400 + pick_(300), 300 + pick_(200)}, 1.0f});
                break;
            case 7:
                application_.setScale(1.0f + 0.1f * float(pick_(3)));
                break;
            case 8:
                application_.pushActivate(pick_(2));
                break;
            case 9:
                application_.pushQuit();
                break;
            case 10:
            case 11:
                application_.pushMouseMove(40 + pick_(200), 60 + pick_(120));
                break;
            default:
                application_.pushMouseButton(1, !application_.getMouseButtonDown(1));
                break;
        }
    }

    HeadlessApplication& application_;
    std::mt19937 engine_{7};
    double time_ = 1.0;
};

/// What a session leaves behind.
struct Outcome {
    std::string history;
    std::string trace;
    /// The file as a crash would leave it.
    std::string file;
    int blocked = 0;
    Replay::Result result = Replay::Result::Different;
    std::string report;
};

Outcome record(std::string const& path, int frames) {
    host::addToolkitAssets();
    auto* const application = new HeadlessApplication(HeadlessApplication::BackEnd::Trace);
    Outcome outcome;
    {
        Recorder recorder(*application, path, "of the test", 11);
        host::HostOptions options;
        options.size = {500, 400};
        EXPECT_TRUE(application->start(options));
        Program program(*application);
        Display const display(*application);
        application->runFrames(frames);
        outcome = {
            program.history, application->getTraceLog()->getText().c_str(), readFile(path), program.blocked, {}, {}};
        EXPECT_TRUE(recorder.finish());
        application->setInputSource({});
        application->resetCallbacks();
    }
    gui::Application::destroy();
    return outcome;
}

Outcome replay(std::string const& path, bool systemFonts = false) {
    host::addToolkitAssets();
    auto replay = std::make_unique<Replay>(path);
    if (!replay->getPlayable())
        return {};
    auto* const application = new HeadlessApplication(HeadlessApplication::BackEnd::Trace);
    Outcome outcome;
    {
        replay->attach(*application);
        EXPECT_EQ(application->getSystemFontsUsed(), systemFonts);
        EXPECT_TRUE(application->start(replay->getOptions()));
        Program program(*application);
        Replay::Result const result = replay->play();
        outcome = {program.history,    application->getTraceLog()->getText().c_str(), {}, program.blocked, result,
                   replay->getReport()};
        application->resetCallbacks();
    }
    replay.reset();
    gui::Application::destroy();
    return outcome;
}

TEST(Recording, ReplaysWhatTheProgramLearnedInEachFrameAndWhatItDrew) {
    File const file("random.rec");
    Outcome const recorded = record(file.path, support::byEffort(400, 1000, 3000));
    EXPECT_GT(recorded.blocked, 3);
    EXPECT_NE(recorded.history.find("free"), std::string::npos);
    EXPECT_NE(recorded.history.find("\"board\""), std::string::npos);
    Outcome const played = replay(file.path);
    EXPECT_EQ(played.result, Replay::Result::Same) << played.report;
    EXPECT_TRUE(played.history == recorded.history);
    EXPECT_TRUE(played.trace == recorded.trace);
}

TEST(Recording, HoldsTheFrameInWhichTheProgramCrashed) {
    File const file("crash.rec");
    Outcome const recorded = record(file.path, 60);
    writeFile(file.path, recorded.file);
    support::LogCapture log;
    Outcome const played = replay(file.path);
    EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
    EXPECT_TRUE(log.contains(file.path)) << log.dump();
    EXPECT_EQ(played.result, Replay::Result::CutOff) << played.report;
    EXPECT_TRUE(played.history == recorded.history);
}

TEST(Recording, ReplaysASessionInTheGallery) {
    File const file("gallery.rec");
    host::addToolkitAssets();
    Options options;
    options.size = {1000, 700};
    auto* application = new HeadlessApplication(HeadlessApplication::BackEnd::Trace);
    std::string trace;
    unsigned frames = 0;
    {
        Recorder recorder(*application, file.path, "");
        host::HostOptions hostOptions;
        hostOptions.size = options.size;
        ASSERT_TRUE(application->start(hostOptions));
        Gallery const gallery(*application, options);
        // Of the last frames only: all of them fill the memory.
        application->getTraceLog()->setRecording(false);
        application->runFrames(5);
        std::mt19937 engine(3);
        for (int i = 0; i < 60; ++i) {
            application->pushMouseMove(int(engine() % 1000), int(engine() % 700));
            application->runFrames(i % 20 == 0 ? 50 : 2);
            application->pushMouseButton(1, i % 2 == 0);
            application->pushKey(gui::KeyTab, 0, i % 3 == 0);
        }
        application->getTraceLog()->setRecording(true);
        frames = application->getFrameCount();
        application->runFrames(3);
        trace = application->getTraceLog()->getText().c_str();
        EXPECT_TRUE(recorder.finish());
    }
    gui::Application::destroy();

    auto played = std::make_unique<Replay>(file.path);
    application = new HeadlessApplication(HeadlessApplication::BackEnd::Trace);
    played->attach(*application);
    ASSERT_TRUE(application->start(played->getOptions()));
    {
        Gallery const gallery(*application, options);
        do
            application->getTraceLog()->setRecording(application->getFrameCount() >= frames);
        while (played->runFrame());
        EXPECT_EQ(played->compare(), Replay::Result::Same) << played->getReport();
        EXPECT_TRUE(trace == application->getTraceLog()->getText().c_str());
    }
    played.reset();
    gui::Application::destroy();
}

TEST(Recording, SaysWhereAReplayWentAnotherWay) {
    File const file("other.rec");
    record(file.path, 100);
    std::string text = readFile(file.path);
    text.replace(text.rfind("| "), 2, "| x");
    writeFile(file.path, text);
    Outcome const changed = replay(file.path);
    EXPECT_EQ(changed.result, Replay::Result::Different);
    EXPECT_NE(changed.report.find("differs:\n  recorded x"), std::string::npos) << changed.report;
}

TEST(Recording, WritesEveryLineSoThatItReadsBackTheSame) {
    File const file("lines.rec");
    testkit::RecordingHeader header;
    header.program = "with \"quotes\", a \\, a # and\na line";
    header.skin = "skins/dark.lua";
    header.size = {640, 480};
    header.scale = 1.1f;
    header.seed = std::numeric_limits<std::uint64_t>::max();
    header.systemFonts = true;
    std::string text = writeRecordingHeader(header);
    testkit::RecordingLine line;
    int const extremes[] = {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
    for (int kind = 0; kind <= host::HostInput::Quit; ++kind) {
        line.input = {host::HostInput::Kind(kind), {}, 0.7f};
        for (std::size_t i = 0; i < 7; ++i)
            line.input.values[i] = kind == host::HostInput::Resize ? 300 : extremes[i % 4];
        text += writeRecordingLine(line);
    }
    line.kind = testkit::RecordingLine::Frame;
    line.time = 0.1 + 0.2;
    line.step = 1e-300;
    text += writeRecordingLine(line);
    line.kind = testkit::RecordingLine::Clipboard;
    line.text = qor::wstring(L"\0\n\r\t\x7f \" \\ # \u00e9 \U0001F600", 15);
    text += writeRecordingLine(line) + testkit::writeRecordingTree("a\n  b\n");
    writeFile(file.path, text);

    testkit::Recording recording;
    EXPECT_EQ(readRecording(file.path, recording), "");
    EXPECT_EQ(recording.tree, "a\n  b\n");
    std::string again = writeRecordingHeader(recording.header);
    for (testkit::RecordingLine const& read : recording.lines)
        again += writeRecordingLine(read);
    EXPECT_EQ(again + testkit::writeRecordingTree(recording.tree), text);
    EXPECT_EQ(recording.lines.back().text, line.text);
    EXPECT_EQ(recording.lines[recording.lines.size() - 2].time, line.time);
}

TEST(Recording, PlaysABadFileUpToWhereItIsBadWithOneLine) {
    constexpr char const* head = "Vorlex recording 1\nskin \"skins/dark.lua\"\nsize 300 200 1\nframe 1 0.1\n";
    struct Case {
        char const* text;
        char const* expected;
        int frames;
    };
    std::string const good = head;
    File const file("bad.rec");
    Case const cases[] = {{"", ":0: ", 0},
                          {"\n", ":1: ", 0},
                          {"Vorlex recording 1\nseed 5\n", ":0: ", 0},
                          {"Vorlex recording 2\n", ":1: ", 0},
                          {"Vorlex recording 1\nframe 1 0.1\n", ":2: No line", 0},
                          {"Vorlex recording 1\nsize 300 0 1\nframe 1 0.1\n", ":2: ", 0},
                          {"Vorlex recording 1\nsize 300 200 nan\nframe 1 0.1\n", ":2: ", 0},
                          {"+move 1\nframe 2 0.1\n", ":5: ", 1},
                          {"+move 1 99999999999\nframe 2 0.1\n", ":5: ", 1},
                          {"+move 1 2 3\nframe 2 0.1\n", ":5: ", 1},
                          {"+frame nan\n", ":5: ", 1},
                          {"+frame 2 inf\n", ":5: ", 1},
                          {"+resize 2000000000 2000000000 1\nframe 2 0.1\n", ":5: ", 1},
                          {"+clipboard \"x\\\n", ":5: ", 1},
                          {"+clipboard \"\\x1\"\n", ":5: ", 1},
                          {"+nonsense\n", ":5: ", 1},
                          {"+move 1 2 # so\n\nframe 2 0.1\nmove 1", ":8: ", 2},
                          {"+frame 2 0.1\nframe 3", ":6: ", 2},
                          {"+tree\n| a\nframe 2 0.1\n", ":7: ", 1}};
    for (Case const& bad : cases) {
        std::filesystem::remove(file.path);
        if (*bad.text)
            writeFile(file.path, *bad.text == '+' ? good + (bad.text + 1) : std::string(bad.text));
        support::LogCapture log;
        Outcome const played = replay(file.path);
        EXPECT_EQ(log.getLines().size(), 1u) << bad.text << log.dump();
        EXPECT_TRUE(log.contains(file.path + bad.expected)) << bad.text << log.dump();
        EXPECT_EQ(played.report.find(std::to_string(bad.frames) + " of"), bad.frames > 0 ? 0 : std::string::npos)
            << bad.text << played.report;
    }
}

TEST(Recording, SurvivesDamagedFiles) {
    File const file("damaged.rec");
    record(file.path, 40);
    std::string const good = readFile(file.path);
    std::mt19937 engine(5);
    constexpr std::string_view pieces[] = {"frame ", "\n",     "\"",    "99999999999", "-1",
                                           "\\x",    "tree\n", "end\n", "e9",          "."};
    for (int round = 0; round < support::byEffort(150, 1000, 5000); ++round) {
        std::string text = good;
        for (int i = 0; i < 3; ++i) {
            std::size_t const place = engine() % text.size();
            if (engine() % 2)
                text[place] = char(engine());
            else
                text.insert(place, pieces[engine() % std::size(pieces)]);
        }
        writeFile(file.path, text);
        support::LogCapture log;
        testkit::Recording recording;
        readRecording(file.path, recording);
        if (round % 10 == 0 && recording.header.skin == "skins/dark.lua")
            replay(file.path, recording.header.systemFonts);
    }
}

}  // namespace
