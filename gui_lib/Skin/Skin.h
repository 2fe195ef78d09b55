#pragma once

#include <memory>

#include <osg/Vec2i>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/base/InteractiveState.h"
#include "gui_lib/base/VirtualTable.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

class vtxFrameBuffer;
struct lua_State;

namespace gui {

class FocusRect;
class GraphicCommands;
class Widget;

namespace skin {

class Data;
class ShaderEffect;
class ShaderEffectParams;
class TextMeasure;

/// The visual half of a widget: it holds the drawables, rebuilds them from a `Data` for the widget's state, and draws
/// or records them. Where the widget draws to a target it renders into a frame buffer of its own first. Coordinates:
/// GUI units of the widget at zoom 1. Order: `redraw` lays out, `doRedraw` builds the renderer's objects, `draw` and
/// `make` show the same thing. Lifetime: owned by its widget, or by another skin that lends it to a child widget;
/// without a widget it does nothing.
class VORLEX_API Skin {
public:
    /// `makeData` gives it a plain Data of its own; a derived class passes false and calls `setSkinData`.
    Skin(Widget* widget, bool makeData);
    Skin(Skin const&) = delete;
    Skin& operator=(Skin const&) = delete;
    virtual ~Skin();

    /// Natural size: that of the released state with inner state 1, whatever the widget's state.
    virtual osg::Vec2i calcSize();
    /// Reads the skin called `name` of GUI's skin file, and again whenever the skin file is reloaded: what the program
    /// has changed since stays as the program wants it.
    virtual void load(qor::basic_string<char> const& name);
    /// Reads the skin table on the top of the stack and marks the widget. What cannot be read is skipped.
    virtual void loadFromScript(lua_State* L);
    /// Fills the table on the top of the stack so that `loadFromScript` reads it back.
    virtual void putIntoScript(lua_State* L) const;
    virtual void redraw();
    virtual void doRedraw();
    virtual void draw();
    virtual void drawFocusRect();
    virtual void make(GraphicCommands* commands);
    virtual void makeFocusRect(GraphicCommands* commands);
    /// Marks the widget, and its natural size if `sizeDirty`.
    virtual void updateWidget(bool sizeDirty);
    virtual void setTextChanged();
    virtual void setSizeChanged();
    virtual void beginClipByInsets();
    virtual void endClipByInsets();
    /// Gives `other` the parameters, looks and target settings but the target size, and the names by which this one was
    /// loaded, if any. Marks nothing; null is ignored.
    virtual void copyTo(Skin* other) const;
    /// Replaces the effect; a null name removes it. `params` may be null.
    virtual void setShaderEffect(char const* name, ShaderEffectParams const* params);
    virtual ShaderEffect* getShaderEffect() const;

    // --- Live reload ---
    /// Notes that `name` was loaded; GUI does so.
    void setLoadedName(qor::basic_string<char> const& name);
    /// The name that was loaded last, be it by the skin that this one was copied from; empty for none.
    qor::basic_string<char> getLoadedName() const;
    /// All that is laid out counts as old: pictures, fonts and looks have changed. Marks the widget.
    void setAllChanged();

    // --- Owner and data ---
    Widget* getWidget() const { return widget; }
    /// For skins that one widget lends to another; null lets go. Marks nothing.
    void setWidget(Widget* newWidget);
    /// Takes `newData` over if `owned`, otherwise borrows it; its owner becomes this skin. Null leaves the skin empty.
    /// A skin with other data than before is no longer the one that was loaded by name.
    void setSkinData(Data* newData, bool owned);
    Data* getSkinData() const { return data; }
    /// The lines as they are laid out, brought up to date first. Good until the next redraw.
    qor::span<qor::basic_string<wchar_t> const> getTextLines();

    // --- Target ---
    void setTargetMsaa(int samples);
    void setTargetMips(int levels);
    /// A component below 1 means the widget's size.
    void setTargetSize(osg::Vec2i const& newSize);
    /// Of the target if there is one, else as set.
    osg::Vec2i getTargetSize() const;
    void deleteTarget_();

protected:
    friend class Data;
    friend class ShaderEffectManager;
    friend class SkinReload;

    /// The widget's size at zoom 1, for which all drawables are built.
    virtual osg::Vec2i getWidgetNonZoomedSize_() const;

    // --- Natural sizes ---
    virtual osg::Vec2i calcPictureSize_(InteractiveState state, int inner);
    virtual osg::Vec2i calcImageSize_(Image::Info const& info);
    virtual osg::Vec2i calcBkgSize_(InteractiveState state, int inner);
    virtual osg::Vec2i calcTextSize_(InteractiveState state, int inner);
    virtual osg::Vec2i calcTextSize2_(qor::basic_string<wchar_t> const& theText, Text::Info const& info,
                                      osg::Vec2i const& size);
    /// The focus rectangle before its insets; the empty rectangle without a widget.
    virtual osg::RectImpl<osg::Vec2i> getFocusRectBounds_() const;
    virtual bool getFocusRectVisible_() const;

    // --- Layout ---
    virtual void redraw_();
    virtual void redrawBkg_(InteractiveState state, int inner);
    virtual void redrawText_(InteractiveState state, int inner);
    /// Makes, changes or (without `info`) destroys `target`.
    virtual void redrawImage_(Image*& target, Image::Info const* info);
    virtual void redrawImage_(InteractiveState state, int inner);
    virtual void redrawFocusRect_();

    // --- Drawing: background, then clipped picture, text, children ---
    virtual void draw_();
    virtual void drawBkg_();
    virtual void drawText_();
    virtual void drawImage_();
    virtual void drawChildren_();
    virtual void drawToTarget_(osg::Vec2i const& size);
    virtual void make_(GraphicCommands* commands);
    virtual void makeBkg_(GraphicCommands* commands);
    virtual void makeText_(GraphicCommands* commands);
    virtual void makeImage_(GraphicCommands* commands);
    virtual void makeChildren_(GraphicCommands* commands);
    virtual void makeBeginClipByInsets(GraphicCommands* commands);
    virtual void makeEndClipByInsets(GraphicCommands* commands);

    // --- Lua: the skin's table (for the sub-skins, the table "skins") is on the top of the stack ---
    virtual void loadSkin_(lua_State* L);
    virtual void loadSkinData_(lua_State* L);
    virtual void loadSubSkins_(lua_State* L);
    virtual void loadSubSkin_(lua_State* L, char const* name, Data& target);
    virtual void loadSubSkin_(lua_State* L, char const* name, Skin* target);
    virtual void unloadSkin_(lua_State* L) const;
    virtual void unloadSkinData_(lua_State* L) const;
    virtual void unloadSubSkins_(lua_State* L) const;
    virtual void unloadSubSkin_(lua_State* L, char const* name, Data const& source) const;
    virtual void unloadSubSkin_(lua_State* L, char const* name, Skin const* source) const;
    /// Lets go of the data, destroying it if owned.
    virtual void clearSkinData_();

    // --- Target ---
    virtual void createTarget_();
    virtual void doRedrawTarget_();
    virtual void updateTarget_();
    /// Whether text lines below the widget's bottom are dropped.
    virtual bool deleteInvisibleTextLines() const;

    /// The widget's text with spaces for its tabs. Good until the text changes or the next call.
    qor::basic_string<wchar_t> const& getDisplayText_();

    Widget* widget = nullptr;
    Data* data = nullptr;
    Bkg* bkg = nullptr;
    Text* text = nullptr;
    Image* image = nullptr;
    FocusRect* focusRect = nullptr;
    bool textChanged = true;
    bool sizeChanged = true;
    bool ownsData = true;
    std::shared_ptr<vtxFrameBuffer> target;
    std::shared_ptr<Image> targetImage;
    ShaderEffect* effect = nullptr;
    int targetMsaa = 0;
    int targetMips = 1;
    osg::Vec2i targetSize;

private:
    friend class gui::Widget;

    /// Whether the widget's limits, and its natural size, stay until `Widget::forgetSizes_`: no function but the
    /// toolkit's own has a part in them, and neither size nor state of the widget, nor a picture, counts.
    bool limitsLast_() const;
    bool sizeLasts_() const;

    /// The widget's text with spaces for tabs, kept while neither changes.
    struct ExpandedText {
        qor::basic_string<wchar_t> source;
        qor::basic_string<wchar_t> text;
        int tabSpaces;
    };

    static Skin*& getFirstNamed_();
    static Skin*& getLastNamed_();
    void addName_(qor::basic_string<char> names);
    void forgetNames_();
    void readData_(lua_State* L, Data& target);
    bool getTargetSizeSet_() const;
    osg::Vec2i getWantedTargetSize_() const;
    bool isClippedByInsets_() const;
    osg::RectImpl<osg::Vec2i> getInsetsClip_() const;

    /// What the class of this object leaves as Skin has it.
    enum OwnWays : unsigned { DrawsInOneGo = 1, EntersDrawing = 2, RedrawsInOneGo = 4 };
    static unsigned learnOwnWays_(VirtualTable table);
    bool hasWays_(unsigned ways);
    /// What the steps of `redraw_` do with a look, null for none.
    void showBkg_(Bkg::Info const* info);
    void showText_(Text::Info const* info);
    /// What the steps of `draw_` do together in a class that overrides none of them.
    void drawInOneGo_();
    /// The same for `make_`.
    void makeInOneGo_(GraphicCommands* commands);

    VirtualMemo ownWays_;
    /// Null unless the text has tabs.
    std::unique_ptr<ExpandedText> expanded_;
    /// Null until a text was measured.
    std::unique_ptr<TextMeasure> textMeasure_;
    /// Place among the data's users; -1 outside.
    int dataUserIndex_ = -1;
    /// The names by which it was loaded, each with an end of line, in the order of loading. Skins with names are linked
    /// in the order in which they were loaded last.
    qor::basic_string<char> names_;
    Skin* previousNamed_ = nullptr;
    Skin* nextNamed_ = nullptr;
};

}  // namespace skin
}  // namespace gui
