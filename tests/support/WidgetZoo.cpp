#include "tests/support/WidgetZoo.h"

#include <algorithm>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/layouts/FormLayout.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowBaseSkin.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"

#include <lua.hpp>

namespace support {

namespace {

using gui::Widget;
using osg::Vec2i;

template <class WidgetType>
WidgetType* dress(WidgetType* widget, wchar_t const* text, Vec2i const& size = Vec2i(130, 34)) {
    widget->setText(text);
    widget->setPosition(Vec2i(11, 7));
    widget->setSize(size);
    return widget;
}

template <class WindowType>
Widget* furnish(WindowType* window) {
    dress(window, L"Window", Vec2i(260, 180));
    window->insertWidget(dress(new gui::Button, L"Inside"), -1);
    auto* const overlay = dress(new gui::Static, L"Over");
    overlay->setPosition(Vec2i(150, 120));
    window->insertOverlayWidget(overlay, -1);
    return window;
}

/// With the look that a popup gets from its subclass, as a list or a menu has.
Widget* makePopup() {
    class Popup final : public gui::PopupWindow {
    public:
        Popup() {
            skin = new gui::skin::WindowBaseSkin(this);
            skin->load("windowSkin");
        }
        int getWidgetCount() const override { return getWidgetCount_(); }
        Widget* getWidget(int index) const override { return getWidget_(index); }
        void insertWidget(Widget* widget, int index) override { insertWidget_(widget, index); }
    };
    return furnish(new Popup);
}

Widget* makeBuddy() {
    auto* const window = new gui::BuddyWindow;
    window->getWidgetSkin()->load("windowSkin");
    furnish(window);
    window->setBuddyWidget(window->getWidget(0));
    return window;
}

Widget* makeModal() {
    auto* const modal = new gui::ModalWindow(false);
    modal->setLockFlow(false);
    return furnish(modal);
}

template <class ButtonType, int state>
Widget* makeToggle() {
    return dress(new ButtonType(state), state == 0 ? L"Off" : state == 1 ? L"On" : L"Undefined");
}

template <class ButtonType, int state>
Widget* makeInGroup() {
    auto* const button = dress(new ButtonType, state ? L"Chosen" : L"Other");
    button->setState(state);
    return button;
}

Widget* makeTurnedStatic() {
    auto* const label = dress(new gui::Static, L"Turned\tby an angle");
    label->setPivotPoint(Vec2i(20, 10));
    label->setAngle(30.0);
    // The default skins give labels neither a picture nor a clip.
    gui::Image::Info picture;
    picture.file = "tests/graphics/picture.png";
    gui::skin::Data& data = *label->getWidgetSkin()->getSkinData();
    data.setImage(&picture, gui::skin::InteractiveStateReleased, 1);
    data.setClipInsets({2, 2, 2, 2});
    return label;
}

Widget* makeFading() {
    auto* const label = dress(new gui::AnimatedColorStatic, L"Fading");
    label->setTextColor(osg::Vec4f(1, 0, 0, 1));
    return label;
}

Widget* makeTextureView() {
    // The reference is given back with the renderer.
    vtxTexture* const texture =
        vtxRenderer::get()->getTextureManager()->getTexture("tests/graphics/picture.png", {}, nullptr);
    auto* const view = dress(new gui::TextureView, L"");
    gui::Image::Info info;
    info.tileHorizontally = true;
    view->setImageInfo(info);
    view->setTexture(texture);
    view->setAngle(-20.0);
    return view;
}

Widget* makePanel() {
    auto* const panel = dress(new gui::Panel, L"", Vec2i(200, 120));
    panel->insertWidget(dress(new gui::CheckBox(1), L"In a panel"), -1);
    auto* const overhanging = dress(new gui::Button, L"Cut off");
    overhanging->setPosition(Vec2i(150, 60));
    panel->insertWidget(overhanging, -1);
    return panel;
}

template <class BarType>
Widget* makeBar(Vec2i const& size) {
    auto* const bar = dress(new BarType, L"", size);
    bar->setThumbValue(40.0);
    bar->setStep(3.0);
    // The middle, which the mouse presses, is on the thumb.
    bar->setValue(31.0);
    return bar;
}

Widget* makeScrollPane() {
    auto* const pane = dress(new gui::ScrollPane, L"", Vec2i(200, 120));
    for (int i = 0; i < 12; ++i) {
        auto* const button = dress(new gui::Button, L"Scrolled");
        button->setPosition(Vec2i(i % 2 * 140 + 4, i / 2 * 40));
        pane->insertWidget(button, -1);
    }
    pane->setHorzMouseWheel(true);
    pane->setVertScrollValue(25.0);
    pane->setHorzScrollValue(9.0);
    return pane;
}

Widget* makeForm() {
    auto* const panel = dress(new gui::Panel, L"", Vec2i(200, 120));
    panel->setLayout((new gui::FormLayout(8, 6))->handler());
    for (wchar_t const* const text : {L"Caption", L"Longer caption"}) {
        panel->insertWidget(dress(new gui::Static, text), -1);
        panel->insertWidget(dress(new gui::Button, L"Field"), -1);
    }
    return panel;
}

constexpr char const* changed = Widget::changeCallbackName;
constexpr char const* closed = gui::WindowBase::closeCallbackName;

void selectAnotherTab(Widget& tab) {
    auto* const other = new gui::TabGroupItem(false);
    static_cast<gui::WindowBase*>(tab.getRoot())->insertWidget(other, -1);
    other->onMouseDown(Vec2i(), gui::MouseButtonMain);
}

void close(Widget& window) { static_cast<gui::WindowBase&>(window).close(); }

}  // namespace

std::vector<ZooAnimal> const& getZoo() {
    static std::vector<ZooAnimal> const zoo = {
        {.name = "Widget", .make = [] { return dress(new Widget, L"Bare"); }, .seen = false},
        {.name = "Container", .make = []() -> Widget* { return dress(new gui::Container, L""); }, .seen = false},
        {"Panel", makePanel},
        {"PanelForm", makeForm},
        {.name = "Button",
         .make = []() -> Widget* { return dress(new gui::Button, L"Press me"); },
         .callbacks = {changed}},
        {.name = "ToggleButtonOff", .make = makeToggle<gui::ToggleButton, 0>, .callbacks = {changed}},
        {.name = "ToggleButtonOn", .make = makeToggle<gui::ToggleButton, 1>, .callbacks = {changed}},
        {.name = "ToggleButtonUndefined", .make = makeToggle<gui::ToggleButton, -1>, .callbacks = {changed}},
        {.name = "CheckBoxOff", .make = makeToggle<gui::CheckBox, 0>, .callbacks = {changed}},
        {.name = "CheckBoxOn", .make = makeToggle<gui::CheckBox, 1>, .callbacks = {changed}},
        {.name = "CheckBoxUndefined", .make = makeToggle<gui::CheckBox, -1>, .callbacks = {changed}},
        {"SwitchButtonOn", makeInGroup<gui::SwitchButton, 1>},
        {.name = "SwitchButtonOff", .make = makeInGroup<gui::SwitchButton, 0>, .callbacks = {changed}},
        {"RadioButtonOn", makeInGroup<gui::RadioButton, 1>},
        {.name = "RadioButtonOff", .make = makeInGroup<gui::RadioButton, 0>, .callbacks = {changed}},
        {"Static", []() -> Widget* { return dress(new gui::Static, L"A label with a text that is too long"); }},
        {"StaticTurned", makeTurnedStatic},
        {"AnimatedColorStatic", makeFading},
        {.name = "TabGroupItemOff",
         .make = []() -> Widget* { return dress(new gui::TabGroupItem(false), L"Tab"); },
         .callbacks = {gui::TabGroupItem::showCallbackName}},
        {.name = "TabGroupItemOn",
         .make = []() -> Widget* { return dress(new gui::TabGroupItem(true), L"Tab"); },
         .callbacks = {gui::TabGroupItem::hideCallbackName},
         .stir = selectAnotherTab},
        {"TextureView", makeTextureView},
        {.name = "HorzScrollBar",
         .make = [] { return makeBar<gui::HorzScrollBar>(Vec2i(128, 16)); },
         .callbacks = {changed, gui::ScrollBar::thumbPressedCallbackName, gui::ScrollBar::thumbReleasedCallbackName}},
        {.name = "VertScrollBar",
         .make = [] { return makeBar<gui::VertScrollBar>(Vec2i(14, 120)); },
         .callbacks = {changed, gui::ScrollBar::thumbPressedCallbackName, gui::ScrollBar::thumbReleasedCallbackName}},
        {.name = "ScrollPane", .make = makeScrollPane, .callbacks = {gui::ScrollPane::changeScrollPaneCallbackName}},
        {.name = "Tooltip",
         .make = []() -> Widget* { return dress(new gui::Tooltip(gui::WindowsManager::get(0)), L"A hint"); },
         .clones = false},
        {.name = "Window",
         .make = [] { return furnish(new gui::Window); },
         .window = true,
         .callbacks = {closed},
         .stir = close},
        {.name = "ModalWindow", .make = makeModal, .window = true, .callbacks = {closed}, .stir = close},
        {.name = "PopupWindow",
         .make = makePopup,
         .window = true,
         .clones = false,
         .callbacks = {closed},
         .stir = close},
        {.name = "BuddyWindow",
         .make = makeBuddy,
         .window = true,
         .clones = false,
         .callbacks = {closed},
         .stir = close},
        {.name = "OverlayWindow",
         .make = [] { return furnish(new gui::OverlayWindow); },
         .window = true,
         .clones = false,
         .pointed = false,
         .callbacks = {closed},
         .stir = close},
        {.name = "OffscreenWindow",
         .make = [] { return furnish(new gui::OffscreenWindow); },
         .window = true,
         .clones = false,
         .pointed = false,
         .callbacks = {closed},
         .stir = close},
    };
    return zoo;
}

ZooAnimal const* findAnimal(std::string const& name) {
    auto const& zoo = getZoo();
    auto const found =
        std::find_if(zoo.begin(), zoo.end(), [&](ZooAnimal const& animal) { return animal.name == name; });
    return found == zoo.end() ? nullptr : &*found;
}

// --- ZooHost ---

namespace {

std::string loader(std::string const& skinFile) {
    qor::addAssetRoot("assets");
    return skinFile.empty() ? "Skin = {}" : "dofile('" + skinFile + "')";
}

}  // namespace

ZooHost::ZooHost(std::string const& skinFile, Settings const& settings) : TestHost(loader(skinFile), settings) {
    // Away from zero, where some clocks mean that they stand still.
    app().time += 10.0;
}

gui::Widget* ZooHost::show(ZooAnimal const& animal) {
    Widget* const widget = animal.make();
    if (animal.window) {
        widget->setPosition(Vec2i(100, 100));
        widget->setVisible(true);
    } else {
        auto* const window = static_cast<gui::Window*>(furnish(new gui::Window));
        window->setPosition(Vec2i(100, 100));
        window->setSize(Vec2i(500, 300));
        window->setVisible(true);
        widget->setPosition(Vec2i(30, 60));
        window->insertWidget(widget, -1);
    }
    settle();
    return widget;
}

void ZooHost::forgetSkins() {
    lua_State* const L = gui::GUI::get()->getLuaState();
    lua_newtable(L);
    lua_setglobal(L, "Skin");
}

void ZooHost::settle() {
    gui::GUI& gui = *gui::GUI::get();
    for (int i = 0; i < 3; ++i) {
        update();
        gui.doRedraw();
    }
    frame();
}

void ZooHost::tease(Widget& widget, std::function<void(char const*)> const& step) {
    gui::WidgetHandler* const handler = widget.getHandler();
    gui::GUI& gui = *gui::GUI::get();
    auto const moveTo = [&](Vec2i const& inside) {
        Vec2i const point = widget.widgetToScreen(inside);
        moveMouse(point.x(), point.y());
    };
    Vec2i const middle(widget.getSize().x() / 2, widget.getSize().y() / 2);
    Vec2i const far(-60, 2 * middle.y() + 90);
    std::pair<char const*, std::function<void()>> const steps[] = {
        {"hover", [&] { moveTo(middle); }},
        {"press", [&] { pressMouse(); }},
        {"drag out", [&] { moveTo(far); }},
        {"drag in", [&] { moveTo(middle + Vec2i(1, 1)); }},
        {"release", [&] { releaseMouse(); }},
        {"double click", [&] { pressMouse(), releaseMouse(), pressMouse(); }},
        {"capture lost", [&] { gui::WindowsManager::get(0)->releaseMouse(nullptr), releaseMouse(); }},
        {"own capture",
         [&] {
             gui::WindowsManager::get(0)->captureMouse(handler);
             gui::WindowsManager::get(0)->releaseMouse(nullptr);
         }},
        {"wheel", [&] { gui.mouseWheel(1), update(); }},
        {"focus", [&] { widget.setTabOrder(1), widget.setFocused(true); }},
        {"key", [&] { pressKey(gui::KeySpace), gui.onChar(gui::KeySpace, ' '), releaseKey(gui::KeySpace); }},
        {"key to the widget", [&] { widget.onKeyDown(gui::KeyHome, 0); }},
        {"char to the widget", [&] { widget.onChar(gui::KeyHome, 'x'); }},
        {"key up to the widget", [&] { widget.onKeyUp(gui::KeyHome, 0); }},
        {"tab", [&] { typeKey(gui::KeyTab); }},
        {"move away", [&] { widget.setPosition(widget.getPosition() + Vec2i(3, 3)); }},
        {"resize", [&] { widget.setSize(widget.getSize() + Vec2i(3, 3)); }},
        {"leave", [&] { moveTo(far); }},
        {"redraw", [&] { widget.setDirty(Widget::DirtyTree), frame(); }},
        {"lose focus", [&] { widget.setFocused(false); }},
        {"disable", [&] { widget.setEnabled(false); }},
        {"enable", [&] { widget.setEnabled(true); }},
        {"hide", [&] { widget.setVisible(false); }},
        {"show", [&] { widget.setVisible(true); }},
    };
    for (auto const& [name, act] : steps) {
        if (!gui::WidgetHandler::get(handler))
            return;
        act();
        if (gui::WidgetHandler::get(handler))
            step(name);
    }
}

}  // namespace support
