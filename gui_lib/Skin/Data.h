#pragma once

#include <memory>
#include <tuple>

#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/base/Insets.h"
#include "gui_lib/base/InteractiveState.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/SmallVector.h"

struct lua_State;

namespace gui::skin {

class Skin;
class StateInfo;

/// The parameters behind a `Skin`: values that do not depend on the widget's state, and the looks by interactive state
/// and inner state. A look that a state lacks is that of the same inner state when released. Each widget's data derives
/// from this and adds parameters; it overrides `loadParams_`, `unloadParams_` and `copyParams_`, calling up first.
/// Lifetime: owned by the skin it was given to as owned. Several skins may borrow one object; it knows them all, so
/// that either side may die first. Looks read from a table that never changes are shared between objects until one is
/// written.
class VORLEX_API Data {
public:
    using InnerTable = qor::hash_map<int, std::shared_ptr<StateInfo>>;
    using StateTable = qor::hash_map<int, InnerTable>;

    explicit Data(Skin* owner);
    Data(Data const&) = delete;
    Data& operator=(Data const&) = delete;
    virtual ~Data();

    /// The skin that is told of changes; the last one that the data was given to.
    virtual void setOwner(Skin* owner);
    virtual Skin* getOwner() const;

    // --- Parameters. Setters mark the owner's widget, also when nothing changes ---
    /// GUI units; a component of 0 means no limit.
    virtual void setMinSize(osg::Vec2i const& size);
    virtual osg::Vec2i getMinSize() const;
    virtual void setMaxSize(osg::Vec2i const& size);
    virtual osg::Vec2i getMaxSize() const;
    /// Margins of text and picture.
    virtual void setInsets(Insets const& newInsets);
    virtual Insets const& getInsets() const;
    virtual void setTextWrapping(bool wrap);
    virtual bool getTextWrapping() const;
    virtual void setUseEllipsis(bool use);
    virtual bool getUseEllipsis() const;
    virtual void setTextLineHeight(int height);
    virtual int getTextLineHeight() const;
    virtual void setFocusRectInsets(Insets const& newInsets);
    virtual Insets const& getFocusRectInsets() const;
    virtual void setFocusRectColor(osg::Vec4f const& color);
    virtual osg::Vec4f getFocusRectColor() const;
    /// Clip of picture, text and children; all zero means no clip.
    virtual void setClipInsets(Insets const& newInsets);
    virtual Insets const& getClipInsets() const;
    virtual bool getClipInsetsEmpty() const;
    virtual void setLoaded();
    virtual bool getLoaded() const;

    // --- Looks: the pointers are good until the next change ---
    Bkg::Info const* getBkg(InteractiveState state, int inner) const;
    Image::Info const* getImage(InteractiveState state, int inner) const;
    Text::Info const* getText(InteractiveState state, int inner) const;
    /// Copies `info` into the entry of exactly this state; null hides it. Marks nothing.
    void setBkg(Bkg::Info const* info, InteractiveState state, int inner);
    void setImage(Image::Info const* info, InteractiveState state, int inner);
    void setText(Text::Info const* info, InteractiveState state, int inner);

    // --- Lua: the skin's data table is on the top of the stack; what cannot be read or written is skipped ---
    /// Reads its field "params".
    void loadParams(lua_State* L);
    /// Reads the table itself as params.
    void loadParamsFromTable(lua_State* L);
    /// Reads its field "states"; what is there already is merged.
    void loadStates(lua_State* L);
    void unloadParams(lua_State* L) const;
    void unloadParamsToTable(lua_State* L) const;
    void unloadStates(lua_State* L) const;

    /// Gives `other` the parameters (those of a derived class only if both are of it) and the looks as they come out of
    /// the fallback search. Marks nothing; null is ignored.
    void copyTo(Data* other) const;

protected:
    friend class Skin;
    friend class SkinReload;

    virtual void loadState_(lua_State* L, InteractiveState state);
    virtual void unloadState_(lua_State* L, InteractiveState state, InnerTable const& inners) const;
    /// The entry for a state and inner state, after the fallbacks within the table; null without one. Its looks count
    /// as unchanged until `LookEpoch` is another: entries are written by `editStateInfo_` only.
    virtual StateInfo* findStateInfo_(InteractiveState state, int inner) const;
    virtual void loadParams_(lua_State* L);
    virtual void unloadParams_(lua_State* L) const;
    virtual void copyParams_(Data* other) const;
    /// Copies one resolved look. A derived class with more in its `StateInfo` calls up and copies that too.
    virtual void copyState_(Data* other, InteractiveState state, int inner) const;
    virtual void ownerSkinUpdateWidget(bool sizeDirty);
    /// A new entry of the class that this data uses, a copy of `source` unless that is null.
    virtual std::shared_ptr<StateInfo> makeStateInfo_(StateInfo const* source) const;

    /// Data of this class as it is before anything is read. Without it a derived class keeps what a reloaded skin file
    /// no longer says.
    virtual std::unique_ptr<Data> makeNew_() const;
    /// After a reload: gives the looks of one entry those fields in which `was` differs from `before`, which is what
    /// the program changed. A derived class with more in its `StateInfo` calls up and does the same with that.
    virtual void keepChanges_(Data const& was, Data const& before, InteractiveState state, int inner);

    /// For `makeStateInfo_`; `Info` is the class of every entry of this data.
    template <class Info>
    static std::shared_ptr<StateInfo> makeStateInfoOf_(StateInfo const* source) {
        qor::allocator<Info> const allocator;
        return source ? std::allocate_shared<Info>(allocator, static_cast<Info const&>(*source))
                      : std::allocate_shared<Info>(allocator);
    }

    InnerTable const* findInnerStateInfos_(InteractiveState state) const;
    /// "released", "hover", "pressed", "disabled"; null for anything else.
    static char const* getInteractiveStateName_(InteractiveState state);
    StateTable const& getStates_() const { return *states; }
    /// The entry of exactly this state for writing, made if need be.
    StateInfo& editStateInfo_(InteractiveState state, int inner);
    /// The same, but null where there is none.
    StateInfo* editExistingStateInfo_(InteractiveState state, int inner);

    osg::Vec2i minSize;
    osg::Vec2i maxSize;
    Insets insets;
    bool textWrapping = false;
    bool useEllipsis = false;
    int textLineHeight = 0;
    Insets focusRectInsets{2, 2, 2, 2};
    osg::Vec4f focusRectColor;
    Insets clipInsets;
    Skin* owner = nullptr;
    /// Never null; shared with other objects while several point at it. Entries may be shared too.
    std::shared_ptr<StateTable> states;
    bool loaded = false;

private:
    /// Whether no function but those of this class has a part in the answers for parameters, and for looks.
    bool paramsLast_() const;
    bool looksLast_() const;

    /// The looks of a state, null where it has none.
    struct Looks {
        Bkg::Info const* bkg = nullptr;
        Image::Info const* image = nullptr;
        Text::Info const* text = nullptr;
    };
    /// All at once, for classes with `looksLast_`; good until the next call.
    Looks const& findLooks_(InteractiveState state, int inner) const;

    /// The parameters of this class, in the order of its fields.
    using ParamValues = std::tuple<osg::Vec2i, osg::Vec2i, Insets, bool, bool, int, Insets, osg::Vec4f, Insets>;
    /// What a new object of this class has read.
    struct Content {
        ParamValues params;
        std::shared_ptr<StateTable> states;
    };

    /// Becomes `after`, but for what differs from `before`: that the program has changed. `scratch` is for values.
    void reload_(Data const& before, Data const& after, lua_State* scratch);
    void reloadParams_(Data const& before, Data const& after, lua_State* scratch);
    ParamValues getParamValues_() const;
    void setParamValues_(ParamValues const& values);
    template <class Info>
    Info const* findLook_(bool StateInfo::*has, Info StateInfo::*info, InteractiveState state, int inner) const;
    template <class Info>
    void setLook_(bool StateInfo::*has, Info StateInfo::*field, Info const* info, InteractiveState state, int inner);
    void readParams_(lua_State* L);
    /// Reads both of the fields "params" and "states".
    void load_(lua_State* L);
    void loadFields_(lua_State* L);
    bool hasDefaultParams_() const;
    /// What `findStateInfo_` answered last for a state.
    struct KnownLook;
    StateInfo* searchStateInfo_(KnownLook& known, InteractiveState state, int inner) const;
    StateTable& editStates_();
    void addUser_(Skin* skin);
    void removeUser_(Skin* skin);

    /// The skins that hold this data, each of which knows its place.
    qor::small_vector<Skin*, 1> users_;
};

}  // namespace gui::skin
