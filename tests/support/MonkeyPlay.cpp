// What Monkey does to the host and to the widgets, outside of callbacks.

#include <algorithm>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "tests/support/MonkeyParts.h"
#include "tests/support/WidgetZoo.h"

namespace support {

namespace {

using gui::Widget;
using gui::WidgetHandler;
using Event = MonkeyEvent;

constexpr int keys[] = {gui::KeyTab,       gui::KeyTab,   gui::KeyEscape,     gui::KeyReturn, gui::KeyEnter,
                        gui::KeySpace,     gui::KeySpace, gui::KeyUp,         gui::KeyDown,   gui::KeyLeft,
                        gui::KeyRight,     gui::KeyHome,  gui::KeyEnd,        gui::KeyDelete, 'a',
                        gui::KeyBackspace, 'z',           gui::KeyPrintScreen};
constexpr int modifierKeys[] = {gui::KeyLeftShift, gui::KeyLeftCtrl, gui::KeyLeftAlt, gui::KeySpace};
constexpr int codePoints[] = {'a', ' ', 0, 8, 13, 27, 127, 0xe9, 0x3b1, 0xffff, 0x1f600, 0x10ffff, -1};

/// More widgets than this come from a run that only makes some.
constexpr std::size_t crowd = 600;

}  // namespace

gui::Widget* Monkey::pickWidget_(unsigned number) const {
    for (std::size_t i = 0; i < live_.size(); ++i)
        if (Widget* const widget = WidgetHandler::get(live_[(number + i) % live_.size()].handler))
            return widget;
    return nullptr;
}

void Monkey::playEvent_(MonkeyStep const& step) {
    if (live_.size() < settings_.fewestWidgets)
        makeAnimal_(step.pick);
    switch (step.event) {
        case Event::Move:
        case Event::Click:
        case Event::DoubleClick:
        case Event::Press:
        case Event::Release:
        case Event::Drag:
        case Event::Wheel:
            return playMouse_(step);
        case Event::Key:
        case Event::HoldKey:
        case Event::LetKeysGo:
        case Event::Char:
            return playKeys_(step);
        case Event::ShowOrHide:
        case Event::CloseWindow:
        case Event::MakeAnimal:
        case Event::MakeModal:
            return playWindows_(step);
        case Event::Change:
            if (step.c < 200)
                return changeWidget_(step, pickWidget_(step.a + step.b * 256u));
            return changeHost_(step, pickWidget_(step.a + step.b * 256u));
        default:
            return playHost_(step);
    }
}

// --- Mouse ---

void Monkey::moveOnto_(gui::Widget const& widget, unsigned place) {
    osg::Vec2i const size = widget.getSize();
    // Middle, corners, edges, and just outside.
    int const across[] = {size.x() / 2, 0, size.x(), 2, size.x() - 2, -1, size.x() + 1, size.x() / 3};
    int const down[] = {size.y() / 2, size.y() / 4, 0, size.y(), 2, size.y() - 2, -1, size.y() + 1};
    osg::Vec2i const point = widget.widgetToScreen({across[place & 7], down[(place >> 3) & 7]});
    osg::Vec2i const raw = gui::GUI::get()->convertToRawScreenPosition(point.x(), point.y());
    host_->pushMouseMove(raw.x(), raw.y());
}

void Monkey::moveMouse_(MonkeyStep const& step) {
    osg::Vec2i cursor;
    host_->getCursorScreenPosition(cursor);
    switch (step.pick % 8) {
        case 0:
            return host_->pushMouseMove(step.a * host_->getWidth() / 256 + step.c % 8,
                                        step.b * host_->getHeight() / 256 + step.c / 32);
        case 1:
            return host_->pushMouseMove(cursor.x() + step.a % 9 - 4, cursor.y() + step.b % 9 - 4);
        case 2:
            return host_->pushMouseMove(step.a * 24 - 2000, step.b * 24 - 2000);
        default:
            break;
    }
    Widget const* const widget = step.pick % 8 < 4 ? pickWidget_(step.a + step.b * 256u) : pickHit_(step);
    if (widget)
        moveOnto_(*widget, step.c < 128 ? 0 : step.c);
}

gui::Widget* Monkey::pickHit_(MonkeyStep const& step) {
    constexpr unsigned most = 60;
    gui::WindowsManager const& manager = *gui::WindowsManager::get(0);
    Widget* best = nullptr;
    unsigned* bestCount = nullptr;
    for (unsigned i = 0; i < most; ++i) {
        Widget* const widget = pickWidget_(step.a + step.b * 256u + i);
        if (!widget)
            break;
        osg::Vec2i const size = widget->getSize();
        unsigned& count = hitCounts_[widget->getWidgetType()];
        if ((bestCount && count >= *bestCount) ||
            manager.findWidgetAtScreenPoint(widget->widgetToScreen({size.x() / 2, size.y() / 2})) != widget)
            continue;
        best = widget;
        bestCount = &count;
    }
    if (bestCount)
        ++*bestCount;
    return best;
}

void Monkey::playMouse_(MonkeyStep const& step) {
    int const button = step.c % 5 == 4 ? 3 : step.c % 17 == 16 ? 2 : 1;
    switch (step.event) {
        case Event::Move:
            return moveMouse_(step);
        case Event::Press:
            return host_->pushMouseButton(button, true);
        case Event::Release:
            return host_->pushMouseButton(button, false);
        case Event::Wheel:
            return host_->pushMouseWheel(step.a % 2 ? 1 : -1 - step.b % 3);
        default:
            break;
    }
    moveMouse_(step);
    deliver_();
    if (step.event == Event::Click && step.b % 2 == 0)
        host_->passTime(0.5);
    host_->pushMouseButton(button, true);
    if (step.event == Event::Drag) {
        deliver_();
        host_->pushMouseMove(step.b * host_->getWidth() / 256, step.a * host_->getHeight() / 256);
        deliver_();
        if (step.c % 4 == 0)
            return;
    }
    host_->pushMouseButton(button, false);
    if (step.event != Event::DoubleClick)
        return;
    host_->pushMouseButton(button, true);
    host_->pushMouseButton(button, false);
}

// --- Keys ---

void Monkey::playKeys_(MonkeyStep const& step) {
    auto const key = gui::KeyboardButton(keys[step.a % std::size(keys)]);
    switch (step.event) {
        case Event::HoldKey:
            return host_->pushKey(gui::KeyboardButton(modifierKeys[step.b % std::size(modifierKeys)]), 0, true);
        case Event::LetKeysGo:
            for (int const held : modifierKeys)
                host_->pushKey(gui::KeyboardButton(held), 0, false);
            return;
        case Event::Char:
            return host_->pushChar(key, codePoints[step.b % std::size(codePoints)]);
        default:
            break;
    }
    host_->pushKey(key, step.b % 8, true);
    if (step.c % 4 == 0)
        host_->pushKey(key, step.b % 8, true);
    host_->pushKey(key, step.b % 8, false);
}

// --- Host ---

void Monkey::playHost_(MonkeyStep const& step) {
    switch (step.event) {
        case Event::Clock:
            return host_->passTime(step.a < 200 ? step.a / 100.0 : step.a * 10.0);
        case Event::Frame:
            ++frameDepth_;
            host_->runFrame();
            --frameDepth_;
            return;
        case Event::Resize:
            return host_->resize({200 + step.a * 8, 150 + step.b * 5});
        case Event::Rescale: {
            constexpr float scales[] = {1.0f, 1.0f, 1.25f, 1.5f, 2.0f, 0.5f};
            return host_->setScale(scales[step.a % std::size(scales)]);
        }
        case Event::LoseFocus:
            host_->releaseAllInput();
            host_->onActivate(false);
            return host_->onActivate(true);
        case Event::RawInput: {
            host_->pushRawKey({step.a, step.b, 0, step.c % 2 == 0, false});
            gui::RawMouseInfo info;
            info.x = step.a;
            return host_->pushRawMouse(info);
        }
        case Event::UserMessage:
            return gui::GUI::get()->addUserMessage(
                std::make_shared<std::function<void()>>(Hook{this, nullptr, MonkeyKind::UserMessage}));
        case Event::Quit:
            return host_->onQuit();
        default:
            return;
    }
}

// --- Windows ---

void Monkey::playWindows_(MonkeyStep const& step) {
    if (step.event == Event::MakeAnimal)
        return makeAnimal_(step.a);
    if (step.event == Event::MakeModal)
        return makeModal_(step);
    // What covers all others must not stay for long.
    gui::WindowBase* const active = gui::WindowsManager::get(0)->getActiveWindow();
    if (step.event == Event::CloseWindow && step.c % 4 != 0 && active && !dynamic_cast<gui::Window*>(active))
        return active->close();
    for (unsigned i = 0; i < live_.size(); ++i) {
        auto* const window = dynamic_cast<gui::WindowBase*>(pickWidget_(step.a + step.b * 256u + i));
        if (!window)
            continue;
        if (step.event == Event::CloseWindow)
            return step.c % 2 == 0 ? window->close() : window->kill();
        if (auto* const modal = dynamic_cast<gui::ModalWindow*>(window))
            modal->setLockFlow(false);
        // Mostly shown: what is hidden takes no input.
        return window->setVisible(!window->getVisible(false) || step.c % 4 != 0);
    }
}

void Monkey::makeAnimal_(unsigned number) {
    if (live_.size() > crowd)
        return;
    ZooAnimal const& animal = getZoo()[number % getZoo().size()];
    Widget* const widget = animal.make();
    osg::Vec2i const place(int(number % 11) * 90, int(number % 7) * 80);
    auto* const window = animal.window ? static_cast<gui::WindowBase*>(widget) : new gui::Window;
    window->setPosition(place);
    if (!animal.window) {
        window->setSize({300, 200});
        window->setResizable(number % 3 == 0);
        widget->setTabOrder(1);
        window->insertWidget(widget, -1);
        // Some classes come in groups.
        if (Widget* const other = animal.clones ? widget->clone() : nullptr) {
            other->setPosition({11, 90});
            window->insertWidget(other, -1);
        }
    }
    // From here on a callback may end it.
    attachToNew_();
    window->setVisible(true);
}

void Monkey::makeModal_(MonkeyStep const& step) {
    constexpr int deepestModal = 3;
    auto* const modal = new gui::ModalWindow(false);
    bool const locks = step.a % 2 == 0 && modalDepth_ < deepestModal && frameDepth_ == 0;
    modal->setLockFlow(locks);
    modal->setSize({240, 120});
    modal->setPosition({step.b * 3, step.c * 2});
    auto* const button = new gui::Button;
    button->setSize({80, 30});
    modal->insertWidget(button, -1);
    attachToNew_();
    gui::AliveGuard const guard(modal);
    modal->setVisible(true);
    // It is the maker's; one that has not locked lives on.
    if (locks && guard.alive())
        Widget::destroy(modal);
}

// --- Changes by the program ---

void Monkey::changeWidget_(MonkeyStep const& step, gui::Widget* widget) {
    if (!widget)
        return;
    auto* const modal = dynamic_cast<gui::ModalWindow*>(widget);
    switch (step.c % 14) {
        case 0:
            return widget->setEnabled(!widget->getEnabled() || step.pick % 4 != 0);
        case 1:
            return modal ? void() : widget->setVisible(!widget->getVisible(false));
        case 2:
            return widget->setFocused(step.pick % 4 != 0);
        case 3:
            return widget->setOpacity(float(step.pick % 5) / 4);
        case 4:
            return widget->setZoom(0.5f + float(step.pick % 4) / 2);
        case 5:
            return widget->setText(step.pick % 2 ? L"Other text" : L"");
        case 6:
            return widget->setSize({step.pick * 3 - 20, 200 - step.pick});
        case 7:
            return widget->setPosition({step.pick * 4 - 100, 600 - step.pick * 3});
        case 8:
            return widget->setTabOrder(step.pick % 4);
        case 9:
            return widget->setDrawToTarget(step.pick % 2 == 0);
        case 10:
            return widget->setTooltipText(step.pick % 2 ? L"A hint" : L"");
        case 11:
            return widget->setDirty(Widget::DirtyTree);
        case 12:
            return widget->updateSize();
        default:
            return gui::WindowsManager::get(widget->getRootSurfaceId())->captureMouse(widget->getHandler());
    }
}

void Monkey::changeHost_(MonkeyStep const& step, gui::Widget* widget) {
    gui::GUI& gui = *gui::GUI::get();
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    auto* const window = dynamic_cast<gui::WindowBase*>(widget);
    switch (step.c % 9) {
        case 0:
            return gui.setDebugDraw(!gui.getDebugDraw());
        case 1:
            return manager.forceTooltipText(step.a % 2 ? L"Forced" : L"", nullptr, step.b % 4);
        case 2:
            return manager.releaseMouse(nullptr);
        case 3:
            return window ? window->setHasCursor(step.pick % 4 != 0) : void();
        case 4:
            return window ? window->pushMouseCursor(36) : void();
        case 5:
            return window ? window->setNextWidgetFocused() : void();
        case 6:
            if (auto* const plain = dynamic_cast<gui::Window*>(widget))
                plain->setTransparentForUserInput(step.pick % 2 == 0);
            return;
        case 7:
            return reloadSkin_();
        default:
            if (auto* const plain = dynamic_cast<gui::Window*>(widget))
                plain->setZOrder(int(step.pick % 5) - 2);
            return;
    }
}

}  // namespace support
