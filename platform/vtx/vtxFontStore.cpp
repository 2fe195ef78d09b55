#include "platform/vtx/vtxFontStore.h"

#include "platform/qor/Truncate.h"

vtxFontChain& vtxFontStore::getChain(vtxFontFace& face) {
    std::unique_ptr<vtxFontChain>& chain = chains_[&face];
    if (!chain)
        chain = std::make_unique<vtxFontChain>(catalog, face);
    return *chain;
}

std::shared_ptr<vtxGlyphSet> vtxFontStore::getGlyphs(vtxFontChain const& chain, double size, double blur) {
    if (!pages)
        return nullptr;
    SetKey const key(&chain, qor::truncateToInt(size * 64.0 + 0.5), qor::truncateToInt(blur * 64.0 + 0.5));
    std::shared_ptr<vtxGlyphSet>& set = sets_[key];
    if (!set)
        set = std::make_shared<vtxGlyphSet>(chain, size, blur);
    return set;
}

void vtxFontStore::trim() {
    for (auto const& [face, chain] : chains_)
        chain->trim();
    // Only this owner is left: nobody can take a new hold without the lock.
    std::erase_if(sets_, [this](auto const& entry) {
        vtxGlyphSet& set = *entry.second;
        set.idle = entry.second.use_count() == 1 ? set.idle + 1 : 0;
        if (set.idle <= idleTrims)
            return false;
        set.clear(*pages);
        return true;
    });
    pages->flush();
}

void vtxFontStore::retireChains() {
    for (auto& [face, chain] : chains_)
        retired_.push_back(std::move(chain));
    chains_.clear();
}

void vtxFontStore::detach() {
    sets_.clear();
    pages.reset();
}
