#include <algorithm>
#include <array>
#include <stdexcept>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "tests/models/RandomOps.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

using gui::GUI;

enum Kind { Char, KeyDown, KeyUp, Kill, Down, Up, Move, Wheel, RawKey, RawMouse, User, kindCount };

constexpr int windowSlots = 3;
/// Of each kind of listener and callback.
constexpr int callees = 3;
/// Stands for the window that the keys end in.
constexpr int keyWindow = callees;

/// A message with two numbers and what is to be done at its delivery, a decimal digit a step.
struct Post {
    int kind, a, b, code;
};

/// One end of the comparison: the toolkit or the model.
class Side {
public:
    virtual ~Side() = default;
    virtual void post(Post const& message) = 0;
    virtual void drain() = 0;
    virtual void destroyWindow(int slot) = 0;
    /// Adds or removes one listener or callback of each kind.
    virtual void toggle(int callee) = 0;

    void tryDrain() {
        try {
            drain();
        } catch (std::runtime_error const&) {
        }
    }

    std::vector<std::array<int, 4>> heard;

protected:
    void hear(int kind, int callee, int a, int b) { heard.push_back({kind, callee, a, b}); }
    /// One of those who hear a message does something meanwhile.
    void act(int callee, int a, int code) {
        if (callee != a % callees)
            return;
        int const rest = code / 10;
        switch (code % 10) {
            case 1:
                return post({User, a + 1, 0, rest});
            case 2:
                return post({KeyDown, a + 1, 0, rest});
            case 3:
                return drain();
            case 4:
                post({Move, a % 4, a % 3, 0});
                return drain();
            case 5:
                return post({Kill, a % windowSlots, 0, 0});
            case 6:
                return destroyWindow(a % windowSlots);
            case 7:
                throw std::runtime_error("a callback");
            case 8:
                return toggle((a + 1) % callees);
            case 9:
                return post({RawMouse, a + 1, 0, rest});
            default:
                return;
        }
    }
};

/// The queue and the pool as they should be: searched from the front.
class Model : public Side {
public:
    struct Item {
        Post post;
        int poolIndex, window;
    };

    int take(int kind) {
        auto& inUse = pool[kind];
        auto const found = std::find(inUse.begin(), inUse.end(), false);
        auto const index = found - inUse.begin();
        if (found == inUse.end())
            inUse.push_back(true);
        inUse[index] = true;
        return static_cast<int>(index);
    }
    void post(Post const& message) override {
        if (message.kind == Move && mouse == std::pair(message.a, message.b))
            return;
        int const window = message.kind == Kill ? windows[message.a] : none;
        if (message.kind != Kill || window != none)
            queue.push_back({message, take(message.kind), window});
    }
    void drain() override {
        std::vector<Item> const items = std::exchange(queue, {});
        for (std::size_t i = 0; i < items.size(); ++i) {
            try {
                deliver(items[i]);
            } catch (...) {
                for (; i < items.size(); ++i)
                    pool[items[i].post.kind][items[i].poolIndex] = false;
                throw;
            }
            pool[items[i].post.kind][items[i].poolIndex] = false;
        }
    }
    void destroyWindow(int slot) override {
        if (windows[slot] != none)
            hear(Kill, none, std::exchange(windows[slot], none), 0);
    }
    void toggle(int callee) override {
        if (std::erase(listed, callee) == 0)
            listed.push_back(callee);
    }

    std::vector<Item> queue;
    std::vector<bool> pool[kindCount];
    int windows[windowSlots] = {none, none, none};
    std::vector<int> listed{0, 1, 2};
    std::pair<int, int> mouse{0, 0};
    double time = 1.0;

private:
    template <class Call>
    void callListed(Call call) {
        for (int const callee : std::vector<int>(listed))
            if (std::find(listed.begin(), listed.end(), callee) != listed.end())
                call(callee);
    }
    void deliver(Item const& item) {
        int const kind = item.post.kind, a = item.post.a, b = item.post.b, code = item.post.code;
        bool twice = false;
        bool handled = false;
        switch (kind) {
            case Kill:
                for (int slot = 0; slot < windowSlots; ++slot)
                    if (windows[slot] == item.window)
                        destroyWindow(slot);
                return;
            case Char:
                return hear(kind, keyWindow, a, code);
            case User:
                hear(kind, 0, a, 0);
                return act(a % callees, a, code);
            case Move:
                mouse = {a, b};
                break;
            case Down:
                twice = a == lastButton_ && 0.3 > time - lastPress_;
                lastButton_ = a;
                lastPress_ = time;
                break;
            default:
                break;
        }
        callListed([&](int callee) {
            hear(kind, callee, a, kind == Down ? twice : b);
            if (kind == KeyDown || kind == KeyUp || kind == RawKey || kind == RawMouse)
                act(callee, a, code);
            handled |= callee == 2 && a % 2 == 1;
        });
        if ((kind == KeyDown || kind == KeyUp) && !handled)
            hear(kind, keyWindow, a, code);
    }

    int lastButton_ = none;
    double lastPress_ = 0.0;
};

constexpr int firstKey = 97;
constexpr int moveStep = 10;

class Toolkit : public Side {
public:
    Toolkit() {
        for (int callee = 0; callee < callees; ++callee) {
            listeners_.push_back(std::make_unique<Listener>(*this, callee));
            keyCallbacks_.push_back(
                std::make_shared<GUI::KeyboardCallback>([this, callee](int key, int code, bool down) {
                    hear(down ? KeyDown : KeyUp, callee, key - firstKey, 0);
                    act(callee, key - firstKey, code);
                    return callee == 2 && (key - firstKey) % 2 == 1;
                }));
            toggle(callee);
        }
        auto* const window = new gui::ModalWindow(true);
        window->setLockFlow(false);
        window->setPosition(osg::Vec2i(500, 500));
        window->setVisible(true);
        for (int kind : {KeyDown, Char, KeyUp})
            window->addKeyboardCallback(
                kind == KeyDown ? gui::KeyboardCallbackDown
                : kind == Char  ? gui::KeyboardCallbackChar
                                : gui::KeyboardCallbackUp,
                std::make_shared<std::function<bool(gui::KeyboardButton, int)>>([this, kind](int key, int code) {
                    hear(kind, keyWindow, key - firstKey, code);
                    return false;
                }));
    }

    void post(Post const& message) override {
        auto const& [kind, a, b, code] = message;
        auto const key = static_cast<gui::KeyboardButton>(firstKey + a);
        switch (kind) {
            case Char:
                return gui_.onChar(key, code);
            case KeyDown:
                return gui_.keyDown(key, code);
            case KeyUp:
                return gui_.keyUp(key, code);
            case Kill:
                return gui_.killWindow(static_cast<Doomed*>(gui::WidgetHandler::get(windows_[a])));
            case Down:
                return gui_.mouseDown(static_cast<gui::MouseButton>(a + 1));
            case Up:
                return gui_.mouseUp(static_cast<gui::MouseButton>(a + 1));
            case Move:
                return gui_.mouseMove(a * moveStep, b * moveStep);
            case Wheel:
                return gui_.mouseWheel(a);
            case RawKey:
                return gui_.rawKeyInput({.key = a, .modifiers = code});
            case RawMouse:
                return gui_.rawMouseInput({.deltaX = a, .button = code});
            default:
                gui_.addUserMessage(std::make_shared<std::function<void()>>([this, a = a, code = code] {
                    hear(User, 0, a, 0);
                    act(a % callees, a, code);
                }));
        }
    }
    void drain() override { gui_.processMessages(); }
    void destroyWindow(int slot) override { gui::Widget::destroy(gui::WidgetHandler::get(windows_[slot])); }
    void toggle(int callee) override {
        bool& listed = listed_[callee];
        Listener* const listener = listeners_[callee].get();
        listed = !listed;
        listed ? gui_.addKeyboardCallback(keyCallbacks_[callee]) : gui_.removeKeyboardCallback(keyCallbacks_[callee]);
        listed ? gui_.addMouseListener(listener) : gui_.removeMouseListener(listener);
        listed ? gui_.addRawKeyListener(listener) : gui_.removeRawKeyListener(listener);
        listed ? gui_.addRawMouseListener(listener) : gui_.removeRawMouseListener(listener);
    }
    void create(int slot, int number) { windows_[slot] = (new Doomed(*this, number))->getHandler(); }
    void setTime(double time) { host_.app().time = time; }

    /// In the order of Kind.
    std::array<std::size_t, kindCount> poolSizes() {
        using namespace gui;
        return sizesOf<MessageChar, MessageKeyDown, MessageKeyUp, MessageKillWindow, MessageMouseDown, MessageMouseUp,
                       MessageMouseMove, MessageMouseWheel, MessageRawKeyInput, MessageRawMouseInput,
                       MessageUserCallback>();
    }
    gui::MessageStorage<gui::MessageMouseUp>& ups() { return gui_.getMessagePool().storage<gui::MessageMouseUp>(); }

private:
    template <class... Messages>
    std::array<std::size_t, kindCount> sizesOf() {
        return {gui_.getMessagePool().storage<Messages>().size()...};
    }

    struct Doomed : gui::Window {
        Doomed(Toolkit& owner, int itsNumber) : toolkit(owner), number(itsNumber) {}
        ~Doomed() override { toolkit.hear(Kill, none, number, 0); }
        Toolkit& toolkit;
        int number;
    };
    struct Listener : GUI::MouseListener, GUI::RawKeyListener, GUI::RawMouseListener {
        Listener(Toolkit& owner, int itsNumber) : toolkit(owner), number(itsNumber) {}
        void onMouseMove(int x, int y) override { toolkit.hear(Move, number, x / moveStep, y / moveStep); }
        void onMouseDown(int, int, gui::MouseButton button) override { toolkit.hear(Down, number, button - 1, 0); }
        void onMouseDoubleClick(int, int, gui::MouseButton button) override {
            toolkit.hear(Down, number, button - 1, 1);
        }
        void onMouseUp(int, int, gui::MouseButton button) override { toolkit.hear(Up, number, button - 1, 0); }
        void onMouseWheel(int, int, int delta) override { toolkit.hear(Wheel, number, delta, 0); }
        void onRawKeyInput(gui::RawKeyInfo const& info) override {
            toolkit.hear(RawKey, number, info.key, 0);
            toolkit.act(number, info.key, info.modifiers);
        }
        void onRawMouseInput(gui::RawMouseInfo const& info) override {
            toolkit.hear(RawMouse, number, info.deltaX, 0);
            toolkit.act(number, info.deltaX, info.button);
        }
        Toolkit& toolkit;
        int number;
    };

    std::vector<std::unique_ptr<Listener>> listeners_;
    std::vector<std::shared_ptr<GUI::KeyboardCallback>> keyCallbacks_;
    bool listed_[callees] = {};
    gui::WidgetHandler* windows_[windowSlots] = {};
    support::TestHost host_;
    GUI& gui_ = *GUI::get();
};

class Messages : public Trial {
public:
    Messages() {
        auto const onBoth = [this](auto run) {
            return [this, run](int a, int b, int c) {
                run(static_cast<Side&>(toolkit_), a, b, c);
                run(static_cast<Side&>(model_), a, b, c);
            };
        };
        // The numbers of some kinds say where the mouse is or which window is meant.
        verbs = {
            {"post", 20, {kindCount, 12, 1000}, onBoth([](Side& side, int kind, int a, int code) {
                 bool const withCode = kind <= KeyUp || kind == RawKey || kind == RawMouse || kind == User;
                 side.post({kind,
                            kind == Kill   ? a % windowSlots
                            : kind == Down ? a % 2
                            : kind == Move ? a % 4
                                           : a,
                            kind == Move ? a % 3 : 0, withCode ? code : 0});
             })},
            {"drain", 4, {}, onBoth([](Side& side, int, int, int) { side.tryDrain(); })},
            {"create",
             4,
             {windowSlots},
             [this](int slot, int, int) {
                 if (model_.windows[slot] == none)
                     toolkit_.create(slot, model_.windows[slot] = made_++);
             }},
            {"destroy", 1, {windowSlots}, onBoth([](Side& side, int slot, int, int) { side.destroyWindow(slot); })},
            {"toggle", 3, {callees}, onBoth([](Side& side, int callee, int, int) { side.toggle(callee); })},
            {"wait", 2, {3}, [this](int tenths, int, int) { toolkit_.setTime(model_.time += 0.1 * tenths); }},
            {"probe", 1, {150}, [this](int count, int, int) { probe(count + 1); }},
        };
    }

    std::string compare(bool) override {
        if (toolkit_.heard != model_.heard)
            return "heard " + testing::PrintToString(toolkit_.heard) + ", not " + testing::PrintToString(model_.heard);
        toolkit_.heard.clear();
        model_.heard.clear();
        auto const sizes = toolkit_.poolSizes();
        for (int kind = 0; kind < kindCount; ++kind)
            if (sizes[kind] != model_.pool[kind].size())
                return "pool of kind " + std::to_string(kind) + ": " + std::to_string(sizes[kind]) + ", not " +
                       std::to_string(model_.pool[kind].size());
        return moved_ ? "the pool does not give its first free object" : "";
    }

private:
    /// Takes messages out of the pool and gives them back: always the first ones that are free.
    void probe(int count) {
        std::vector<std::pair<gui::Message*, int>> taken;
        for (int i = 0; i < count; ++i) {
            taken.emplace_back(toolkit_.ups().take(gui::MouseButtonMain), model_.take(Up));
            auto const index = static_cast<std::size_t>(taken.back().second);
            places_.resize(std::max(places_.size(), index + 1));
            moved_ |= places_[index] && places_[index] != taken.back().first;
            places_[index] = taken.back().first;
        }
        for (auto const& [message, index] : taken) {
            message->release();
            model_.pool[Up][index] = false;
        }
    }

    Model model_;
    Toolkit toolkit_;
    int made_ = 0;
    std::vector<gui::Message*> places_;
    bool moved_ = false;
};

TEST(Models, MessagesAreDeliveredAsAPlainQueueAndPoolSay) { playRandomly("messages", makeTrial<Messages>); }

}  // namespace

}  // namespace models
