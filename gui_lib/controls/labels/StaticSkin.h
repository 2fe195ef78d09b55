#pragma once

#include "gui_lib/Skin/Skin.h"

class vtxTexture;

namespace gui {

class Static;

namespace skin {

/// The look of a label.
class VORLEX_API StaticSkin : public Skin {
public:
    /// `makeData` gives it a plain Data of its own.
    StaticSkin(Static* widget, bool makeData);

    /// The picture of the label's target, owned by it; null without a target.
    vtxTexture* getTargetTexture() const;
};

}  // namespace skin
}  // namespace gui
