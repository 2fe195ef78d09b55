#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/Mutex.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxPicture.h"
#include "platform/vtx/vtxSkylinePacker.h"
#include "platform/vtx/vtxTextureManager.h"
#include "platform/vtx/vtxTextureRecord.h"

#include <atomic>
#include <functional>
#include <memory>
#include <tuple>

class vtxTextureStore;

/// The texture manager: reads picture files, packs small ones into pages and counts the users of each texture.
/// A picture without users stays for `idleFlushes` calls of flushReleased, so that measuring does not read files again.
/// Where `x@2x.png` stands beside `x.png`, it is shown above `doubleScale`; a change of scale is followed in
/// flushReleased. May be called from any thread but for flushReleased, which belongs to the hand-over.
class vtxPictureLibrary final : public vtxTextureManager {
public:
    static constexpr unsigned idleFlushes = 60;
    static constexpr float doubleScale = 1.25f;
    /// Largest side in units of a picture that goes into a page.
    static constexpr int maxPackedSide = 512;
    /// Pixels around a picture in a page that repeat its border.
    static constexpr int gutter = 2;

    struct Hooks {
        std::function<float()> getScale;
        std::function<void()> flushTargets;  ///< runs in flushReleased
    };

    vtxPictureLibrary(vtxTextureStore& store, Hooks hooks);
    ~vtxPictureLibrary() override;

    // vtxTextureManager:
    vtxTexture* getTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect,
                           vtxTexture* previous) override;
    void releaseTexture(vtxTexture* texture) override;
    void flushReleased() override;
    void reloadChanged(qor::string& error) override;
    qor::vector<qor::string> getFiles() const override;

    static unsigned getChangeCount() { return changes_.load(std::memory_order_acquire); }

    // --- Counters for tests and statistics ---
    int getTextureCount() const;
    int getImageCount() const;
    int getPageCount() const;

private:
    using RectKey = std::tuple<int, int, int, int>;
    struct File;
    struct Entry {
        Entry(vtxTextureImage& image, File& owner, RectKey const& rectKey)
            : record(image), file(&owner), key(rectKey) {}
        vtxTextureRecord record;
        File* file;
        RectKey key;
        int references = 0;
        unsigned idleSince = 0;
        bool idle = false;  ///< stands in `idle_`
    };
    struct Page {
        int layer;
        int pictures;
        vtxSkylinePacker packer;
    };
    struct File {
        qor::string name;
        bool failed = false;
        bool doubled = false;        ///< the image is the one of double size
        bool doubledFailed = false;  ///< that one was reported as broken
        osg::Vec2i size;             ///< units
        qor::FileStamp stamps[2];    ///< when it was read last: of the file and of the one of double size
        Page* page = nullptr;
        std::unique_ptr<vtxTextureImage> image;  ///< null while nobody uses the file
        qor::map<RectKey, std::unique_ptr<Entry>> entries;
    };

    File& findFile_(qor::string const& name);
    bool load_(File& file, bool doubled);
    bool read_(qor::string const& path, vtxPicture& picture, qor::string& error) const;
    bool readPlain_(File& file, vtxPicture& picture);
    bool readDoubled_(File& file, vtxPicture& picture);
    void makeImage_(File& file, vtxPicture&& picture);
    bool pack_(File& file, vtxPicture const& picture);
    void queuePadded_(vtxPicture const& picture, int layer, int x, int y);
    void dropImage_(File& file);
    Entry& getEntry_(File& file, osg::RectImpl<osg::Vec2i> const& rect);
    void makeIdle_(Entry& entry);
    void flushIdle_();
    void followScale_();
    bool noteStamps_(File& file) const;
    void reload_(File& file, qor::string& error);

    static inline std::atomic<unsigned> changes_{0};

    vtxTextureStore& store_;
    Hooks hooks_;
    vtxPictureLimits limits_;
    mutable qor::mutex mutex_;
    qor::hash_map<qor::string, std::unique_ptr<File>> files_;  ///< by cleaned name
    qor::hash_map<qor::string, File*> names_;                  ///< by name as given
    qor::hash_map<vtxTexture const*, Entry*> entries_;
    qor::vector<Entry*> idle_;
    qor::vector<std::unique_ptr<Page>> pages_;
    qor::vector<std::unique_ptr<File>> outdated_;  ///< shown still, while others have been read in their place
    unsigned flushes_ = 0;
    bool doubled_;
};
