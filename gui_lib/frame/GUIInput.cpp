#include "gui_lib/base/Application.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/GUIScopes.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/windows/WindowBase.h"

#include <algorithm>
#include <utility>

namespace gui {

// --- Posting ---

template <class T, class... Payload>
void GUI::post_(Payload&&... payload) {
    Message* const message = messagePool->storage<T>().take(std::forward<Payload>(payload)...);
    if (queueCount < queue.size())
        queue[queueCount] = message;
    else
        queue.push_back(message);
    ++queueCount;
}

void GUI::mouseMove(int x, int y) {
    osg::Vec2i const position = convertFromRawScreenPosition(x, y);
    if (position != mousePosition)
        post_<MessageMouseMove>(position);
}

void GUI::mouseDown(MouseButton button) { post_<MessageMouseDown>(button); }

void GUI::mouseUp(MouseButton button) { post_<MessageMouseUp>(button); }

void GUI::mouseWheel(int delta) { post_<MessageMouseWheel>(delta); }

void GUI::keyDown(KeyboardButton key, int modifiers) { post_<MessageKeyDown>(key, modifiers); }

void GUI::keyUp(KeyboardButton key, int modifiers) {
    if (key == KeyPrintScreen && makeScreenShotCallback)
        makeScreenShotCallback(nullptr);
    post_<MessageKeyUp>(key, modifiers);
}

void GUI::onChar(KeyboardButton key, int codePoint) { post_<MessageChar>(key, codePoint); }

void GUI::rawKeyInput(RawKeyInfo const& info) { post_<MessageRawKeyInput>(info); }

void GUI::rawMouseInput(RawMouseInfo info) {
    osg::Vec2i const position = convertFromRawScreenPosition(info.x, info.y);
    info.x = position.x();
    info.y = position.y();
    post_<MessageRawMouseInput>(info);
}

void GUI::killWindow(WindowBase* window) {
    if (window)
        post_<MessageKillWindow>(window);
}

void GUI::addUserMessage(std::shared_ptr<std::function<void()>> function) {
    post_<MessageUserCallback>(std::move(function));
}

// --- Draining ---

namespace {

using MessageCopy = qor::small_vector<Message*, 32>;

/// Gives every message of a drain back to the pool, also those that an exception kept from being delivered.
class DrainScope {
public:
    explicit DrainScope(MessageCopy const& messages) : messages_(messages) {}
    ~DrainScope() {
        for (; next_ < messages_.size(); ++next_)
            messages_[next_]->release();
    }
    DrainScope(DrainScope const&) = delete;
    DrainScope& operator=(DrainScope const&) = delete;

    void run() {
        while (next_ < messages_.size()) {
            messages_[next_]->execute();
            messages_[next_++]->release();
        }
    }

private:
    MessageCopy const& messages_;
    std::size_t next_ = 0;
};

}  // namespace

void GUI::processMessages() {
    BusyScope const busy(*this);
    MessageCopy const messages(queue.begin(), queue.begin() + static_cast<std::ptrdiff_t>(queueCount));
    queueCount = 0;
    {
        DrainScope drain(messages);
        drain.run();
    }
    Widget::redrawAll();
}

// --- Delivery ---

namespace {

/// Calls every listener that is still in the list when its turn comes.
template <class Listener, class Call>
void callListeners(qor::vector<Listener*> const& listeners, Call call) {
    qor::small_vector<Listener*, 8> const copy(listeners.begin(), listeners.end());
    for (Listener* listener : copy)
        if (std::find(listeners.begin(), listeners.end(), listener) != listeners.end())
            call(*listener);
}

template <class Listener>
void addUnique(qor::vector<Listener*>& listeners, Listener* listener) {
    if (listener && std::find(listeners.begin(), listeners.end(), listener) == listeners.end())
        listeners.push_back(listener);
}

template <class Listener>
void removeOne(qor::vector<Listener*>& listeners, Listener* listener) {
    auto const found = std::find(listeners.begin(), listeners.end(), listener);
    if (found != listeners.end())
        listeners.erase(found);
}

}  // namespace

template <class Deliver>
bool GUI::deliverToSurfaces_(Deliver deliver) {
    // By index: a callback may make a surface.
    for (std::size_t i = 0; i < surfaces.size(); ++i)
        if (deliver(*surfaces[i].windowsManager, i))
            return true;
    return false;
}

void GUI::onMouseMoveMessage(osg::Vec2i const& position) {
    mousePosition = position;
    callListeners(mouseListeners,
                  [&position](MouseListener& listener) { listener.onMouseMove(position.x(), position.y()); });
    deliverToSurfaces_([this, &position](WindowsManager& manager, std::size_t index) {
        auto const function = surfaces[index].mouseFunc;
        return manager.onMouseMove((*function)(position.x(), position.y()));
    });
}

void GUI::onMouseDownMessage(MouseButton button) {
    double const now = Application::get()->getTime();
    bool const doubleClick = button == lastMouseButton && doubleClickTime > now - lastMouseDownTime;
    lastMouseDownTime = now;
    lastMouseButton = button;
    osg::Vec2i const position = mousePosition;
    callListeners(mouseListeners, [&](MouseListener& listener) {
        if (doubleClick)
            listener.onMouseDoubleClick(position.x(), position.y(), button);
        else
            listener.onMouseDown(position.x(), position.y(), button);
    });
    deliverToSurfaces_([&](WindowsManager& manager, std::size_t) { return manager.onMouseDown(button, doubleClick); });
}

void GUI::onMouseUpMessage(MouseButton button) {
    osg::Vec2i const position = mousePosition;
    callListeners(mouseListeners,
                  [&](MouseListener& listener) { listener.onMouseUp(position.x(), position.y(), button); });
    deliverToSurfaces_([button](WindowsManager& manager, std::size_t) { return manager.onMouseUp(button); });
}

void GUI::onMouseWheelMessage(int delta) {
    osg::Vec2i const position = mousePosition;
    callListeners(mouseListeners,
                  [&](MouseListener& listener) { listener.onMouseWheel(position.x(), position.y(), delta); });
    deliverToSurfaces_([delta](WindowsManager& manager, std::size_t) { return manager.onMouseWheel(delta); });
}

void GUI::onKeyDownMessage(KeyboardButton key, int modifiers) {
    deliverToSurfaces_([=](WindowsManager& manager, std::size_t) { return manager.onKeyDown(key, modifiers); });
}

void GUI::onKeyUpMessage(KeyboardButton key, int modifiers) {
    deliverToSurfaces_([=](WindowsManager& manager, std::size_t) { return manager.onKeyUp(key, modifiers); });
}

void GUI::onCharMessage(KeyboardButton key, int modifiers) {
    deliverToSurfaces_([=](WindowsManager& manager, std::size_t) { return manager.onChar(key, modifiers); });
}

void GUI::onRawKeyInputMessage(RawKeyInfo const& info) {
    callListeners(rawKeyListeners, [&info](RawKeyListener& listener) { listener.onRawKeyInput(info); });
}

void GUI::onRawMouseInputMessage(RawMouseInfo const& info) {
    callListeners(rawMouseListeners, [&info](RawMouseListener& listener) { listener.onRawMouseInput(info); });
}

// --- Listeners and keyboard callbacks ---

void GUI::addMouseListener(MouseListener* listener) { addUnique(mouseListeners, listener); }

void GUI::removeMouseListener(MouseListener* listener) { removeOne(mouseListeners, listener); }

void GUI::addRawKeyListener(RawKeyListener* listener) { addUnique(rawKeyListeners, listener); }

void GUI::removeRawKeyListener(RawKeyListener* listener) { removeOne(rawKeyListeners, listener); }

void GUI::addRawMouseListener(RawMouseListener* listener) { addUnique(rawMouseListeners, listener); }

void GUI::removeRawMouseListener(RawMouseListener* listener) { removeOne(rawMouseListeners, listener); }

void GUI::addKeyboardCallback(std::shared_ptr<KeyboardCallback> callback) {
    if (callback && std::find(keyboardCallbacks.begin(), keyboardCallbacks.end(), callback) == keyboardCallbacks.end())
        keyboardCallbacks.push_back(std::move(callback));
}

void GUI::removeKeyboardCallback(std::shared_ptr<KeyboardCallback> callback) {
    auto const found = std::find(keyboardCallbacks.begin(), keyboardCallbacks.end(), callback);
    if (found != keyboardCallbacks.end())
        keyboardCallbacks.erase(found);
}

bool GUI::processKeyboardCallbacks(KeyboardButton key, int modifiers, bool down) const {
    auto const copy = keyboardCallbacks;
    bool handled = false;
    for (auto const& callback : copy) {
        bool const stillAdded =
            std::find(keyboardCallbacks.begin(), keyboardCallbacks.end(), callback) != keyboardCallbacks.end();
        if (stillAdded && (*callback)(key, modifiers, down))
            handled = true;
    }
    return handled;
}

bool GUI::getHasMouseInputAtScreenPoint(int x, int y) const {
    return surfaces.front().windowsManager->getHasMouseInputAtScreenPoint(convertFromRawScreenPosition(x, y));
}

// --- The default listeners hear nothing ---

GUI::MouseListener::~MouseListener() = default;
void GUI::MouseListener::onMouseMove(int, int) {}
void GUI::MouseListener::onMouseDown(int, int, MouseButton) {}
void GUI::MouseListener::onMouseDoubleClick(int, int, MouseButton) {}
void GUI::MouseListener::onMouseUp(int, int, MouseButton) {}
void GUI::MouseListener::onMouseWheel(int, int, int) {}
GUI::RawKeyListener::~RawKeyListener() = default;
void GUI::RawKeyListener::onRawKeyInput(RawKeyInfo const&) {}
GUI::RawMouseListener::~RawMouseListener() = default;
void GUI::RawMouseListener::onRawMouseInput(RawMouseInfo const&) {}

}  // namespace gui
