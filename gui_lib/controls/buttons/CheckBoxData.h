#pragma once

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/StateInfo.h"

namespace gui::skin {

/// A state's look with a check mark, key "check".
class VORLEX_API CheckBoxStateInfo : public StateInfo {
public:
    // StateInfo:
    void load(lua_State* L) override;
    void unload(lua_State* L) const override;

    bool hasCheck = false;
    Image::Info check;
};

/// The parameters of a check box and of the lines of a check list. GUI units.
class VORLEX_API CheckBoxData : public Data {
public:
    explicit CheckBoxData(Skin* owner);

    /// Keys "checkSize", "checkGap", "pictureSize", "pictureGap".
    virtual void setCheckSize(int newSize);
    virtual int getCheckSize() const;
    virtual void setCheckGap(int gap);
    virtual int getCheckGap() const;
    virtual void setPictureSize(int newSize);
    virtual int getPictureSize() const;
    virtual void setPictureGap(int gap);
    virtual int getPictureGap() const;

    /// The check mark of a state, or that of the same inner state when released; null without one.
    Image::Info const* getCheck(InteractiveState state, int inner) const;
    /// Copies `info` into the entry of exactly this state; null hides it.
    void setCheck(Image::Info const* info, InteractiveState state, int inner);

protected:
    // Data:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* other) const override;
    void copyState_(Data* other, InteractiveState state, int inner) const override;
    std::shared_ptr<StateInfo> makeStateInfo_(StateInfo const* source) const override;
    std::unique_ptr<Data> makeNew_() const override;
    void keepChanges_(Data const& was, Data const& before, InteractiveState state, int inner) override;

    int checkSize = 16;
    int checkGap = 2;
    int pictureSize = 0;
    int pictureGap = 0;

private:
    void set_(int& field, int value);
};

}  // namespace gui::skin

namespace luautil {

/// Makes a new object from a table, owned by the caller; leaves `value` alone if there is none.
template <>
VORLEX_API bool getValue<gui::skin::CheckBoxStateInfo*>(lua_State* L, int index, gui::skin::CheckBoxStateInfo*& value);

}  // namespace luautil
