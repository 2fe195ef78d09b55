#include "gui_lib/controls/small/Tooltip.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/small/TooltipData.h"
#include "gui_lib/controls/small/TooltipSkin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "platform/qor/Truncate.h"

#include <algorithm>

namespace gui {

namespace {

/// Assumed where the host does not know its cursor, pixels.
constexpr int defaultCursorHeight = 32;

}  // namespace

Tooltip::Tooltip(WindowsManager* newOwner) : owner(newOwner) {
    skin = new skin::TooltipSkin(this);
    skin->load("tooltipSkin");
}

int Tooltip::getRootSurfaceId() const { return owner->getSurfaceId(); }

char const* Tooltip::getWidgetType() const { return "Tooltip"; }

skin::TooltipData const* Tooltip::getTooltipData() const {
    return dynamic_cast<skin::TooltipData const*>(skin->getSkinData());
}

osg::Vec2i Tooltip::calcScreenPosition() const {
    GUI const* gui = GUI::get();
    Application const* application = Application::get();
    osg::Vec2i const screen = gui->getScreenPosition();
    osg::Vec2i const mouse = gui->getMousePosition(owner->getSurfaceId());
    osg::Vec2i cursor;
    application->getCursorSize(cursor);
    int const cursorHeight = cursor.y() < 1 ? defaultCursorHeight : cursor.y();
    // 20 units below the hot spot of a cursor 32 high.
    int const offset = qor::truncateToInt(cursorHeight * 20 * 0.03125);

    int x = mouse.x();
    int y = mouse.y() + offset;
    if (saturatingAdd(screen.y() + y, size.y()) > application->getHeight())
        y = saturatingSubtract(y, saturatingAdd(size.y(), offset));
    int const over = saturatingAdd(size.x(), screen.x() + x - application->getWidth());
    if (over > 0)
        x = std::max(saturatingSubtract(x, over), 0);
    return {x, y};
}

void Tooltip::onTextChanged_(std::basic_string_view<wchar_t> newText) {
    Widget::onTextChanged_(newText);
    setSize(calcSize());
}

}  // namespace gui
