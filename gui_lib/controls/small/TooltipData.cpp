#include "gui_lib/controls/small/TooltipData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

TooltipData::TooltipData(Skin* newOwner) : Data(newOwner) {}

void TooltipData::setStartTime(double seconds) {
    startTime = seconds;
    ownerSkinUpdateWidget(false);
}

double TooltipData::getStartTime() const { return startTime; }

void TooltipData::setDuration(double seconds) {
    duration = seconds;
    ownerSkinUpdateWidget(false);
}

double TooltipData::getDuration() const { return duration; }

void TooltipData::setOffset(osg::Vec2i const& newOffset) {
    offset = newOffset;
    ownerSkinUpdateWidget(false);
}

osg::Vec2i TooltipData::getOffset() const { return offset; }

void TooltipData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "startTime", startTime);
    luautil::getValue(L, "duration", duration);
    luautil::getValue(L, "offset", offset);
}

void TooltipData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "startTime", startTime);
    luautil::setValue(L, "duration", duration);
    luautil::setValue(L, "offset", offset);
}

void TooltipData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    if (auto* const target = dynamic_cast<TooltipData*>(other)) {
        target->startTime = startTime;
        target->duration = duration;
        target->offset = offset;
    }
}

std::unique_ptr<Data> TooltipData::makeNew_() const { return std::make_unique<TooltipData>(nullptr); }

}  // namespace gui::skin
