#include "gui_lib/base/Align.h"

#include "gui_lib/base/SaturatingMath.h"
#include "platform/qor/Log.h"

namespace gui {

void Align::calcUnstretched_(int length, int available, int& from, int& to) const {
    switch (type) {
        case Center:
            from = saturate(offset + (std::int64_t(available) - length) / 2);
            break;
        case Max:
            from = saturate(std::int64_t(offset) - length + available);
            break;
        default:
            qor_logf("VORLEX", 8, "Invalid Align type!");
            [[fallthrough]];
        case Min:
            from = offset;
            break;
    }
    to = saturatingAdd(from, length);
}

}  // namespace gui
