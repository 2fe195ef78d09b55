#include "gui_lib/frame/Message.h"

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"

namespace gui {

Message::~Message() = default;

void MessageChar::execute() { GUI::get()->onCharMessage(key, modifiers); }

void MessageKeyDown::execute() {
    GUI& gui = *GUI::get();
    if (!gui.processKeyboardCallbacks(key, modifiers, true))
        gui.onKeyDownMessage(key, modifiers);
}

void MessageKeyUp::execute() {
    GUI& gui = *GUI::get();
    if (!gui.processKeyboardCallbacks(key, modifiers, false))
        gui.onKeyUpMessage(key, modifiers);
}

void MessageKillWindow::set(WindowBase* newWindow) {
    window = newWindow;
    handler = newWindow->getHandler();
}

void MessageKillWindow::execute() {
    GUI::get()->removeCustomWindow(window);
    // A window calls out as it dies, and a callback may drain the queue.
    if (WidgetHandler::get(handler) == window && !window->isBeingDestroyed_())
        delete window;
}

void MessageMouseDown::execute() { GUI::get()->onMouseDownMessage(button); }

void MessageMouseUp::execute() { GUI::get()->onMouseUpMessage(button); }

void MessageMouseMove::execute() { GUI::get()->onMouseMoveMessage(position); }

void MessageMouseWheel::execute() { GUI::get()->onMouseWheelMessage(delta); }

void MessageRawKeyInput::execute() { GUI::get()->onRawKeyInputMessage(info); }

void MessageRawMouseInput::execute() { GUI::get()->onRawMouseInputMessage(info); }

void MessageUserCallback::execute() {
    // An empty function raises std::bad_function_call; a missing one is treated alike.
    if (!function)
        throw std::bad_function_call();
    // Held for the call: the message may be used again meanwhile.
    auto const held = function;
    (*held)();
}

// --- Release: each class back to its own storage ---

namespace {

template <class T>
void releaseToPool(T* message) {
    GUI::get()->getMessagePool().storage<T>().release(message);
}

}  // namespace

void MessageChar::release() { releaseToPool(this); }

void MessageKeyDown::release() { releaseToPool(this); }

void MessageKeyUp::release() { releaseToPool(this); }

void MessageKillWindow::release() { releaseToPool(this); }

void MessageMouseDown::release() { releaseToPool(this); }

void MessageMouseUp::release() { releaseToPool(this); }

void MessageMouseMove::release() { releaseToPool(this); }

void MessageMouseWheel::release() { releaseToPool(this); }

void MessageRawKeyInput::release() { releaseToPool(this); }

void MessageRawMouseInput::release() { releaseToPool(this); }

void MessageUserCallback::release() { releaseToPool(this); }

}  // namespace gui
