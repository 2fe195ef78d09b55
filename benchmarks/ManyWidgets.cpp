#include <algorithm>
#include <random>

#include "benchmarks/BenchHost.h"
#include "benchmarks/Workload.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"

namespace {

using osg::Vec2i;

/// Overlapping windows, each with a grid of 20 buttons, and the mouse over them.
class ManyWindows final : public Workload {
public:
    explicit ManyWindows(int count) : host_(screen) {
        for (int i = 0; i < count; ++i) {
            auto* const window = new gui::Window;
            window->setText(L"Window");
            window->setPosition(randomPoint_());
            window->setSize(Vec2i(260, 220));
            for (int k = 0; k < 20; ++k) {
                auto* const button = new gui::Button;
                button->setText(L"Button");
                button->setPosition(Vec2i(k % 4 * 60, k / 4 * 30));
                button->setSize(Vec2i(56, 26));
                window->insertWidget(button, -1);
            }
            window->setVisible(true);
        }
        host_.settle();
        operations_ = {
            {"W5a", "mouse to a random point", [this] { repeat_(&ManyWindows::move_); }, {}, points},
            {"W5b",
             "mouse to a random point, press and release",
             [this] { repeat_(&ManyWindows::press_); },
             {},
             points},
        };
    }

    std::vector<Operation> const& getOperations() const override { return operations_; }

private:
    static constexpr unsigned width = 1900, height = 1000;
    inline static Vec2i const screen{int(width), int(height)};
    /// In one run, as they cost different amounts.
    static constexpr int points = 100;

    Vec2i randomPoint_() {
        unsigned const x = random_() % width;
        return Vec2i(static_cast<int>(x), static_cast<int>(random_() % height));
    }

    void repeat_(void (ManyWindows::*act)()) {
        for (int i = 0; i < points; ++i)
            (this->*act)();
    }

    void move_() {
        host_.moveMouse(randomPoint_());
        gui::GUI::get()->processMessages();
    }

    void press_() {
        host_.moveMouse(randomPoint_());
        host_.pressMouse();
        host_.releaseMouse();
        gui::GUI::get()->processMessages();
    }

    BenchHost host_;
    std::mt19937 random_{7};
    std::vector<Operation> operations_;
};

/// Panels of 100 buttons in one window, most of them outside of what the window shows.
class ManyWidgets final : public Workload {
public:
    explicit ManyWidgets(int count) : count_(count), host_(Vec2i(1200, 800)) {
        create_();
        host_.settle();
        auto const ready = [this] {
            if (buttons_.empty()) {
                create_();
                host_.settle();
            }
        };
        operations_ = {
            {"W5c", "create, per widget", [this] { create_(); }, [this] { destroyWindow_(); }, count_},
            {"W5d", "mark all dirty, per widget", [this] { mark_(); }, [this, ready] { ready(), host_.settle(); },
             count_},
            {"W5e", "mark all dirty, and the frame, per widget", [this] { mark_(), host_.frame(); }, ready, count_},
            {"W5f", "destroy in random order, per widget", [this] { destroyAll_(); },
             [this, ready] {
                 ready();
                 std::shuffle(buttons_.begin(), buttons_.end(), random_);
             },
             count_},
        };
    }

    std::vector<Operation> const& getOperations() const override { return operations_; }

private:
    void create_() {
        destroyWindow_();
        buttons_.reserve(count_);
        window_ = new gui::Window;
        window_->setSize(Vec2i(1100, 700));
        for (int first = 0; first < count_; first += 100) {
            auto* const panel = new gui::Panel;
            panel->setPosition(Vec2i(first / 100 % 10 * 110, first / 1000 * 340));
            panel->setSize(Vec2i(100, 320));
            for (int i = 0; i < 100; ++i) {
                auto* const button = new gui::Button;
                button->setText(L"Button");
                button->setPosition(Vec2i(i % 4 * 24, i / 4 * 12));
                button->setSize(Vec2i(22, 11));
                panel->insertWidget(button, -1);
                buttons_.push_back(button);
            }
            window_->insertWidget(panel, -1);
        }
        window_->setVisible(true);
    }

    void destroyWindow_() {
        buttons_.clear();
        if (!window_)
            return;
        window_->kill();
        window_ = nullptr;
        gui::GUI::get()->processMessages();
    }

    void mark_() {
        for (gui::Button* button : buttons_)
            button->setDirty(gui::Widget::DirtySelf);
    }

    void destroyAll_() {
        for (gui::Button* button : buttons_)
            gui::Widget::destroy(button);
        buttons_.clear();
    }

    int count_;
    BenchHost host_;
    gui::Window* window_ = nullptr;
    std::vector<gui::Button*> buttons_;
    std::mt19937 random_{11};
    std::vector<Operation> operations_;
};

}  // namespace

std::unique_ptr<Workload> makeManyWindows(int size) { return std::make_unique<ManyWindows>(size); }
std::unique_ptr<Workload> makeManyWidgets(int size) { return std::make_unique<ManyWidgets>(size); }
