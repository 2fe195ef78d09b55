#pragma once

#include "gui_lib/Skin/Data.h"

namespace gui::skin {

/// The parameters of a scroll pane's skin: how thick the bars are and how far the wheel scrolls. GUI units.
class VORLEX_API ScrollPaneData : public Data {
public:
    explicit ScrollPaneData(Skin* owner);

    /// Key "vertScrollBarWidth".
    virtual void setVertScrollBarWidth(int width);
    virtual int getVertScrollBarWidth() const;
    /// Key "horzScrollBarHeight".
    virtual void setHorzScrollBarHeight(int height);
    virtual int getHorzScrollBarHeight() const;
    /// The least distance of one unit of the wheel; key "pixelsPerWheelClick".
    virtual void setPixelsPerWheelClick(int pixels);
    virtual int getPixelsPerWheelClick() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    int vertScrollBarWidth = 20;
    int horzScrollBarHeight = 20;
    int pixelsPerWheelClick = 20;
};

}  // namespace gui::skin
