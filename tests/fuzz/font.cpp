// Any bytes as a font file: opened, measured, shaped and rasterised at several sizes.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFontCatalog.h"
#include "platform/vtx/vtxFontChain.h"
#include "platform/vtx/vtxGlyphSet.h"
#include "platform/vtx/vtxTextureStore.h"
#include "tests/fuzz/shared/FuzzInput.h"

namespace {

using fuzz::check;

std::string const& getPath() {
    static std::string const path =
        (std::filesystem::temp_directory_path() / ("vorlex-fuzz-" + std::to_string(getpid()) + ".ttf")).string();
    return path;
}

/// The glyphs at one size, rasterised into pages and sent to a device.
void checkGlyphs(vtxFontChain const& chain, qor::vector<unsigned> const& glyphs, double size, double blur) {
    vtxTraceDevice device;
    device.getLog()->setRecording(false);
    vtxTextureStore store(device);
    device.openPass();
    {
        vtxGlyphPages pages(store);
        vtxGlyphSet set(chain, size, blur);
        for (unsigned const number : glyphs) {
            int const phase = int(number) % set.getPhaseCount();
            vtxGlyphSet::Glyph const& glyph = set.get(vtxPlacedGlyph{0, number, 0, 0}, phase, pages);
            vtxShaderQuads::Quad const& quad = glyph.quad;
            check(!glyph.page || (quad.uMin >= 0 && quad.vMin >= 0 && quad.uMax <= 1 && quad.vMax <= 1 && quad.w > 0 &&
                                  quad.h > 0),
                  "a glyph lies inside its page");
        }
        store.flushUploads(vtxTextureStore::Pages::Glyph);
        set.clear(pages);
        pages.flush();
        check(pages.getPageCount() == 0, "a page goes with its glyphs");
    }
    store.releaseDevice();
    device.closePass();
    for (qor::string const& misuse : device.getLog()->getMisuses())
        check(false, misuse.c_str());
}

void use(vtxFontCatalog& catalog, vtxFontFace& face) {
    check(face.getDescender() <= 0, "the descender is not above the baseline");
    check(face.getLineHeight() >= face.getAscender() - face.getDescender(), "lines do not overlap");
    vtxFontChain chain(catalog, face);
    qor::vector<vtxPlacedGlyph> glyphs;
    qor::vector<unsigned> seen;
    for (std::wstring_view const text :
         {L"AVA To fi\x300x", L"\x634\x645\x633 \x915\x94D\x937", L"g", L"", L"\x1F600\xFFFD\x10FFFF\xD800\t"}) {
        vtxEm const width = chain.measure(text);
        glyphs.clear();
        auto const collectPlain = [&](std::wstring_view characters, vtxEm const*) {
            for (wchar_t const character : characters)
                glyphs.push_back(chain.getPlain(char32_t(character)));
        };
        auto const collect = [&](vtxPlacedGlyph const& glyph) { glyphs.push_back(glyph); };
        check(chain.layOut(text, collectPlain, collect) == width, "measuring is laying out without the glyphs");
        check(chain.measure(text) == width, "a second measuring gives the same");
        for (vtxPlacedGlyph const& glyph : glyphs) {
            check(&chain.getFace(glyph.face) == &face, "there is only the one face");
            seen.push_back(glyph.glyph);
        }
        vtxGlyphBitmap bitmap;
        if (!glyphs.empty() && face.rasterise(glyphs.front().glyph, 256.0, 0, 0.0, bitmap))
            check(bitmap.coverage.size() <= size_t(vtxFontFace::maxBitmapSide) * vtxFontFace::maxBitmapSide,
                  "a glyph does not fill the memory");
    }
    checkGlyphs(chain, seen, 13.4, 1.0);
    checkGlyphs(chain, {0, 1, 2, 3, 0xFFFF}, 300.0, 0.0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    fuzz::muteLog();
    std::ofstream(getPath(), std::ios::binary).write(reinterpret_cast<char const*>(data), std::streamsize(size));
    vtxFontCatalog catalog;
    catalog.setSystemFontsUsed(false);
    qor::string error;
    vtxFontFace* const face = catalog.find(getPath().c_str(), error);
    check(face ? error.empty() : !error.empty(), "a font is found or the cause is told");
    if (face)
        use(catalog, *face);
    std::filesystem::remove(getPath());
    return 0;
}
