#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/trace/vtxTraceLog.h"
#include "testkit/Driver.h"

/// A headless host of 800 x 600 units with a driver, and what its tests put into windows.
class DriverGround {
public:
    using BackEnd = host::HeadlessApplication::BackEnd;

    explicit DriverGround(float scale = 1.0f, BackEnd backEnd = BackEnd::Trace, osg::Vec2i const& size = {800, 600})
        : app(*new host::HeadlessApplication(backEnd)) {
        host::addToolkitAssets();
        host::HostOptions options;
        options.size = size;
        options.scale = scale;
        started = app.start(options);
        if (app.getTraceLog())
            app.getTraceLog()->setRecording(false);
        driver = std::make_unique<testkit::Driver>(app);
    }
    ~DriverGround() {
        driver.reset();
        gui::Application::destroy();
    }
    DriverGround(DriverGround const&) = delete;
    DriverGround& operator=(DriverGround const&) = delete;

    template <class Kind = gui::Window, class... Arguments>
    Kind& addWindow(wchar_t const* name, osg::Vec2i const& place, osg::Vec2i const& size, Arguments... arguments) {
        auto* const window = new Kind(arguments...);
        window->setName(name);
        window->setPosition(place);
        window->setSize(size);
        return *window;
    }
    template <class Kind = gui::Button, class Parent>
    Kind& addButton(Parent& parent, wchar_t const* name, osg::Vec2i const& place) {
        auto* const button = new Kind;
        button->setName(name);
        button->setText(name);
        button->setPosition(place);
        button->setSize({80, 24});
        parent.insertWidget(button, -1);
        return *button;
    }

    /// What the driver says when `action` fails; empty if it does not.
    static std::string reasonOf(std::function<void()> const& action) {
        try {
            action();
        } catch (testkit::DriverError const& error) {
            return error.what();
        }
        return {};
    }

    host::HeadlessApplication& app;
    std::unique_ptr<testkit::Driver> driver;
    bool started = false;
};

/// Runs when the button is clicked.
inline void onClick(gui::Widget& widget, std::function<void()> function) {
    widget.addWidgetCallback(gui::getWidgetCallbackType(gui::Widget::changeCallbackName),
                             std::make_shared<std::function<void()>>(std::move(function)));
}

/// Shows a piece of tall contents; the wheel moves them.
class ScrollBox final : public gui::Container {
public:
    explicit ScrollBox(int step) : step_(step) {}

    void insertWidget(gui::Widget* widget, int index) { insertWidget_(widget, index); }

    // Widget:
    bool onMouseWheel(osg::Vec2i const& point, int delta) override {
        if (Container::onMouseWheel(point, delta))
            return true;
        gui::Widget& contents = *getWidget(0);
        int const lowest = getSize().y() - contents.getSize().y();
        int const y = std::min(std::max(contents.getPosition().y() + delta * step_, lowest), 0);
        bool const moved = y != contents.getPosition().y();
        contents.setPosition({0, y});
        return moved;
    }

private:
    int step_;
};
