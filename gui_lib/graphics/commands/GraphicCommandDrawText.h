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
    GraphicCommandDrawText* set(osg::Vec4f const* color);
    /// Appends a pooled string, to be filled by the caller, drawn at `scale` (above 0).
    vtxTextString* addString(float scale);
    void draw() override;
    void release() override;

    /// Ends the idle strings; for the end of the toolkit, while the renderer still lives.
    static void destroyTextStrings();

private:
    struct Entry {
        vtxTextString* string;
        float scale;
    };

    static qor::vector<vtxTextString*>& textStringPool();

    osg::Vec4f color;
    bool hasColor = false;
    qor::small_vector<Entry, 4> entries;
};

}  // namespace gui
