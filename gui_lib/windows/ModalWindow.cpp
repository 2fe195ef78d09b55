#include "gui_lib/windows/ModalWindow.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBaseSkin.h"

namespace gui {

ModalWindow::ModalWindow(bool noSkin) {
    makeHeaderAndView_();
    if (noSkin)
        return;
    skin = new skin::WindowBaseSkin(this);
    skin->load("modalWindowSkin");
}

ModalWindow::~ModalWindow() {
    beginDestruction_();
    setVisible(false);
}

void ModalWindow::copyParams(ModalWindow* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    auto const bothLive = [&self, &other] { return self.alive() && other.alive(); };
    target->setText(getText());
    target->setPosition(getPosition());
    if (bothLive())
        target->setSize(getSize());
    if (bothLive())
        target->setEnabled(enabled);
    if (!bothLive())
        return;
    target->setZoom(getZoom());
    target->setTooltipText(getTooltipText());
    target->setResourceString(getResourceString());
    Layout const* const source = LayoutHandler::get(getLayout());
    if (Layout* const copy = source ? source->clone() : nullptr)
        target->setLayout(copy->handler());
    for (int i = 0; bothLive() && i < getWidgetCount(); ++i)
        if (Widget const* const widget = getWidget(i))
            target->insertWidget(widget->clone(), -1);
}

Widget* ModalWindow::clone() const {
    auto* const copy = new ModalWindow(false);
    if (skin)
        skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* ModalWindow::getWidgetType() const { return "ModalWindow"; }

void ModalWindow::kill() {
    killed = true;
    setVisible(false);
}

void ModalWindow::onCloseButton_() { onClose_(); }

void ModalWindow::onVisibleChanged_(bool newVisible) {
    AliveGuard const guard(this);
    Widget::onVisibleChanged_(newVisible);
    if (guard.dead())
        return;
    if (!newVisible) {
        if (WindowsManager* const manager = leaveManager_())
            manager->hideModal(this);
        return;
    }
    WindowsManager* const manager = enterManager_();
    if (!manager)
        return;
    manager->showModal(this);
    if (guard.alive() && lockFlow)
        doModal_();
}

void ModalWindow::doModal_() {
    AliveGuard const guard(this);
    Application* const application = Application::get();
    while (application->getRunning() && guard.alive() && getVisible(false))
        application->processModal();
    if (guard.alive() && killed)
        WindowBase::kill();
}

}  // namespace gui
