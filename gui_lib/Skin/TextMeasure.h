#pragma once

#include <memory>

#include <osg/Vec2i>

#include "platform/qor/String.h"

class vtxFont;

namespace gui {

class Text;

namespace skin {

/// The last room that a text took, so that layouts may ask for it again and again. It holds as long as text, font,
/// scale and what the lines are cut by are the same.
class TextMeasure {
public:
    /// As `measured.calcSize(text, size)`.
    osg::Vec2i calcSize(Text const& measured, qor::basic_string<wchar_t> const& text, osg::Vec2i const& size);
    /// How many texts were measured in all, for tests.
    static unsigned long getMeasureCount();

private:
    struct Limits {
        int lineHeight = 0;
        int horzOffset = 0;
        int vertOffset = 0;
        bool wrapping = false;
        bool useEllipsis = false;
        /// Width for a line; 0 where lines are not cut.
        int width = 0;

        bool operator==(Limits const&) const = default;
    };

    static Limits getLimits_(Text const& measured, osg::Vec2i const& size);

    qor::basic_string<wchar_t> text_;
    std::weak_ptr<vtxFont> font_;
    unsigned scaleEpoch_ = 0;
    Limits limits_;
    osg::Vec2i room_;
};

}  // namespace skin
}  // namespace gui
