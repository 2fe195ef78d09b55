#pragma once

#include "gui_lib/Skin/Data.h"

namespace gui::skin {

/// The parameters of a tooltip: when it shows, for how long, and an offset from the pointer.
class VORLEX_API TooltipData : public Data {
public:
    explicit TooltipData(Skin* owner);

    /// Seconds from the pointer's rest to showing; key "startTime".
    virtual void setStartTime(double seconds);
    virtual double getStartTime() const;
    /// Seconds shown; key "duration".
    virtual void setDuration(double seconds);
    virtual double getDuration() const;
    /// From the pointer, GUI units; key "offset". Kept for skins; the tooltip's place goes by the cursor's size.
    virtual void setOffset(osg::Vec2i const& newOffset);
    virtual osg::Vec2i getOffset() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    double startTime = 0.5;
    double duration = 4.0;
    osg::Vec2i offset{0, 20};
};

}  // namespace gui::skin
