#pragma once

#include "gui_lib/Skin/Data.h"
#include "gui_lib/base/Align.h"
#include "platform/qor/String.h"

namespace gui::skin {

/// The parameters of a window header's skin: whether there is a close button, where, and with which text.
class VORLEX_API WindowHeaderData : public Data {
public:
    explicit WindowHeaderData(Skin* owner);

    /// Key "hasCloseButton".
    virtual void setHasCloseButton(bool has);
    virtual bool getHasCloseButton() const;
    /// Within the header less its insets; keys "closeButtonHorzAlign" and "closeButtonVertAlign".
    virtual void setCloseButtonHorzAlign(Align const& align);
    virtual Align const& getCloseButtonHorzAlign() const;
    virtual void setCloseButtonVertAlign(Align const& align);
    virtual Align const& getCloseButtonVertAlign() const;
    /// UTF-8; key "closeButtonText".
    virtual void setCloseButtonText(qor::basic_string<char> const& text);
    virtual qor::basic_string<char> const& getCloseButtonText() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    bool hasCloseButton = true;
    Align closeButtonHorzAlign{Align::Max, -5};
    Align closeButtonVertAlign{Align::Center, 0};
    qor::basic_string<char> closeButtonText;
};

}  // namespace gui::skin
