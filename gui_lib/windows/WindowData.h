#pragma once

#include "gui_lib/Skin/Data.h"

namespace gui::skin {

/// The parameters of a window's skin.
class VORLEX_API WindowData : public Data {
public:
    explicit WindowData(Skin* owner);

    /// Height of the header, GUI units; key "headerHeight".
    virtual void setHeaderHeight(int height);
    virtual int getHeaderHeight() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    int headerHeight = 20;
};

}  // namespace gui::skin
