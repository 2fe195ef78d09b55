#include "platform/vtx/vtxPictureLibrary.h"

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxLog.h"
#include "platform/vtx/vtxTextureStore.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

namespace {

constexpr size_t maxFileBytes = size_t(256) << 20;

/// "a/x.png" gives "a/x@2x.png".
qor::string getDoubledPath(qor::string const& path) {
    size_t const slash = path.rfind('/');
    size_t const dot = path.rfind('.');
    qor::string result = path;
    bool const hasEnding = dot != qor::string::npos && (slash == qor::string::npos || dot > slash);
    result.insert(hasEnding ? dot : path.size(), "@2x");
    return result;
}

}  // namespace

vtxPictureLibrary::vtxPictureLibrary(vtxTextureStore& store, Hooks hooks)
    : store_(store), hooks_(std::move(hooks)), doubled_(hooks_.getScale() > doubleScale) {
    changes_.fetch_add(1, std::memory_order_acq_rel);
}

vtxPictureLibrary::~vtxPictureLibrary() {
    for (auto const& [texture, entry] : entries_)
        store_.removeTexture(entry->record);
    for (auto const& [name, file] : files_)
        dropImage_(*file);
    for (auto const& file : outdated_)
        dropImage_(*file);
}

// --- Textures ---

vtxTexture* vtxPictureLibrary::getTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect,
                                          vtxTexture* previous) {
    if (file.empty())
        return nullptr;
    std::lock_guard const guard(mutex_);
    File& found = findFile_(file);
    if (found.failed || (!found.image && !load_(found, hooks_.getScale() > doubleScale)))
        return nullptr;
    Entry& entry = getEntry_(found, rect);
    if (&entry.record != previous)
        ++entry.references;
    if (!entry.references)
        makeIdle_(entry);
    return &entry.record;
}

void vtxPictureLibrary::releaseTexture(vtxTexture* texture) {
    if (!texture)
        return;
    std::lock_guard const guard(mutex_);
    auto const found = entries_.find(texture);
    if (found == entries_.end() || !found->second->references)
        return;
    if (--found->second->references == 0)
        makeIdle_(*found->second);
}

void vtxPictureLibrary::flushReleased() {
    {
        std::lock_guard const guard(mutex_);
        ++flushes_;
        flushIdle_();
        followScale_();
    }
    hooks_.flushTargets();
}

vtxPictureLibrary::Entry& vtxPictureLibrary::getEntry_(File& file, osg::RectImpl<osg::Vec2i> const& rect) {
    osg::RectImpl<osg::Vec2i> const used =
        rect.isEmpty() ? osg::RectImpl<osg::Vec2i>(0, 0, file.size.x(), file.size.y()) : rect;
    RectKey const key(used.x1, used.y1, used.x2, used.y2);
    std::unique_ptr<Entry>& entry = file.entries[key];
    if (!entry) {
        entry = std::make_unique<Entry>(*file.image, file, key);
        entry->record.rect = {static_cast<float>(used.x1), static_cast<float>(used.y1), static_cast<float>(used.x2),
                              static_cast<float>(used.y2)};
        entry->record.width = file.size.x();
        entry->record.height = file.size.y();
        entries_.emplace(&entry->record, entry.get());
        store_.addTexture(entry->record);
    }
    return *entry;
}

void vtxPictureLibrary::makeIdle_(Entry& entry) {
    entry.idleSince = flushes_;
    if (!entry.idle)
        idle_.push_back(&entry);
    entry.idle = true;
}

void vtxPictureLibrary::flushIdle_() {
    size_t kept = 0;
    for (size_t i = 0; i < idle_.size(); ++i) {
        Entry* const entry = idle_[i];
        if (entry->references) {
            entry->idle = false;
            continue;
        }
        if (flushes_ - entry->idleSince <= idleFlushes) {
            idle_[kept++] = entry;
            continue;
        }
        File& file = *entry->file;
        store_.removeTexture(entry->record);
        entries_.erase(&entry->record);
        file.entries.erase(RectKey(entry->key));
        if (!file.entries.empty())
            continue;
        dropImage_(file);
        std::erase_if(outdated_, [&file](auto const& candidate) { return candidate.get() == &file; });
    }
    idle_.resize(kept);
}

// --- Files ---

vtxPictureLibrary::File& vtxPictureLibrary::findFile_(qor::string const& name) {
    auto const known = names_.find(name);
    if (known != names_.end())
        return *known->second;
    qor::string const clean = qor::normalizePath(name);
    std::unique_ptr<File>& file = files_[clean];
    if (!file) {
        file = std::make_unique<File>();
        file->name = clean;
    }
    names_.emplace(name, file.get());
    return *file;
}

bool vtxPictureLibrary::read_(qor::string const& path, vtxPicture& picture, qor::string& error) const {
    qor::string bytes;
    return qor::readFile(path, bytes, error, maxFileBytes) && vtxDecodePicture(bytes, limits_, picture, error);
}

bool vtxPictureLibrary::readPlain_(File& file, vtxPicture& picture) {
    qor::string error;
    if (!read_(file.name, picture, error)) {
        file.failed = true;
        qor_logf(vtxLogTag, vtxLogProblem, "Picture \"%s\" is not shown: %s", file.name.c_str(), error.c_str());
        return false;
    }
    file.size.set(picture.width, picture.height);
    return true;
}

/// The picture of double size, where there is one and it can be read. A broken one is reported once and not tried
/// again.
bool vtxPictureLibrary::readDoubled_(File& file, vtxPicture& picture) {
    qor::string const path = file.doubledFailed ? qor::string() : qor::findFile(file.name);
    qor::string const doubledPath = path.empty() ? qor::string() : qor::findFile(getDoubledPath(path));
    if (doubledPath.empty())
        return false;
    qor::string bytes, error;
    osg::Vec2i size;
    if (!qor::readFile(path, bytes, error, maxFileBytes) || !vtxReadPictureSize(bytes, limits_, size, error))
        return false;
    if (read_(doubledPath, picture, error)) {
        file.size = size;
        return true;
    }
    file.doubledFailed = true;
    qor_logf(vtxLogTag, vtxLogProblem, "Picture \"%s\" cannot be read, so the one of single size is shown: %s",
             doubledPath.c_str(), error.c_str());
    return false;
}

bool vtxPictureLibrary::load_(File& file, bool doubled) {
    vtxPicture picture;
    noteStamps_(file);
    file.doubled = doubled && readDoubled_(file, picture);
    if (!file.doubled && !readPlain_(file, picture))
        return false;
    makeImage_(file, std::move(picture));
    return true;
}

void vtxPictureLibrary::followScale_() {
    bool const doubled = hooks_.getScale() > doubleScale;
    if (doubled == doubled_)
        return;
    doubled_ = doubled;
    for (auto const& [name, file] : files_) {
        if (!file->image || file->doubled == doubled)
            continue;
        // What is shown stays where the other file is missing or broken. Textures keep the size that they told.
        vtxPicture picture;
        osg::Vec2i const size = file->size;
        qor::string error;
        bool const read = doubled ? readDoubled_(*file, picture) : read_(file->name, picture, error);
        file->size = size;
        if (!read)
            continue;
        file->doubled = doubled;
        dropImage_(*file);
        makeImage_(*file, std::move(picture));
        for (auto const& [key, entry] : file->entries)
            entry->record.image = file->image.get();
        store_.noteImageChanged();
    }
}

// --- Live reload ---

void vtxPictureLibrary::reloadChanged(qor::string& error) {
    std::lock_guard const guard(mutex_);
    changes_.fetch_add(1, std::memory_order_acq_rel);
    for (auto const& [name, file] : files_) {
        if ((!file->image && !file->failed) || !noteStamps_(*file))
            continue;
        if (file->failed)
            file->failed = file->doubledFailed = false;
        else
            reload_(*file, error);
    }
}

/// True if the files have changed since the last time.
bool vtxPictureLibrary::noteStamps_(File& file) const {
    qor::FileStamp const stamps[2] = {qor::getFileStamp(file.name), qor::getFileStamp(getDoubledPath(file.name))};
    bool const changed = stamps[0] != file.stamps[0] || stamps[1] != file.stamps[1];
    std::copy(std::begin(stamps), std::end(stamps), file.stamps);
    return changed;
}

void vtxPictureLibrary::reload_(File& file, qor::string& error) {
    File fresh;
    fresh.name = file.name;
    vtxPicture picture;
    fresh.doubled = hooks_.getScale() > doubleScale && readDoubled_(fresh, picture);
    qor::string cause;
    if (!fresh.doubled) {
        if (!read_(fresh.name, picture, cause)) {
            bool const named = cause.find(file.name) != qor::string::npos;
            error += (named ? cause : file.name + ": " + cause) + "\n";
            return;
        }
        fresh.size.set(picture.width, picture.height);
    }
    std::copy(std::begin(file.stamps), std::end(file.stamps), fresh.stamps);
    makeImage_(fresh, std::move(picture));
    // Textures that are shown keep what they show until their users ask again.
    auto old = std::make_unique<File>(std::exchange(file, std::move(fresh)));
    for (auto const& [key, entry] : old->entries)
        entry->file = old.get();
    if (old->entries.empty())
        dropImage_(*old);
    else
        outdated_.push_back(std::move(old));
}

qor::vector<qor::string> vtxPictureLibrary::getFiles() const {
    std::lock_guard const guard(mutex_);
    qor::vector<qor::string> names;
    for (auto const& [name, file] : files_) {
        if (!file->image && !file->failed)
            continue;
        names.push_back(name);
        if (hooks_.getScale() > doubleScale)
            names.push_back(getDoubledPath(name));
    }
    return names;
}

// --- Images ---

void vtxPictureLibrary::makeImage_(File& file, vtxPicture&& picture) {
    file.image = std::make_unique<vtxTextureImage>();
    file.image->size.set(picture.width, picture.height);
    if (file.size.x() <= maxPackedSide && file.size.y() <= maxPackedSide)
        pack_(file, picture);
    file.image->pixels = std::move(picture.pixels);
}

bool vtxPictureLibrary::pack_(File& file, vtxPicture const& picture) {
    int const width = picture.width + 2 * gutter;
    int const height = picture.height + 2 * gutter;
    if (width > vtxTextureStore::picturePageSide || height > vtxTextureStore::picturePageSide)
        return false;
    int x = 0, y = 0;
    auto const page = std::find_if(pages_.begin(), pages_.end(),
                                   [&](auto const& candidate) { return candidate->packer.add(width, height, x, y); });
    Page* chosen = page == pages_.end() ? nullptr : page->get();
    if (!chosen) {
        int const layer = store_.addPage(vtxTextureStore::Pages::Picture);
        if (layer < 0)
            return false;
        pages_.push_back(std::make_unique<Page>(Page{layer, 0, vtxSkylinePacker(vtxTextureStore::picturePageSide)}));
        chosen = pages_.back().get();
        chosen->packer.add(width, height, x, y);
    }
    ++chosen->pictures;
    file.page = chosen;
    file.image->place = vtxImagePlace::PicturePage;
    file.image->layer = chosen->layer;
    file.image->origin.set(x + gutter, y + gutter);
    queuePadded_(picture, chosen->layer, x, y);
    return true;
}

/// The border is repeated in the gutter, so that filtering at the edge finds the picture's own colour.
void vtxPictureLibrary::queuePadded_(vtxPicture const& picture, int layer, int x, int y) {
    int const width = picture.width + 2 * gutter;
    int const height = picture.height + 2 * gutter;
    qor::vector<unsigned char> padded(size_t(width) * size_t(height) * 4);
    for (int row = 0; row < height; ++row) {
        int const from = std::clamp(row - gutter, 0, picture.height - 1);
        unsigned char const* const source = &picture.pixels[size_t(from) * size_t(picture.width) * 4];
        unsigned char* const target = &padded[size_t(row) * size_t(width) * 4];
        std::memcpy(target + gutter * 4, source, size_t(picture.width) * 4);
        for (int i = 0; i < gutter; ++i) {
            std::memcpy(target + i * 4, source, 4);
            std::memcpy(target + (width - 1 - i) * 4, source + (picture.width - 1) * 4, 4);
        }
    }
    store_.queueUpload(vtxTextureStore::Pages::Picture, layer, osg::RectImpl<osg::Vec2i>(x, y, x + width, y + height),
                       padded.data());
}

void vtxPictureLibrary::dropImage_(File& file) {
    if (!file.image)
        return;
    store_.retireImage(std::move(file.image));
    Page* const page = std::exchange(file.page, nullptr);
    if (!page || --page->pictures)
        return;
    store_.removePage(vtxTextureStore::Pages::Picture, page->layer);
    std::erase_if(pages_, [page](auto const& candidate) { return candidate.get() == page; });
}

// --- Counters ---

int vtxPictureLibrary::getTextureCount() const {
    std::lock_guard const guard(mutex_);
    return static_cast<int>(entries_.size());
}

int vtxPictureLibrary::getImageCount() const {
    std::lock_guard const guard(mutex_);
    return static_cast<int>(
        std::count_if(files_.begin(), files_.end(), [](auto const& file) { return file.second->image != nullptr; }));
}

int vtxPictureLibrary::getPageCount() const {
    std::lock_guard const guard(mutex_);
    return static_cast<int>(pages_.size());
}
