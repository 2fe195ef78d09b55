#include "host/ErrorOverlay.h"

#include <algorithm>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/base/Application.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/WindowData.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/qor/Utf8.h"
#include "platform/vtx/vtxRenderer.h"

namespace host {

namespace {

constexpr int margin = 24;
constexpr int mostWidth = 960;

/// A look of its own: the skin may be what is broken.
void setLook(gui::Static& label) {
    gui::skin::Skin* const skin = label.getWidgetSkin();
    auto* const data = new gui::skin::Data(nullptr);
    gui::Bkg::Info background;
    std::fill(background.cellColors.begin(), background.cellColors.end(), osg::Vec4f(0.42f, 0.06f, 0.09f, 0.96f));
    gui::Text::Info text;
    text.font = "fonts/JetBrainsMono-Regular.ttf";
    text.fontSize = 14;
    text.color = osg::Vec4f(1.0f, 0.95f, 0.93f, 1.0f);
    text.align = gui::Align2(gui::Align(gui::Align::Min, 0), gui::Align(gui::Align::Min, 0));
    data->setBkg(&background, gui::skin::InteractiveStateReleased, 1);
    data->setText(&text, gui::skin::InteractiveStateReleased, 1);
    data->setInsets({14, 10, 14, 10});
    data->setTextWrapping(true);
    skin->setSkinData(data, true);
}

}  // namespace

ErrorOverlay::ErrorOverlay() {
    auto* const window = new gui::OffscreenWindow;
    // Nothing of a window is wanted but that it can be drawn by itself.
    window->getWidgetSkin()->setSkinData(new gui::skin::WindowData(nullptr), true);
    window->getHeader()->setVisible(false);
    window->getView()->setVisible(false);
    auto* const label = new gui::Static;
    setLook(*label);
    window->insertOverlayWidget(label, -1);
    window_ = window->getHandler();
    label_ = label->getHandler();
}

ErrorOverlay::~ErrorOverlay() {
    if (gui::GUI::get())
        gui::Widget::destroy(gui::WidgetHandler::get(window_));
}

void ErrorOverlay::show(qor::string const& text) {
    gui::Widget* const label = gui::WidgetHandler::get(label_);
    shown_ = label && !text.empty();
    if (!label)
        return;
    label->setText(qor::utf8_to_wchar(text));
    if (gui::Widget* const window = gui::WidgetHandler::get(window_))
        window->setVisible(shown_);
    if (shown_)
        arrange_();
}

void ErrorOverlay::arrange_() {
    gui::Widget* const window = gui::WidgetHandler::get(window_);
    gui::Widget* const label = gui::WidgetHandler::get(label_);
    osg::Vec2i const screen = gui::GUI::get()->getScreenSize();
    int const width = std::clamp(screen.x() - 2 * margin, 1, mostWidth);
    // The height of wrapped text follows from the width.
    label->setSize({width, screen.y()});
    int const height = std::min(label->getWidgetSkin()->calcSize().y(), screen.y());
    label->setSize({width, height});
    window->setSize({width, height});
    window->setPosition({(screen.x() - width) / 2, std::max(screen.y() - height - margin, 0)});
}

void ErrorOverlay::draw() {
    gui::GUI* const gui = gui::GUI::get();
    auto* const window = dynamic_cast<gui::OffscreenWindow*>(gui::WidgetHandler::get(window_));
    if (!shown_ || !gui || !window)
        return;
    gui::Application const& application = *gui::Application::get();
    float const scale = vtxRenderer::get()->getScale();
    gui->drawOffscreenWindow(window, {application.getWidth(), application.getHeight()}, {scale, scale}, 1.0f, 1.0f);
}

}  // namespace host
