#pragma once

#include "gui_lib/Skin/Skin.h"

namespace gui {
class ScrollPane;
}

namespace gui::skin {

class ScrollBarSkin;
class ScrollPaneData;

/// The look of a scroll pane. The sub-skins "vertScrollBar" and "horzScrollBar" are the skins of its bars. Holds a
/// ScrollPaneData.
class VORLEX_API ScrollPaneSkin : public Skin {
public:
    explicit ScrollPaneSkin(ScrollPane* pane);

    /// Null if the skin was given other data.
    ScrollPaneData* getSkinData() const;
    /// Null while the pane has no such bar; they belong to the bars.
    ScrollBarSkin* getVertScrollBarSkin() const;
    ScrollBarSkin* getHorzScrollBarSkin() const;

    // Skin:
    void copyTo(Skin* other) const override;

protected:
    // Skin:
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

private:
    ScrollPane const* getPane_() const;
};

}  // namespace gui::skin
