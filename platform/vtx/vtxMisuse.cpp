#include "platform/vtx/vtxMisuse.h"

#include "platform/qor/Log.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxDevice.h"

namespace {

char const* getText(vtxMisuse misuse) {
    switch (misuse) {
        case vtxMisuse::NoPass:
            return "drawing while no pass is open; call beginDraw or pushTechnique first";
        case vtxMisuse::PassOpen:
            return "beginDraw inside a pass; call endDraw first, or use pushTechnique to nest";
        case vtxMisuse::PassNotOpen:
            return "endDraw without beginDraw";
        case vtxMisuse::EmptyStack:
            return "a pop without its push; use the guards";
        case vtxMisuse::UnbalancedPass:
            return "pushes and pops since beginDraw do not match at endDraw; use the guards";
        case vtxMisuse::UnbalancedTarget:
            return "pushes and pops inside a target do not match at its end; use the guards";
        case vtxMisuse::DeadTexture:
            return "a texture was drawn after it was released; keep its reference, or its frame buffer, until then";
        case vtxMisuse::DeadGeometry:
            return "a geometry was drawn after it was ended; set another before";
        case vtxMisuse::BadGeometry:
            return "a geometry has indices past its vertices, or a draw goes past its indices; nothing of it is drawn";
        case vtxMisuse::BadNumber:
            return "a coordinate or matrix is not finite; what it belongs to is not drawn";
        case vtxMisuse::TargetIntoItself:
            return "a frame buffer was drawn into itself; draw it after renderToTarget has returned";
        case vtxMisuse::EffectPass:
            return "beginPass, drawEffect and endPass of an effect belong together, in this order";
        case vtxMisuse::Count:
            break;
    }
    return "";
}

}  // namespace

void vtxMisuseLog::report(vtxMisuse misuse, char const* detail) {
    qor::string text;
    text.format("%s: %s", detail, getText(misuse));
    bool& logged = logged_[static_cast<int>(misuse)];
    if (!logged)
        qor_logf("VTX", 64, "Wrong use of the renderer in %s\n", text.c_str());
    logged = true;
    device_.reportMisuse(text.c_str());
}
