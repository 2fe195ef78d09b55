#pragma once

#include "gui_lib/base/Keyboard.h"
#include "gui_lib/base/RawInput.h"
#include "platform/qor/Api.h"

#include <osg/Vec2i>

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace gui {

class MessagePool;
class WidgetHandler;
class WindowBase;

/// One pooled input event that waits in GUI's queue and delivers itself at the drain.
class VORLEX_API Message {
public:
    virtual void execute() = 0;
    /// Gives the object back to the pool.
    virtual void release() = 0;
    virtual ~Message();

private:
    template <class T>
    friend class MessageStorage;
    std::size_t poolIndex_ = 0;
};

class MessageKey : public Message {
public:
    void set(KeyboardButton newKey, int newModifiers) {
        key = newKey;
        modifiers = newModifiers;
    }

protected:
    KeyboardButton key = KeyNone;
    int modifiers = 0;
};

class MessageMouseButton : public Message {
public:
    void set(MouseButton newButton) { button = newButton; }

protected:
    MouseButton button = MouseButtonNone;
};

class MessageChar final : public MessageKey {
public:
    void execute() override;
    void release() override;
};

class MessageKeyDown final : public MessageKey {
public:
    void execute() override;
    void release() override;
};

class MessageKeyUp final : public MessageKey {
public:
    void execute() override;
    void release() override;
};

/// Ends a window, unless something else has ended it by then.
class MessageKillWindow final : public Message {
public:
    void set(WindowBase* newWindow);
    void execute() override;
    void release() override;

private:
    WindowBase* window = nullptr;
    WidgetHandler* handler = nullptr;
};

class MessageMouseDown final : public MessageMouseButton {
public:
    void execute() override;
    void release() override;
};

class MessageMouseUp final : public MessageMouseButton {
public:
    void execute() override;
    void release() override;
};

class MessageMouseMove final : public Message {
public:
    void set(osg::Vec2i const& newPosition) { position = newPosition; }
    void execute() override;
    void release() override;

private:
    osg::Vec2i position;
};

class MessageMouseWheel final : public Message {
public:
    void set(int newDelta) { delta = newDelta; }
    void execute() override;
    void release() override;

private:
    int delta = 0;
};

class MessageRawKeyInput final : public Message {
public:
    void set(RawKeyInfo const& newInfo) { info = newInfo; }
    void execute() override;
    void release() override;

private:
    RawKeyInfo info;
};

class MessageRawMouseInput final : public Message {
public:
    void set(RawMouseInfo const& newInfo) { info = newInfo; }
    void execute() override;
    void release() override;

private:
    RawMouseInfo info;
};

/// Runs a function of the host at the drain. A released message holds its function until it is used again.
class MessageUserCallback final : public Message {
public:
    void set(std::shared_ptr<std::function<void()>> newFunction) { function = std::move(newFunction); }
    void execute() override;
    void release() override;

private:
    std::shared_ptr<std::function<void()>> function;
};

}  // namespace gui
