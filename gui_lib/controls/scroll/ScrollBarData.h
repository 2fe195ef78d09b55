#pragma once

#include "gui_lib/Skin/Data.h"
#include "gui_lib/base/Align.h"

namespace gui::skin {

/// The parameters of a scroll bar's skin: whether there are step buttons, and where the parts lie across the bar.
class VORLEX_API ScrollBarData : public Data {
public:
    explicit ScrollBarData(Skin* owner);

    /// Key "hasButtons".
    virtual void setHasButtons(bool has);
    virtual bool getHasButtons() const;
    /// Key "thumbAlign".
    virtual void setThumbAlign(Align const& align);
    virtual Align const& getThumbAlign() const;
    /// Key "increaseButtonAlign".
    virtual void setIncreaseButtonAlign(Align const& align);
    virtual Align const& getIncreaseButtonAlign() const;
    /// Key "decreaseButtonAlign".
    virtual void setDecreaseButtonAlign(Align const& align);
    virtual Align const& getDecreaseButtonAlign() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    bool hasButtons = true;
    Align thumbAlign{Align::Center, 0};
    Align increaseButtonAlign{Align::Center, 0};
    Align decreaseButtonAlign{Align::Center, 0};
};

}  // namespace gui::skin
