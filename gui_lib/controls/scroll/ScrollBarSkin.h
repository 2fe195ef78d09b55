#pragma once

#include "gui_lib/Skin/Skin.h"

#include <memory>

namespace gui::skin {

class ButtonSkin;
class ScrollBarData;

/// The look of the thumb of a scroll bar. The bar's skin owns it and lends it to the thumb.
class VORLEX_API ScrollBarThumbSkin : public Skin {
public:
    explicit ScrollBarThumbSkin(Widget* widget);
};

/// The look of a scroll bar: its track, and the sub-skins "thumb", "decreaseButton" and "increaseButton", which are
/// lent to the parts. Holds a ScrollBarData.
class VORLEX_API ScrollBarSkin : public Skin {
public:
    explicit ScrollBarSkin(Widget* widget);
    ~ScrollBarSkin() override;

    /// Null if the skin was given other data.
    ScrollBarData* getSkinData() const;
    /// Never null, as the next two.
    ScrollBarThumbSkin* getThumbSkin() const { return thumbSkin.get(); }
    ButtonSkin* getIncreaseButtonSkin() const { return increaseButtonSkin.get(); }
    ButtonSkin* getDecreaseButtonSkin() const { return decreaseButtonSkin.get(); }

    // Skin:
    void copyTo(Skin* other) const override;

protected:
    // Skin:
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

    std::unique_ptr<ScrollBarThumbSkin> thumbSkin;
    std::unique_ptr<ButtonSkin> increaseButtonSkin;
    std::unique_ptr<ButtonSkin> decreaseButtonSkin;
};

}  // namespace gui::skin
