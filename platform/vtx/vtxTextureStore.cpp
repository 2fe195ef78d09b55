#include "platform/vtx/vtxTextureStore.h"

#include "platform/qor/Log.h"

#include <algorithm>
#include <mutex>

vtxTextureStore::vtxTextureStore(vtxDevice& device) : device_(device) {}

vtxTextureStore::~vtxTextureStore() = default;

void vtxTextureStore::addTexture(vtxTextureRecord const& texture) {
    std::lock_guard const lock(mutex_);
    alive_.insert(&texture);
}

void vtxTextureStore::removeTexture(vtxTextureRecord const& texture) {
    std::lock_guard const lock(mutex_);
    alive_.erase(&texture);
    if (lastAlive_ == &texture)
        lastAlive_ = nullptr;
    if (texture.image->place != vtxImagePlace::Alone)
        noteImageChanged();
}

bool vtxTextureStore::isAlive(vtxTexture const* texture) const {
    std::lock_guard const lock(mutex_);
    if (texture == lastAlive_ && texture)
        return true;
    if (alive_.find(texture) == alive_.end())
        return false;
    lastAlive_ = texture;
    return true;
}

void vtxTextureStore::retireImage(std::unique_ptr<vtxTextureImage> image) {
    if (!image)
        return;
    std::lock_guard const lock(mutex_);
    if (image->alone)
        retired_.push_back(std::move(image));
}

int vtxTextureStore::addPage(Pages pages) {
    std::lock_guard const lock(mutex_);
    PageArray& array = get_(pages);
    if (!array.freeLayers.empty()) {
        int const layer = array.freeLayers.back();
        array.freeLayers.pop_back();
        return layer;
    }
    return array.layers < maxLayers ? array.layers++ : -1;
}

void vtxTextureStore::removePage(Pages pages, int layer) {
    std::lock_guard const lock(mutex_);
    PageArray& array = get_(pages);
    if (layer < 0 || layer >= array.layers)
        return;
    std::erase_if(array.uploads, [&](Upload const& upload) { return upload.layer == layer; });
    array.waiting.store(static_cast<int>(array.uploads.size()), std::memory_order_release);
    array.freeLayers.push_back(layer);
}

void vtxTextureStore::queueUpload(Pages pages, int layer, osg::RectImpl<osg::Vec2i> const& rect,
                                  unsigned char const* pixels) {
    int const side = pages == Pages::Glyph ? glyphPageSide : picturePageSide;
    if (rect.isEmpty() || rect.x1 < 0 || rect.y1 < 0 || rect.x2 > side || rect.y2 > side || !pixels)
        return;
    std::size_t const pixelSize = pages == Pages::Glyph ? 1 : 4;
    std::size_t const size =
        static_cast<std::size_t>(rect.width()) * static_cast<std::size_t>(rect.height()) * pixelSize;
    std::lock_guard const lock(mutex_);
    PageArray& array = get_(pages);
    array.uploads.push_back(Upload{layer, rect, array.bytes.size()});
    array.bytes.insert(array.bytes.end(), pixels, pixels + size);
    array.waiting.store(static_cast<int>(array.uploads.size()), std::memory_order_release);
}

bool vtxTextureStore::isUploadInto(Pages pages, std::uint64_t const (&usedLayers)[maxLayers / 64]) const {
    std::lock_guard const lock(mutex_);
    PageArray const& array = get_(pages);
    return std::any_of(array.uploads.begin(), array.uploads.end(), [&](Upload const& upload) {
        return (usedLayers[upload.layer / 64] >> (upload.layer % 64)) & 1u;
    });
}

int vtxTextureStore::flushUploads(Pages pages) {
    std::lock_guard const lock(mutex_);
    PageArray& array = get_(pages);
    growArray_(array, pages);
    for (Upload const& upload : array.uploads) {
        if (array.handle)
            device_.uploadTexture(array.handle, upload.layer, upload.rect, array.bytes.data() + upload.offset);
    }
    int const count = static_cast<int>(array.uploads.size());
    array.uploads.clear();
    array.bytes.clear();
    array.waiting.store(0, std::memory_order_release);
    return count;
}

void vtxTextureStore::growArray_(PageArray& array, Pages pages) {
    if (array.layers <= array.deviceLayers)
        return;
    if (!array.handle) {
        vtxTextureDescription description;
        description.width = description.height = pages == Pages::Glyph ? glyphPageSide : picturePageSide;
        description.layers = array.layers;
        description.singleChannel = pages == Pages::Glyph;
        array.handle = device_.createTexture(description);
    } else {
        device_.resizeTextureArray(array.handle, array.layers);
    }
    array.deviceLayers = array.layers;
}

vtxDeviceHandle vtxTextureStore::getAlone(vtxTextureImage& image) {
    if (image.alone || image.aloneFailed || image.pixels.empty())
        return image.alone;
    int const most = device_.getMaxTextureSize();
    if (image.size.x() > most || image.size.y() > most) {
        image.aloneFailed = true;
        qor_logf("VTX", 64, "A picture of %d x %d pixels is larger than this device can show (%d); make it smaller\n",
                 image.size.x(), image.size.y(), most);
        return 0;
    }
    vtxTextureDescription description;
    description.width = image.size.x();
    description.height = image.size.y();
    description.mips = true;
    image.alone = device_.createTexture(description);
    image.aloneFailed = !image.alone;
    if (image.alone) {
        device_.uploadTexture(image.alone, 0, osg::RectImpl<osg::Vec2i>(0, 0, image.size.x(), image.size.y()),
                              image.pixels.data());
        ++aloneUploads_;
    }
    if (image.place == vtxImagePlace::Alone)
        qor::vector<unsigned char>().swap(image.pixels);
    return image.alone;
}

void vtxTextureStore::flushRetired() {
    std::lock_guard const lock(mutex_);
    for (auto const& image : retired_)
        device_.destroyTexture(image->alone);
    retired_.clear();
}

void vtxTextureStore::releaseDevice() {
    flushRetired();
    std::lock_guard const lock(mutex_);
    for (PageArray& array : arrays_) {
        if (array.handle)
            device_.destroyTexture(array.handle);
        array.handle = 0;
        array.deviceLayers = 0;
    }
}
