#pragma once

#include "gui_lib/Skin/Skin.h"

namespace gui::skin {

class WindowData;

/// The look of a window. The sub-skins "header" and "view" are the skins of its header and view. Holds a WindowData.
class VORLEX_API WindowBaseSkin : public Skin {
public:
    explicit WindowBaseSkin(Widget* widget);

    WindowData* getWindowData() const;

    // Skin:
    /// Copies the skins of header and view too.
    void copyTo(Skin* other) const override;

protected:
    // Skin:
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

private:
    /// Null without a window or without the part.
    Skin* getHeaderSkin_() const;
    Skin* getViewSkin_() const;
};

}  // namespace gui::skin
