// What Monkey does from inside callbacks.

#include <algorithm>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "tests/support/MonkeyParts.h"

namespace support {

namespace {

using gui::Widget;
using gui::WidgetHandler;
using Kind = MonkeyKind;
using Verb = MonkeyVerb;

constexpr int deepestAct = 4;

constexpr std::array<char const*, monkeyKindCount> kindNames = {"mouse move",
                                                                "mouse down",
                                                                "mouse double down",
                                                                "mouse up",
                                                                "mouse released",
                                                                "mouse enter",
                                                                "mouse leave",
                                                                "wheel",
                                                                "key down",
                                                                "char",
                                                                "key up",
                                                                "change",
                                                                "focus",
                                                                "position",
                                                                "size",
                                                                "window close",
                                                                "tab show",
                                                                "tab hide",
                                                                "thumb pressed",
                                                                "thumb released",
                                                                "pane change",
                                                                "redraw",
                                                                "do redraw",
                                                                "hot key",
                                                                "cursor",
                                                                "listener move",
                                                                "listener down",
                                                                "listener double",
                                                                "listener up",
                                                                "listener wheel",
                                                                "raw key",
                                                                "raw mouse",
                                                                "gui key",
                                                                "surface mouse",
                                                                "tick",
                                                                "app update",
                                                                "user message",
                                                                "screenshot",
                                                                "quit",
                                                                "activate"};

constexpr char const* skinNames[] = {"buttonSkin",    "staticSkin",       "windowSkin",      "checkBoxSkin",
                                     "panelSkin",     "tabGroupItemSkin", "noSuchSkin",      "switchButtonSkin",
                                     "tooltipSkin",   "modalWindowSkin",  "radioButtonSkin", "horzScrollBarSkin",
                                     "scrollPaneSkin"};

/// The last takes one away.
constexpr char const* effectNames[] = {"alpha", "showMsg", "appearQuads", "flickerQuads", nullptr};

Widget* findFocused() {
    Widget* focused = gui::WindowsManager::get(0)->getActiveWindow();
    while (auto* const container = dynamic_cast<gui::Container*>(focused)) {
        Widget* const inner = container->getFocusedWidget();
        if (!inner || inner == focused)
            break;
        focused = inner;
    }
    return focused;
}

Widget* findModal() {
    qor::vector<gui::WindowBase*> windows;
    gui::WindowsManager::get(0)->getShownWindows(windows);
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        if (dynamic_cast<gui::ModalWindow*>(*window))
            return *window;
    return nullptr;
}

}  // namespace

char const* getName(MonkeyKind kind) { return kindNames[std::size_t(kind)]; }

char const* getImpossible(MonkeyKind kind, MonkeyVerb verb) {
    bool const ofWindow = kind == Kind::HotKey || kind == Kind::Cursor;
    if (kind == Kind::SurfaceMouse && verb != Verb::LoadSkin && verb != Verb::PostInput)
        return "it answers where a point lies, amid whatever asks";
    if (kind >= Kind::ListenerMove && verb <= Verb::EndSibling)
        return "no widget calls it";
    if (ofWindow && (verb == Verb::EndParent || verb == Verb::EndSibling))
        return "a window that a manager knows has no parent";
    return nullptr;
}

// --- Choosing ---

bool Monkey::onCallback_(MonkeyKind kind, gui::WidgetHandler* self) {
    if (quiet_ || !fault_.empty())
        return false;
    ++callbackCount_;
    if (gap_ == 255 || acts_ >= MonkeyStep::actCount || actDepth_ >= deepestAct)
        return false;
    if (gap_ > 0) {
        --gap_;
        return false;
    }
    gap_ = pick_ % 16;
    Widget* const widget = WidgetHandler::get(self);
    Verb verb;
    if (!chooseVerb_(kind, widget, verb))
        return false;
    ++acts_;
    ++actCount_;
    ++matrix_[std::size_t(kind)][std::size_t(verb)];
    say_("    in %s of %s: %s", getName(kind), widget ? widget->getWidgetType() : "nobody", getName(verb));
    ++actDepth_;
    act_(verb, widget);
    --actDepth_;
    return pick_ % 4 == 0;
}

bool Monkey::chooseVerb_(MonkeyKind kind, gui::Widget* self, MonkeyVerb& verb) {
    uint8_t& chosen = bytes_[stepIndex_ * MonkeyStep::size + MonkeyStep::firstVerb + acts_];
    if (chosen != 0) {
        verb = Verb((chosen - 1) % monkeyVerbCount);
        return can_(verb, kind, self);
    }
    bool found = false;
    for (std::size_t i = 0; i < monkeyVerbCount; ++i) {
        Verb const other = Verb((i + pick_) % monkeyVerbCount);
        auto const& row = matrix_[std::size_t(kind)];
        if ((found && row[std::size_t(other)] >= row[std::size_t(verb)]) || !can_(other, kind, self))
            continue;
        verb = other;
        found = true;
    }
    if (found)
        chosen = uint8_t(verb) + 1;
    return found;
}

bool Monkey::can_(MonkeyVerb verb, MonkeyKind kind, gui::Widget* self) const {
    if (getImpossible(kind, verb))
        return false;
    if (verb == Verb::NestedFrame)
        return frameDepth_ < deepestFrame;
    // What is missing of these is made.
    return verb >= Verb::EndCaptured || findTarget_(verb, self);
}

gui::Widget* Monkey::findTarget_(MonkeyVerb verb, gui::Widget* self) const {
    Widget* const parent = self ? WidgetHandler::get(self->getParent()) : nullptr;
    switch (verb) {
        case Verb::EndSelf:
            return self;
        case Verb::EndParent:
            return parent;
        case Verb::EndSibling: {
            auto* const container = dynamic_cast<gui::Container*>(parent);
            int const count = container ? container->getWidgetCount() : 0;
            for (int i = 0; i < count; ++i)
                if (Widget* const other = container->getWidget((i + pick_) % count); other && other != self)
                    return other;
            return nullptr;
        }
        case Verb::EndFocused:
            return findFocused();
        case Verb::EndCaptured:
            return WidgetHandler::get(gui::WindowsManager::get(0)->getCapture());
        case Verb::EndModal:
            return findModal();
        default:
            return nullptr;
    }
}

// --- Acting ---

void Monkey::act_(MonkeyVerb verb, gui::Widget* self) {
    switch (verb) {
        case Verb::Move:
            return moveWidget_(self);
        case Verb::LoadSkin:
            return loadSkin_(self);
        case Verb::PostInput:
            return postInput_();
        case Verb::NestedFrame:
            ++frameDepth_;
            host_->runFrame();
            --frameDepth_;
            return;
        default:
            return end_(findTarget_(verb, self));
    }
}

void Monkey::end_(gui::Widget* widget) {
    auto* const window = dynamic_cast<gui::WindowBase*>(widget);
    if (window && pick_ % 3 == 0)
        window->kill();
    else if (window && pick_ % 3 == 1)
        gui::GUI::get()->killWindow(window);
    else
        Widget::destroy(widget);
}

void Monkey::moveWidget_(gui::Widget* self) {
    Widget* const moved = self && pick_ % 2 == 0 ? self : pickWidget_(pick_ * 7u);
    if (!moved)
        return;
    gui::AliveGuard const guard(moved);
    if (auto* const window = dynamic_cast<gui::WindowBase*>(moved)) {
        if (pick_ % 4 != 0)
            window->setVisible(false);
        if (guard.dead())
            return;
        window->setAsWidget(true);
    }
    for (unsigned i = 0; guard.alive() && i < live_.size(); ++i) {
        Widget* const target = pickWidget_(pick_ * 13u + i);
        int const index = int(pick_ % 5) - 1;
        if (auto* const panel = dynamic_cast<gui::Panel*>(target))
            return panel->insertWidget(moved, index);
        if (auto* const buddy = dynamic_cast<gui::BuddyWindow*>(target))
            return buddy->insertWidget(moved, index);
        auto* const window = dynamic_cast<gui::WindowBase*>(target);
        if (window && pick_ % 3 == 0)
            return window->insertOverlayWidget(moved, index);
        if (window && window->getView())
            return window->insertWidget(moved, index);
    }
}

void Monkey::loadSkin_(gui::Widget* self) {
    Widget* const widget = self ? self : pickWidget_(pick_ * 11u);
    if (pick_ / 16 == 2)
        return reloadSkin_();
    if (!widget || !widget->getWidgetSkin())
        return;
    if (pick_ / 16 % 4 != 3)
        return widget->getWidgetSkin()->load(skinNames[pick_ % std::size(skinNames)]);
    gui::skin::ShaderEffectParams params;
    params["duration"] = float(pick_ % 4) / 8.0f;
    params["quadSize"] = float(pick_ % 3) * 12.0f;
    for (char const* const key : {"easing", "easingAlpha", "easingSize"})
        params[key] = float(pick_ % 33);
    widget->setShaderEffect(effectNames[pick_ % std::size(effectNames)], &params);
}

void Monkey::reloadSkin_() {
    gui::GUI& gui = *gui::GUI::get();
    bool const possible = gui.getSkinReloadable();
    qor::string error;
    bool const loaded = gui.reloadSkin(pick_ % 2 ? "skins/light.lua" : "skins/dark.lua", &error);
    if (loaded != possible || error.empty() == !loaded)
        fail_(std::string("a skin that is ") + (loaded ? "" : "not ") + "loaded anew says: " + error.c_str());
}

void Monkey::postInput_() {
    int const x = pick_ * 5;
    int const y = pick_ * 3;
    switch (pick_ % 6) {
        case 0:
            return host_->pushMouseMove(x, y);
        case 1:
            return host_->pushMouseButton(1, true);
        case 2:
            return host_->pushMouseButton(1, false);
        case 3:
            return host_->pushMouseWheel(1);
        case 4:
            return host_->pushKey(gui::KeyTab, 0, true);
        default:
            return host_->pushChar(gui::KeyNone, 'x');
    }
}

}  // namespace support
