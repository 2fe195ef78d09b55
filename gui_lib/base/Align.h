#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Where a length lies within an available length on one axis, shifted by an offset. GUI units.
struct VORLEX_API Align {
    enum Type : int { Min = 0, Center = 1, Max = 2, Stretch = 3 };

    Align() = default;
    Align(Type alignType, int alignOffset) : type(alignType), offset(alignOffset) {}

    /// The place of `length` within 0 to `available`. Stretch takes all of it and ignores the offset. A type that is
    /// none of the four is logged and acts as Min.
    void calc(int length, int available, int& from, int& to) const {
        from = 0;
        to = available;
        if (type != Stretch)
            calcUnstretched_(length, available, from, to);
    }

    bool operator==(Align const&) const = default;

    Type type = Min;
    int offset = 0;

private:
    void calcUnstretched_(int length, int available, int& from, int& to) const;
};

}  // namespace gui
