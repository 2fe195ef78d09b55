#include "platform/vtx/vtxFontLibrary.h"

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxLog.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

namespace {

/// Sums of a few line heights of such a font still fit into an int, whatever its metrics.
constexpr int mostSize = 65536;

}  // namespace

vtxFontLibrary::vtxFontLibrary(vtxTextureStore& textures, std::function<unsigned()> getScaleEpoch)
    : store_(std::make_shared<vtxFontStore>(textures)),
      getScaleEpoch_(std::move(getScaleEpoch)),
      scaleEpoch_(getScaleEpoch_()) {}

vtxFontLibrary::~vtxFontLibrary() {
    std::lock_guard const lock(store_->mutex);
    for (auto const& [key, kept] : fonts_)
        kept.font->forgetGlyphs();
    store_->detach();
}

std::shared_ptr<vtxFont> vtxFontLibrary::getFont(qor::basic_string<char> const& name, int size, vtxFont::Blur blur) {
    if (name.empty() || size < 1)
        return nullptr;
    size = std::min(size, mostSize);
    if (blur < vtxFont::BlurNone || blur > vtxFont::BlurLarge)
        blur = blur < vtxFont::BlurNone ? vtxFont::BlurNone : vtxFont::BlurLarge;
    qor::string message;
    std::shared_ptr<vtxFont> font;
    {
        std::lock_guard const lock(store_->mutex);
        if (vtxFontFace* const face = findFace_(name, message)) {
            Kept& kept = fonts_[FontKey(face, size, blur)];
            if (!kept.font)
                kept.font = std::make_shared<vtxSizedFont>(store_, store_->getChain(*face), size, blur);
            font = kept.font;
        }
    }
    if (!message.empty())
        qor_logf(vtxLogTag, vtxLogProblem, "%s", message.c_str());
    return font;
}

/// `message` is what there is to tell about a name that is looked up for the first time.
vtxFontFace* vtxFontLibrary::findFace_(qor::string const& name, qor::string& message) {
    auto const known = names_.find(name);
    if (known != names_.end() && (known->second || rootsWithoutFont_ == qor::getAssetRoots()))
        return known->second;
    qor::string error;
    vtxFontFace* const face = store_->catalog.find(name, error);
    if (!face) {
        rootsWithoutFont_ = qor::getAssetRoots();
        message.format(
            "No font for \"%s\": %s, and no other font can be read. Ship one in the folder \"fonts\" of an "
            "asset root",
            name.c_str(), error.c_str());
    } else if (!error.empty()) {
        message.format("Font \"%s\" is replaced by \"%s\": %s", name.c_str(), face->getFullName().c_str(),
                       error.c_str());
    }
    names_[name] = face;
    return face;
}

void vtxFontLibrary::doRedraw() {
    std::lock_guard const lock(store_->mutex);
    unsigned const before = std::exchange(scaleEpoch_, getScaleEpoch_());
    for (auto entry = fonts_.begin(); entry != fonts_.end();) {
        Kept& kept = entry->second;
        if (before != scaleEpoch_)
            kept.font->forgetGlyphs();
        kept.idle = kept.font.use_count() == 1 ? kept.idle + 1 : 0;
        entry = kept.idle > idleRedraws ? fonts_.erase(entry) : std::next(entry);
    }
    store_->trim();
}

void vtxFontLibrary::setSystemFontsUsed(bool used) {
    std::lock_guard const lock(store_->mutex);
    if (store_->catalog.getSystemFontsUsed() == used)
        return;
    store_->catalog.setSystemFontsUsed(used);
    forgetNames_();
}

void vtxFontLibrary::forgetNames_() {
    names_.clear();
    nameChanges_.fetch_add(1, std::memory_order_acq_rel);
}

void vtxFontLibrary::reloadChanged(qor::string& error) {
    std::lock_guard const lock(store_->mutex);
    if (!store_->catalog.reloadChanged(error))
        return;
    store_->retireChains();
    forgetNames_();
}

qor::vector<qor::string> vtxFontLibrary::getFiles() const {
    std::lock_guard const lock(store_->mutex);
    return store_->catalog.getFiles();
}

int vtxFontLibrary::getFontCount() const {
    std::lock_guard const lock(store_->mutex);
    return static_cast<int>(fonts_.size());
}

int vtxFontLibrary::getPageCount() const {
    std::lock_guard const lock(store_->mutex);
    return store_->pages ? store_->pages->getPageCount() : 0;
}
