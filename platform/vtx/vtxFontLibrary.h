#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxSizedFont.h"

#include <atomic>
#include <functional>
#include <memory>
#include <tuple>

class vtxTextureStore;

/// The font manager: remembers what names stand for and keeps the fonts in use, and for a while those that are not.
/// May be called from any thread but for doRedraw, which belongs to the hand-over.
class vtxFontLibrary final : public vtxFontManager {
public:
    vtxFontLibrary(vtxTextureStore& textures, std::function<unsigned()> getScaleEpoch);
    ~vtxFontLibrary() override;

    // vtxFontManager:
    std::shared_ptr<vtxFont> getFont(qor::basic_string<char> const& name, int size, vtxFont::Blur blur) override;
    void doRedraw() override;
    unsigned getScaleEpoch() const override { return getScaleEpoch_() + nameChanges_.load(std::memory_order_acquire); }
    void setSystemFontsUsed(bool used) override;
    unsigned getFontEpoch() const override { return nameChanges_.load(std::memory_order_acquire); }
    void reloadChanged(qor::string& error) override;
    qor::vector<qor::string> getFiles() const override;

    // --- Counters for tests and statistics ---
    int getFontCount() const;
    int getPageCount() const;

private:
    static constexpr unsigned idleRedraws = 300;
    using FontKey = std::tuple<vtxFontFace*, int, vtxFont::Blur>;
    struct Kept {
        std::shared_ptr<vtxSizedFont> font;
        unsigned idle = 0;
    };

    void forgetNames_();
    vtxFontFace* findFace_(qor::string const& name, qor::string& message);

    std::shared_ptr<vtxFontStore> store_;
    std::function<unsigned()> getScaleEpoch_;
    qor::hash_map<qor::string, vtxFontFace*> names_;
    qor::map<FontKey, Kept> fonts_;
    qor::vector<qor::string> rootsWithoutFont_;
    unsigned scaleEpoch_;
    std::atomic<unsigned> nameChanges_{0};  ///< how often names may have come to stand for other fonts
};
