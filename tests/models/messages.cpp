#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/windows/Window.h"
#include "tests/models/Widgets.h"

namespace models {

namespace {

using gui::GUI;

enum Kind { KindKey, KindRaw, KindUser, KindKill, KindMove, kindCount };

constexpr int windowSlots = 3;
/// Of each kind of listener and callback.
constexpr int callees = 3;

/// A message with a number and what is to be done at its delivery, a decimal digit a step.
struct Post {
    int kind, number, code;
};

/// What one of those who hear a message does meanwhile.
template <class SideType>
void act(SideType& side, int callee, int number, int code) {
    if (callee != number % callees || code == 0)
        return;
    int const action = code % 10;
    if (action <= KindKill)
        side.post({action, number + 1, code / 10});
    else if (action == 4)
        side.drain();
    else if (action == 5)
        side.post({KindMove, number, 0}), side.drain();
    else if (action == 6)
        side.destroyWindow(number % windowSlots);
    else if (action == 7)
        side.toggle((number + 1) % callees);
    else if (action == 8)
        throw std::runtime_error("a callback");
}

/// A plain queue, and a pool that grows only when all of a kind is in use.
class Model : public Side {
public:
    struct Item {
        Post post;
        int window;
    };

    void post(Post const& message) {
        auto const [kind, number, code] = message;
        int const window = windows[number % windowSlots];
        if ((kind == KindMove && number == mouse) || (kind == KindKill && window == none))
            return;
        queue.push_back({message, window});
        pool[kind] = std::max(pool[kind], ++used[kind]);
    }
    void drain() {
        std::vector<Item> const items = std::exchange(queue, {});
        std::size_t done = 0;
        try {
            while (done < items.size()) {
                deliver(items[done].post, items[done].window);
                --used[items[done++].post.kind];
            }
        } catch (...) {
            while (done < items.size())
                --used[items[done++].post.kind];
            throw;
        }
    }
    void create(int slot) {
        if (windows[slot] == none)
            windows[slot] = made++;
    }
    void destroyWindow(int slot) {
        if (windows[slot] != none)
            tell("ended", std::exchange(windows[slot], none));
    }
    void toggle(int callee) {
        if (std::erase(listed, callee) == 0)
            listed.push_back(callee);
    }
    void describe() {
        for (int const size : pool)
            tell("pool", size);
    }

private:
    void deliver(Post const& message, int window) {
        auto const [kind, number, code] = message;
        if (kind == KindKill) {
            for (int slot = 0; slot < windowSlots; ++slot)
                if (windows[slot] == window)
                    destroyWindow(slot);
            return;
        }
        if (kind == KindUser) {
            tell("user", number);
            return act(*this, number % callees, number, code);
        }
        if (kind == KindMove)
            mouse = number;
        for (int const callee : std::vector<int>(listed)) {
            if (std::find(listed.begin(), listed.end(), callee) == listed.end())
                continue;
            tell("heard", kind, callee, number);
            if (kind <= KindRaw)
                act(*this, callee, number, code);
        }
    }

    std::vector<Item> queue;
    int windows[windowSlots] = {none, none, none};
    std::vector<int> listed{0, 1, 2};
    int pool[kindCount] = {}, used[kindCount] = {}, mouse = 0, made = 0;
};

class Toolkit : public Side {
public:
    Toolkit() {
        for (int callee = 0; callee < callees; ++callee) {
            listeners_.push_back(std::make_unique<Listener>(*this, callee));
            keyCallbacks_.push_back(std::make_shared<GUI::KeyboardCallback>([this, callee](int key, int code, bool) {
                tell("heard", KindKey, callee, key - firstKey);
                act(*this, callee, key - firstKey, code);
                return false;
            }));
            toggle(callee);
        }
    }

    void post(Post const& message) {
        auto const [kind, number, code] = message;
        if (kind == KindKey)
            gui_.keyDown(static_cast<gui::KeyboardButton>(firstKey + number), code);
        else if (kind == KindRaw)
            gui_.rawKeyInput({.key = number, .modifiers = code});
        else if (kind == KindUser)
            gui_.addUserMessage(std::make_shared<std::function<void()>>([this, sent = message] {
                tell("user", sent.number);
                act(*this, sent.number % callees, sent.number, sent.code);
            }));
        else if (kind == KindKill)
            gui_.killWindow(static_cast<Doomed*>(gui::WidgetHandler::get(windows_[number % windowSlots])));
        else
            gui_.mouseMove(number, 0);
    }
    void drain() { gui_.processMessages(); }
    void create(int slot) {
        if (!gui::WidgetHandler::get(windows_[slot]))
            windows_[slot] = (new Doomed(*this))->getHandler();
    }
    void destroyWindow(int slot) { gui::Widget::destroy(gui::WidgetHandler::get(windows_[slot])); }
    void toggle(int callee) {
        bool const on = listed_[callee] = !listed_[callee];
        Listener* const listener = listeners_[callee].get();
        on ? gui_.addKeyboardCallback(keyCallbacks_[callee]) : gui_.removeKeyboardCallback(keyCallbacks_[callee]);
        on ? gui_.addMouseListener(listener) : gui_.removeMouseListener(listener);
        on ? gui_.addRawKeyListener(listener) : gui_.removeRawKeyListener(listener);
    }
    void describe() {
        using namespace gui;
        tellPools<MessageKeyDown, MessageRawKeyInput, MessageUserCallback, MessageKillWindow, MessageMouseMove>();
    }

private:
    struct Doomed : gui::Window {
        explicit Doomed(Toolkit& owner) : toolkit(owner), number(owner.made_++) {}
        ~Doomed() override { toolkit.tell("ended", number); }
        Toolkit& toolkit;
        int number;
    };
    struct Listener : GUI::MouseListener, GUI::RawKeyListener {
        Listener(Toolkit& owner, int itsNumber) : toolkit(owner), number(itsNumber) {}
        void onMouseMove(int x, int) override { toolkit.tell("heard", KindMove, number, x); }
        void onRawKeyInput(gui::RawKeyInfo const& info) override {
            toolkit.tell("heard", KindRaw, number, info.key);
            act(toolkit, number, info.key, info.modifiers);
        }
        Toolkit& toolkit;
        int number;
    };

    template <class... Messages>
    void tellPools() {
        (tell("pool", gui_.getMessagePool().storage<Messages>().size()), ...);
    }
    static constexpr int firstKey = 97;

    std::vector<std::unique_ptr<Listener>> listeners_;
    std::vector<std::shared_ptr<GUI::KeyboardCallback>> keyCallbacks_;
    bool listed_[callees] = {};
    int made_ = 0;
    gui::WidgetHandler* windows_[windowSlots] = {};
    support::TestHost host_;
    GUI& gui_ = *GUI::get();
};

class Messages : public Pair<Toolkit, Model> {
public:
    Messages() {
        add("post", 20, {kindCount, 12, 1000}, [](auto& side, int kind, int number, int code) {
            side.post({kind, number, code});
        });
        add("drain", 4, {}, [](auto& side, auto...) {
            try {
                side.drain();
            } catch (std::runtime_error const&) {
            }
        });
        add("create", 4, {windowSlots}, [](auto& side, int slot, auto...) { side.create(slot); });
        add("destroy", 1, {windowSlots}, [](auto& side, int slot, auto...) { side.destroyWindow(slot); });
        add("toggle", 3, {callees}, [](auto& side, int callee, auto...) { side.toggle(callee); });
        // The pool looks for free objects by 64.
        add("burst", 1, {kindCount, 12, 150}, [](auto& side, int kind, int number, int count) {
            for (int i = 0; i < count; ++i)
                side.post({kind, number, 0});
        });
    }
};

TEST(Models, MessagesAreDeliveredAsAPlainQueueAndPoolSay) { playRandomly<Messages>(); }

}  // namespace

}  // namespace models
