#include "gui_lib/controls/small/TooltipSkin.h"

#include "gui_lib/base/textutil.h"
#include "gui_lib/controls/small/TooltipData.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/Widget.h"

namespace gui::skin {

TooltipSkin::TooltipSkin(Widget* newWidget) : Skin(newWidget, false) { setSkinData(new TooltipData(this), true); }

TooltipData* TooltipSkin::getTooltipData() const { return dynamic_cast<TooltipData*>(data); }

osg::Vec2i TooltipSkin::calcTextSize_(InteractiveState state, int inner) {
    Text::Info const* info = data ? data->getText(state, inner) : nullptr;
    GUI const* gui = GUI::get();
    if (!info || !widget || !gui)
        return {};
    Text measured;
    measured.set(*info);
    measured.setWrapping(true);
    measured.setInsets(data->getInsets());
    return measured.calcSize(getDisplayText_(), osg::Vec2i(gui->getScreenSize().x(), 0));
}

}  // namespace gui::skin
