#pragma once

#include <osg/Vec4f>

#include "gui_lib/graphics/GraphicCommand.h"
#include "platform/qor/SmallVector.h"

class vtxTextString;

namespace gui {

/// Draws text strings, which it borrows from a pool of its own.
class VORLEX_API GraphicCommandDrawText : public SimpleGraphicCommand<GraphicCommandDrawText> {
public:
    /// A null colour leaves each string its own.
    GraphicCommandDrawText* set(osg::Vec4f const* newColor) {
        hasColor = newColor != nullptr;
        if (newColor)
            color = *newColor;
        return this;
    }
    /// Appends a pooled string, to be filled by the caller, drawn at `scale` (above 0).
    vtxTextString* addString(float scale) {
        vtxTextString* const string = takeString_();
        if (entries.size() < entries.capacity()) [[likely]]
            entries.push_back(Entry{string, scale});
        else
            addFurtherEntry_(Entry{string, scale});
        return string;
    }
    void draw() override;
    void release() override;

    /// Ends the idle strings; for the end of the toolkit, while the renderer still lives.
    static void destroyTextStrings();

private:
    struct Entry {
        vtxTextString* string;
        float scale;
    };

    static vtxTextString* takeString_() {
        auto& pool = textStringPool_.value;
        if (pool.empty()) [[unlikely]]
            return makeString_();
        vtxTextString* const string = pool.back();
        pool.pop_back();
        return string;
    }
    static vtxTextString* makeString_();
    void addFurtherEntry_(Entry const& entry);

    /// There before the program begins and never destroyed, as the pools of the commands.
    static inline constinit qor::Immortal<qor::vector<vtxTextString*>> textStringPool_{};

    osg::Vec4f color;
    bool hasColor = false;
    qor::small_vector<Entry, 4> entries;
};

}  // namespace gui
