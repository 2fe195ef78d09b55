#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Mutex.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxTextureRecord.h"

#include <atomic>
#include <memory>

/// Internal to the front half: which textures are alive, the page arrays, and what waits for the device.
/// Functions of the first part may be called from any thread; they take a short lock of their own and never call out.
/// Those of the second part belong to the front half on the drawing thread, inside a pass.
class vtxTextureStore {
public:
    enum class Pages { Picture, Glyph };

    /// Sides of the pages in pixels. Every device can make them.
    static constexpr int picturePageSide = 2048;
    static constexpr int glyphPageSide = 1024;
    static constexpr int maxLayers = 256;

    explicit vtxTextureStore(vtxDevice& device);
    ~vtxTextureStore();
    vtxTextureStore(vtxTextureStore const&) = delete;
    vtxTextureStore& operator=(vtxTextureStore const&) = delete;

    // --- Any thread: textures ---
    /// The texture may be drawn from now on. Not owned.
    void addTexture(vtxTextureRecord const& texture);
    /// It may no longer be drawn. Call before the record goes.
    void removeTexture(vtxTextureRecord const& texture);
    bool isAlive(vtxTexture const* texture) const;
    /// A texture shows another image from now on.
    void noteImageChanged() { pageChanges_.fetch_add(1, std::memory_order_release); }
    /// Grows whenever a texture that lies in a page goes or shows another image: what was worked out from where
    /// textures lie holds no longer.
    unsigned getPageChanges() const { return pageChanges_.load(std::memory_order_acquire); }
    /// Takes over an image whose users are gone: its device texture goes at the next pass, the record with it.
    void retireImage(std::unique_ptr<vtxTextureImage> image);

    // --- Any thread: pages ---
    /// A layer for a new page, or -1 when there is no room for more. What it shows is undefined until uploaded, so
    /// whatever a sampler may touch has to be uploaded, margins included.
    int addPage(Pages pages);
    /// The layer may be given out again.
    void removePage(Pages pages, int layer);
    /// Copies tightly packed pixels (premultiplied RGBA, or one byte a pixel for glyphs) into a page before the next
    /// draw that shows it. `rect` is in pixels of the page.
    void queueUpload(Pages pages, int layer, osg::RectImpl<osg::Vec2i> const& rect, unsigned char const* pixels);

    // --- Drawing thread, in a pass ---
    /// The array texture, 0 while no page was ever made.
    vtxDeviceHandle getArray(Pages pages) const { return get_(pages).handle; }
    bool hasUploads(Pages pages) const { return get_(pages).waiting.load(std::memory_order_acquire) != 0; }
    /// Whether one of the waiting uploads goes to a layer that `usedLayers` marks.
    bool isUploadInto(Pages pages, std::uint64_t const (&usedLayers)[maxLayers / 64]) const;
    /// Carries out waiting uploads; returns how many.
    int flushUploads(Pages pages);
    /// The texture of the picture alone, made if need be; 0 if it cannot be had.
    vtxDeviceHandle getAlone(vtxTextureImage& image);
    /// Deletes what was retired.
    void flushRetired();
    /// Deletes everything of the device that is left, at the renderer's end.
    void releaseDevice();
    unsigned getAloneUploads() const { return aloneUploads_; }
    void resetCounts() { aloneUploads_ = 0; }

private:
    struct Upload {
        int layer;
        osg::RectImpl<osg::Vec2i> rect;
        std::size_t offset;
    };
    struct PageArray {
        vtxDeviceHandle handle = 0;
        int deviceLayers = 0;
        int layers = 0;
        qor::vector<int> freeLayers;
        qor::vector<Upload> uploads;
        qor::vector<unsigned char> bytes;
        std::atomic<int> waiting{0};
    };

    PageArray& get_(Pages pages) { return arrays_[pages == Pages::Glyph ? 1 : 0]; }
    PageArray const& get_(Pages pages) const { return arrays_[pages == Pages::Glyph ? 1 : 0]; }
    void growArray_(PageArray& array, Pages pages);

    vtxDevice& device_;
    mutable qor::mutex mutex_;
    std::atomic<unsigned> pageChanges_{0};
    qor::hash_set<vtxTexture const*> alive_;
    mutable vtxTexture const* lastAlive_ = nullptr;
    PageArray arrays_[2];
    qor::vector<std::unique_ptr<vtxTextureImage>> retired_;
    unsigned aloneUploads_ = 0;
};
