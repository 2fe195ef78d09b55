#pragma once

#include <memory>
#include <string>

#include "platform/qor/Lua.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/fuzz/shared/FuzzInput.h"
#include "tests/support/WidgetZoo.h"

namespace fuzz {

/// The host that a target keeps from input to input: trace back end, shipped fonts only, a muted log.
inline support::ZooHost& getHost() {
    static support::ZooHost* const host = [] {
        muteLog();
        auto* const made = new support::ZooHost;
        vtxRenderer::get()->getFontManager()->setSystemFontsUsed(false);
        return made;
    }();
    return *host;
}

inline void checkMisuse(vtxTraceLog const& log) {
    for (qor::string const& misuse : log.getMisuses())
        check(false, misuse.c_str());
}

}  // namespace fuzz
