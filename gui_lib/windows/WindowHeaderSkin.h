#pragma once

#include "gui_lib/Skin/Skin.h"

#include <memory>

namespace gui::skin {

class ButtonSkin;
class WindowHeaderData;

/// The look of a window's header. The sub-skin "closeButton" is lent to the close button. Holds a WindowHeaderData.
class VORLEX_API WindowHeaderSkin : public Skin {
public:
    explicit WindowHeaderSkin(Widget* widget);
    ~WindowHeaderSkin() override;

    WindowHeaderData* getHeaderData() const;
    /// Never null.
    ButtonSkin* getCloseButtonSkin() const { return closeButtonSkin.get(); }

    // Skin:
    void copyTo(Skin* other) const override;

protected:
    // Skin:
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

    std::unique_ptr<ButtonSkin> closeButtonSkin;
};

}  // namespace gui::skin
