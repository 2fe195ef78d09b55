#pragma once

#include "gui_lib/Skin/Data.h"

namespace gui::skin {

/// The times of an AnimatedColorStatic's fades, seconds; what is not above 0 in a skin reads as 0.
class VORLEX_API AnimatedColorStaticData : public Data {
public:
    explicit AnimatedColorStaticData(Skin* owner);

    virtual void setTextColorAppearDuration(float seconds);
    virtual float getTextColorAppearDuration() const;
    virtual void setTextColorShowDuration(float seconds);
    virtual float getTextColorShowDuration() const;
    virtual void setTextColorDisappearDuration(float seconds);
    virtual float getTextColorDisappearDuration() const;
    virtual void setImageColorAppearDuration(float seconds);
    virtual float getImageColorAppearDuration() const;
    virtual void setImageColorShowDuration(float seconds);
    virtual float getImageColorShowDuration() const;
    virtual void setImageColorDisappearDuration(float seconds);
    virtual float getImageColorDisappearDuration() const;

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    std::unique_ptr<Data> makeNew_() const override;

    float textColorAppearDuration = 2.0f;
    float textColorShowDuration = 5.0f;
    float textColorDisappearDuration = 5.0f;
    float imageColorAppearDuration = 2.0f;
    float imageColorShowDuration = 5.0f;
    float imageColorDisappearDuration = 5.0f;

private:
    struct Key {
        char const* name;
        float AnimatedColorStaticData::*field;
    };
    static Key const keys_[6];

    void set_(float& field, float seconds);
};

}  // namespace gui::skin
