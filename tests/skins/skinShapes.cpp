#include "tests/support/SkinShapes.h"

#include <gtest/gtest.h>

#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Soak.h"

namespace {

TEST(SkinShapes, aWrongValueOfAnyKeyHarmsNothingBesideIt) {
    support::LogCapture const log;
    support::ZooHost host;
    vtxRenderer::get()->getFontManager()->setSystemFontsUsed(false);
    support::SkinShapes shapes(host);
    ASSERT_GE(shapes.getShapes().size(), 12u);
    // Neighbouring keys get other kinds, so that a short run meets each of both.
    size_t const step = support::sanitized ? support::byEffort<size_t>(61, 29, 7) : support::byEffort<size_t>(29, 7, 1);
    size_t count = 0;
    for (auto const& shape : shapes.getShapes()) {
        EXPECT_GT(shape.paths.size(), 100u) << shape.skin;
        for (size_t path = 0; path < shape.paths.size(); ++path) {
            for (size_t kind = 0; kind < support::SkinShapes::kindCount; ++kind) {
                if (count++ % step != 0)
                    continue;
                SCOPED_TRACE(shape.paths[path] + " is " + support::SkinShapes::getKindName(kind));
                EXPECT_EQ(shapes.play(shape, {{path, kind}}), "");
            }
        }
    }
}

}  // namespace
