#include "platform/vtx/vtxSystemFonts.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace {

struct PatternDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

int getFontconfigWeight(int weight) { return static_cast<int>(FcWeightFromOpenTypeDouble(weight)); }

bool readPlace(FcPattern* pattern, vtxSystemFonts::Place& place) {
    FcChar8* file = nullptr;
    FcBool scalable = FcTrue;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch)
        return false;
    if (FcPatternGetBool(pattern, FC_SCALABLE, 0, &scalable) == FcResultMatch && !scalable)
        return false;
    place.path = reinterpret_cast<char const*>(file);
    place.index = 0;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &place.index);
    return true;
}

bool hasFamily(FcPattern* pattern, qor::string const& key) {
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i) {
        if (vtxGetFamilyKey(reinterpret_cast<char const*>(family)) == key)
            return true;
    }
    return false;
}

}  // namespace

qor::string vtxGetFamilyKey(std::string_view name) {
    qor::string key;
    for (char const letter : name) {
        if (letter >= 'A' && letter <= 'Z')
            key += static_cast<char>(letter - 'A' + 'a');
        else if (letter != ' ' && letter != '-' && letter != '_')
            key += letter;
    }
    return key;
}

vtxSystemFonts::~vtxSystemFonts() {
    if (config_)
        FcConfigDestroy(config_);
}

bool vtxSystemFonts::open_() {
    if (!opened_)
        config_ = FcInitLoadConfigAndFonts();
    opened_ = true;
    return config_ != nullptr;
}

_FcPattern* vtxSystemFonts::match_(char const* family, char32_t codePoint, vtxFontStyle const& style) {
    if (!open_())
        return nullptr;
    Pattern const wanted(FcPatternCreate());
    if (family)
        FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<FcChar8 const*>(family));
    if (codePoint) {
        FcCharSet* const characters = FcCharSetCreate();
        FcCharSetAddChar(characters, codePoint);
        FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters);
        FcCharSetDestroy(characters);
    }
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, getFontconfigWeight(style.weight));
    FcPatternAddInteger(wanted.get(), FC_SLANT, style.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(config_, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    return FcFontMatch(config_, wanted.get(), &result);
}

bool vtxSystemFonts::findFamily(qor::string const& family, vtxFontStyle const& style, Place& place) {
    Pattern const found(match_(family.c_str(), 0, style));
    return found && hasFamily(found.get(), vtxGetFamilyKey(family)) && readPlace(found.get(), place);
}

bool vtxSystemFonts::findForCodePoint(char32_t codePoint, vtxFontStyle const& style, Place& place) {
    Pattern const found(match_(nullptr, codePoint, style));
    FcCharSet* characters = nullptr;
    return found && FcPatternGetCharSet(found.get(), FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, codePoint) && readPlace(found.get(), place);
}

bool vtxSystemFonts::findAny(vtxFontStyle const& style, Place& place) {
    Pattern const found(match_("sans-serif", 0, style));
    return found && readPlace(found.get(), place);
}
