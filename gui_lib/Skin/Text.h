#pragma once

#include <memory>
#include <string_view>

#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/base/Align2.h"
#include "gui_lib/base/Insets.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFont.h"

class vtxTextString;

namespace gui {

class GraphicCommands;

/// A text laid out in lines inside a box: wrapped or not, shortened with an ellipsis or not, aligned as one block
/// vertically and by lines horizontally.
/// Coordinates: GUI units, relative to the owner.
/// Order: setters, `redraw`, `doRedraw`, then `draw` or `make`.
class VORLEX_API Text {
public:
    /// What a skin says about a text.
    struct VORLEX_API Info {
        /// File or family name.
        qor::basic_string<char> font;
        int fontSize = 0;
        /// 0: the font's own.
        int lineHeight = 0;
        int lineThroughHeight = 1;
        int lineThroughOffset = 1;
        vtxFont::Blur blur = vtxFont::BlurNone;
        osg::Vec4f color = osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f);
        osg::Vec4f bkgColor;
        osg::Vec4f shadowColor;
        osg::Vec4f blurColor;
        osg::Vec4f lineThroughColor;
        osg::Vec2i shadowOffset;
        Align2 align = Align2(Align(Align::Min, 0), Align(Align::Center, 0));

        bool operator==(Info const&) const = default;
    };

    Text();
    ~Text();
    Text(Text const&) = delete;
    Text& operator=(Text const&) = delete;

    // --- Style ---
    void set(Info const& info);
    /// As `set`, for an `info` that stays as it is while `LookEpoch` does: at once where it is what was set last.
    void setShared(Info const& info);
    void setFont(qor::basic_string<char> const& font, int size, vtxFont::Blur blur);
    qor::basic_string<char> const& getFont() const { return info.font; }
    int getFontSize() const { return info.fontSize; }
    vtxFont::Blur getBlur() const { return info.blur; }
    void setColor(osg::Vec4f const& color);
    osg::Vec4f getColor() const { return info.color; }
    void setBkgColor(osg::Vec4f const& color);
    osg::Vec4f getBkgColor() const { return info.bkgColor; }
    void setBlurColor(osg::Vec4f const& color);
    osg::Vec4f getBlurColor() const { return info.blurColor; }
    void setLineThroughColor(osg::Vec4f const& color);
    osg::Vec4f getLineThroughColor() const { return info.lineThroughColor; }
    void setLineThroughHeight(int height);
    int getLineThroughHeight() const { return info.lineThroughHeight; }
    void setLineThroughOffset(int offset);
    int getLineThroughOffset() const { return info.lineThroughOffset; }
    void setShadowColor(osg::Vec4f const& color);
    osg::Vec4f getShadowColor() const { return info.shadowColor; }
    void setShadowOffset(osg::Vec2i const& offset);
    osg::Vec2i getShadowOffset() const { return info.shadowOffset; }

    // --- Layout ---
    void setAlign(Align2 const& align);
    Align2 getAlign() const { return info.align; }
    void setInsets(Insets const& insets);
    Insets const& getInsets() const { return insets; }
    /// 0: the font's own.
    void setLineHeight(int height);
    int getLineHeight() const { return info.lineHeight; }
    void setUseEllipsis(bool use);
    bool getUseEllipsis() const { return useEllipsis; }
    /// Breaks lines at words. Without it only what stands before the first line feed is shown.
    void setWrapping(bool wrap);
    bool getWrapping() const { return wrapping; }
    void setDirty(bool dirty) { textDirty = dirty; }
    bool getDirty() const { return textDirty; }

    /// Room that the text takes in a box of `size`, align offsets included, insets not. (0, 0) without font or text.
    osg::Vec2i calcSize(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size) const;
    /// 0 if neither a height is set nor the font can be had.
    int calcLineHeight() const;
    /// Lines of text strings that exist, which may be fewer than `getTextLines` holds.
    int getLineCount() const { return static_cast<int>(textStrings.size()); }
    qor::vector<qor::basic_string<wchar_t>> const& getTextLines() const { return lines; }

    // --- Drawing ---
    /// Lays the text out in a box of `size`. `deleteInvisibleLines` drops the strings of lines below the box.
    void redraw(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size, bool deleteInvisibleLines);
    void doRedraw();
    void draw() const;
    void draw(osg::Vec4f const& color) const;
    void make(GraphicCommands* commands) const;
    void make(GraphicCommands* commands, osg::Vec4f const& color) const;

private:
    /// While it is the same, a name stands for the same font, which has the same measures.
    struct FontEpoch {
        unsigned generation = 0;
        unsigned scale = 0;

        static FontEpoch now();
        bool operator==(FontEpoch const&) const = default;
    };

    template <typename T>
    void change_(T& field, T const& value);
    template <typename Emit>
    void divideTextIntoLines_(vtxFont const& font, qor::basic_string<wchar_t> const& text, osg::Vec2i const& size,
                              Emit const& emit) const;
    int calcAvailableWidth_(osg::Vec2i const& size) const;
    int calcLineHeight_(vtxFont const& font) const;
    bool isFontKnown_(FontEpoch const& epoch) const;
    bool isLaidOutText_(qor::basic_string<wchar_t> const& text) const;
    void noteText_(qor::basic_string<wchar_t> const& text);
    bool keepsLines_(osg::Vec2i const& size) const;
    bool keepsPlaces_(osg::Vec2i const& size) const;
    void divide_(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size);
    void updateTextStrings_(osg::Vec2i const& size, int lineHeight, bool deleteInvisibleLines);
    void styleTextStrings_(std::size_t first);
    void placeTextStrings_(osg::Vec2i const& size);
    void destroyTextStrings_(std::size_t keep);
    void make_(GraphicCommands* commands, osg::Vec4f const* color) const;

    qor::vector<qor::basic_string<wchar_t>> lines;
    qor::vector<vtxTextString*> textStrings;
    Info info;
    Insets insets;
    bool wrapping = false;
    bool useEllipsis = false;
    bool textDirty = false;
    bool stringsDirty = false;

    // What the strings were laid out for, beside the fields above.
    bool deletedInvisibleLines_ = false;
    /// A field above that lines, places or quads follow from has changed since.
    bool inputChanged_ = true;
    /// Colours have changed since, but not which of them are seen.
    bool colorsChanged_ = false;
    unsigned sharedEpoch_ = 0;
    /// What `info` is a copy of, in that epoch; null for nothing that is shared.
    Info const* shared_ = nullptr;
    /// Null before the first layout.
    std::shared_ptr<vtxFont> font_;
    FontEpoch fontEpoch_;
    osg::Vec2i laidOutSize_;
    /// Of the last line.
    int lineWidth_ = 0;
    /// The text, unless it is the only line as it stands.
    std::unique_ptr<qor::basic_string<wchar_t>> laidOutText_;
};

}  // namespace gui
