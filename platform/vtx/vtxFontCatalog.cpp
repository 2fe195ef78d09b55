#include "platform/vtx/vtxFontCatalog.h"

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxLog.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

bool isFontFile(std::string_view name) {
    size_t const dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return false;
    qor::string const ending = vtxGetFamilyKey(name.substr(dot + 1));
    return ending == "ttf" || ending == "otf" || ending == "ttc" || ending == "otc";
}

struct StyleWord {
    char const* word;
    int weight;  ///< 0: says nothing of the weight
    bool italic;
};

constexpr StyleWord styleWords[] = {
    {"thin", 100, false},    {"extralight", 200, false}, {"ultralight", 200, false}, {"light", 300, false},
    {"regular", 400, false}, {"normal", 400, false},     {"book", 400, false},       {"roman", 400, false},
    {"medium", 500, false},  {"semibold", 600, false},   {"demibold", 600, false},   {"demi", 600, false},
    {"bold", 700, false},    {"extrabold", 800, false},  {"ultrabold", 800, false},  {"black", 900, false},
    {"heavy", 900, false},   {"italic", 0, true},        {"oblique", 0, true}};

/// Takes one style word, which may be written as two ("Semi Bold"), off the end of a name.
bool takeStyleWord(std::string_view& name, vtxFontStyle& style) {
    auto const getStart = [](std::string_view text) {
        size_t const blank = text.find_last_of(" -");
        return blank == std::string_view::npos ? 0 : blank;
    };
    size_t const last = getStart(name);
    size_t const lastButOne = last ? getStart(name.substr(0, last)) : 0;
    for (size_t const start : {lastButOne, last}) {
        qor::string const word = vtxGetFamilyKey(name.substr(start));
        auto const* const found = std::find_if(std::begin(styleWords), std::end(styleWords),
                                               [&](StyleWord const& candidate) { return word == candidate.word; });
        if (!start || found == std::end(styleWords))
            continue;
        if (found->weight)
            style.weight = found->weight;
        style.italic |= found->italic;
        name = name.substr(0, start);
        return true;
    }
    return false;
}

/// From here on a shipped face is so unlike the style that was asked for that the system is asked as well.
constexpr int nearDistance = 100;
constexpr int farDistance = 1 << 20;

/// How far a face is from a style; another slant counts more than any weight.
int getDistance(vtxFontStyle const& a, vtxFontStyle const& b) {
    return std::abs(a.weight - b.weight) + (a.italic != b.italic ? 1000 : 0);
}

}  // namespace

vtxFontCatalog::vtxFontCatalog() {
    if (FT_Init_FreeType(&library_))
        library_ = nullptr;
}

vtxFontCatalog::~vtxFontCatalog() {
    faces_.clear();
    replaced_.clear();
    if (library_)
        FT_Done_FreeType(library_);
}

// --- Opening ---

vtxFontFace* vtxFontCatalog::open_(qor::string const& path, int index, qor::string& error) {
    auto const [place, added] = faces_.try_emplace(Key(path, index));
    Opened& opened = place->second;
    if (added && library_) {
        opened.stamp = qor::getFileStamp(path);
        opened.face = vtxFontFace::open(library_, path, index, error);
    } else if (!opened.face) {
        error = "it is no font that can be used";
    }
    return opened.face.get();
}

bool vtxFontCatalog::reloadChanged(qor::string& error) {
    bool changed = false;
    for (auto& [key, opened] : faces_) {
        auto const& [path, index] = key;
        qor::FileStamp const stamp = qor::getFileStamp(path);
        if (stamp == opened.stamp || !library_)
            continue;
        opened.stamp = stamp;
        qor::string cause;
        std::unique_ptr<vtxFontFace> face = vtxFontFace::open(library_, path, index, cause);
        if (!face) {
            error += path + ": " + cause + "\n";
            continue;
        }
        std::swap(face, opened.face);
        replaced_.push_back(std::move(face));
        changed = true;
    }
    scanned_ = scanned_ && !changed;
    return changed;
}

qor::vector<qor::string> vtxFontCatalog::getFiles() const {
    qor::vector<qor::string> names;
    for (auto const& [key, opened] : faces_)
        names.push_back(key.first);
    return names;
}

vtxFontFace* vtxFontCatalog::open_(vtxSystemFonts::Place const& place) {
    qor::string error;
    return open_(place.path, place.index, error);
}

// --- Shipped fonts ---

qor::vector<vtxFontFace*> const& vtxFontCatalog::getShipped() {
    scanShipped_();
    return shipped_;
}

void vtxFontCatalog::scanShipped_() {
    qor::vector<qor::string> roots = qor::getAssetRoots();
    if (scanned_ && roots == roots_)
        return;
    scanned_ = true;
    roots_ = std::move(roots);
    shipped_.clear();
    for (qor::string const& root : roots_)
        scanFolder_(root + "/fonts");
}

void vtxFontCatalog::scanFolder_(qor::string const& folder) {
    qor::vector<qor::string> names;
    std::error_code ignored;
    for (auto const& entry : std::filesystem::directory_iterator(folder.c_str(), ignored)) {
        qor::string const name = entry.path().filename().c_str();
        if (isFontFile(name))
            names.push_back(name);
    }
    qor::string order, error;
    qor::readFile(folder + "/order.txt", order, error, 65536);
    order.insert(order.begin(), '\n');
    order += '\n';
    std::erase(order, '\r');
    std::sort(names.begin(), names.end(), [&order](qor::string const& a, qor::string const& b) {
        auto const getPlace = [&order](qor::string const& name) { return order.find("\n" + name + "\n"); };
        return std::make_pair(getPlace(a), std::cref(a)) < std::make_pair(getPlace(b), std::cref(b));
    });
    for (qor::string const& name : names) {
        error.clear();
        vtxFontFace* const face = open_(folder + "/" + name, 0, error);
        if (face && std::find(shipped_.begin(), shipped_.end(), face) == shipped_.end())
            shipped_.push_back(face);
        else if (!face)
            qor_logf(vtxLogTag, vtxLogProblem, "Font file \"%s/%s\" is left out: %s", folder.c_str(), name.c_str(),
                     error.c_str());
    }
}

vtxFontFace* vtxFontCatalog::findShippedFamily_(std::string_view familyKey, vtxFontStyle const& style) {
    vtxFontFace* best = nullptr;
    for (vtxFontFace* const face : getShipped()) {
        if (vtxGetFamilyKey(face->getFamily()) == familyKey &&
            (!best || getDistance(face->getStyle(), style) < getDistance(best->getStyle(), style)))
            best = face;
    }
    return best;
}

// --- Names ---

vtxFontFace* vtxFontCatalog::findFile_(qor::string const& name, qor::string& error) {
    qor::string path = qor::findFile(name);
    if (path.empty())
        path = qor::findFile("fonts/" + name);
    if (path.empty()) {
        error = "there is no such file in the working directory or in an asset root";
        return nullptr;
    }
    return open_(path, 0, error);
}

vtxFontFace* vtxFontCatalog::findFamily_(qor::string const& name) {
    qor::string const key = vtxGetFamilyKey(name);
    for (vtxFontFace* const face : getShipped()) {
        if (vtxGetFamilyKey(face->getFullName()) == key || (key == "monospace" && face->isFixedPitch()))
            return face;
    }
    if (key == "sans" || key == "sansserif")
        return findStandIn_({});
    // The family may itself end in a style word, so the longest name is tried first.
    vtxFontStyle style;
    std::string_view family(name);
    do {
        qor::string const wanted(family);
        vtxFontFace* const shipped = findShippedFamily_(vtxGetFamilyKey(wanted), style);
        int const distance = shipped ? getDistance(shipped->getStyle(), style) : farDistance;
        if (distance <= nearDistance)
            return shipped;
        vtxSystemFonts::Place place;
        if (systemFontsUsed_ && system_.findFamily(wanted, style, place)) {
            vtxFontFace* const face = open_(place);
            if (face && getDistance(face->getStyle(), style) < distance)
                return face;
        }
        if (shipped)
            return shipped;
    } while (takeStyleWord(family, style));
    return nullptr;
}

vtxFontFace* vtxFontCatalog::findStandIn_(vtxFontStyle const& style) {
    vtxFontFace* regular = nullptr;
    for (vtxFontFace* const face : getShipped()) {
        if (face->getGlyph('A') && getDistance(face->getStyle(), {}) == 0 && !face->isFixedPitch()) {
            regular = face;
            break;
        }
    }
    if (regular)
        return findShippedFamily_(vtxGetFamilyKey(regular->getFamily()), style);
    if (!shipped_.empty())
        return shipped_.front();
    vtxSystemFonts::Place place;
    return systemFontsUsed_ && system_.findAny(style, place) ? open_(place) : nullptr;
}

vtxFontFace* vtxFontCatalog::find(qor::string const& name, qor::string& error) {
    error.clear();
    bool const isPath = isFontFile(name) || name.find_first_of("/\\") != qor::string::npos;
    if (vtxFontFace* const face = isPath ? findFile_(name, error) : findFamily_(name))
        return face;
    vtxFontStyle style;
    std::string_view family(name);
    if (isPath)
        family = family.substr(0, std::min(family.rfind('.'), family.size()));
    else
        error = "no shipped and no installed font has this name";
    while (takeStyleWord(family, style)) {
    }
    return findStandIn_(style);
}

vtxFontFace* vtxFontCatalog::findForCodePoint(char32_t codePoint, vtxFontStyle const& style) {
    vtxSystemFonts::Place place;
    if (!systemFontsUsed_ || !system_.findForCodePoint(codePoint, style, place))
        return nullptr;
    vtxFontFace* const face = open_(place);
    return face && face->getGlyph(codePoint) ? face : nullptr;
}
