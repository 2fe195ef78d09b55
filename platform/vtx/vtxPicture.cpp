#include "platform/vtx/vtxPicture.h"

#include <spng.h>
#include <turbojpeg.h>

#include <cstring>
#include <memory>

namespace {

struct PngDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
struct JpegDeleter {
    void operator()(void* decoder) const { tjDestroy(decoder); }
};

bool checkSize(std::int64_t width, std::int64_t height, vtxPictureLimits const& limits, qor::string& error) {
    if (width < 1 || height < 1) {
        error = "it has no pixels";
        return false;
    }
    if (width > limits.maxSide || height > limits.maxSide || width * height > limits.maxArea) {
        error.format("%lld by %lld pixels are too many; a side may have %d and the whole %lld",
                     static_cast<long long>(width), static_cast<long long>(height), limits.maxSide,
                     static_cast<long long>(limits.maxArea));
        return false;
    }
    return true;
}

void premultiply(qor::vector<unsigned char>& pixels) {
    for (size_t i = 0; i + 3 < pixels.size(); i += 4) {
        unsigned const alpha = pixels[i + 3];
        if (alpha == 255)
            continue;
        for (size_t channel = i; channel < i + 3; ++channel)
            pixels[channel] = static_cast<unsigned char>((pixels[channel] * alpha + 127) / 255);
    }
}

/// One file being read.
class Reader {
public:
    virtual ~Reader() = default;
    virtual bool readSize(osg::Vec2i& size, vtxPictureLimits const& limits, qor::string& error) = 0;
    /// After readSize; `pixels` has four bytes for each pixel.
    virtual bool decode(qor::vector<unsigned char>& pixels, qor::string& error) = 0;
};

class PngReader final : public Reader {
public:
    explicit PngReader(std::string_view bytes) : bytes_(bytes), context_(spng_ctx_new(0)) {}

    bool readSize(osg::Vec2i& size, vtxPictureLimits const& limits, qor::string& error) override {
        if (!context_) {
            error = "no memory for the decoder";
            return false;
        }
        // Text and colour profiles are not used; the limit keeps a hostile file from costing memory.
        spng_set_chunk_limits(context_.get(), size_t(16) << 20, size_t(32) << 20);
        spng_ihdr header{};
        int code = spng_set_png_buffer(context_.get(), bytes_.data(), bytes_.size());
        if (!code)
            code = spng_get_ihdr(context_.get(), &header);
        if (code) {
            error = spng_strerror(code);
            return false;
        }
        if (!checkSize(header.width, header.height, limits, error))
            return false;
        size.set(static_cast<int>(header.width), static_cast<int>(header.height));
        return true;
    }

    bool decode(qor::vector<unsigned char>& pixels, qor::string& error) override {
        int code = spng_decode_image(context_.get(), pixels.data(), pixels.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
        // The checksum of the last pixels stands behind them, and the end of the file behind that.
        if (!code)
            code = spng_decode_chunks(context_.get());
        if (code) {
            error = spng_strerror(code);
            return false;
        }
        premultiply(pixels);
        return true;
    }

private:
    std::string_view bytes_;
    std::unique_ptr<spng_ctx, PngDeleter> context_;
};

class JpegReader final : public Reader {
public:
    explicit JpegReader(std::string_view bytes) : bytes_(bytes), decoder_(tjInitDecompress()) {}

    bool readSize(osg::Vec2i& size, vtxPictureLimits const& limits, qor::string& error) override {
        if (!decoder_) {
            error = "no memory for the decoder";
            return false;
        }
        int width = 0, height = 0, sampling = 0;
        if (!check_(tjDecompressHeader3(decoder_.get(), getData_(), getSize_(), &width, &height, &sampling, &colours_),
                    error) ||
            !checkSize(width, height, limits, error))
            return false;
        size_.set(width, height);
        size = size_;
        return true;
    }

    bool decode(qor::vector<unsigned char>& pixels, qor::string& error) override {
        bool const print = colours_ == TJCS_CMYK || colours_ == TJCS_YCCK;
        if (!check_(tjDecompress2(decoder_.get(), getData_(), getSize_(), pixels.data(), size_.x(), 0, size_.y(),
                                  print ? TJPF_CMYK : TJPF_RGBA, TJFLAG_ACCURATEDCT),
                    error))
            return false;
        if (print)
            convertPrintColours_(pixels);
        return true;
    }

private:
    unsigned char const* getData_() const { return reinterpret_cast<unsigned char const*>(bytes_.data()); }
    unsigned long getSize_() const { return static_cast<unsigned long>(bytes_.size()); }

    /// The decoder goes on after damage and only warns. Stray bytes between two markers do no harm; anything else does.
    bool check_(int code, qor::string& error) const {
        if (!code || (tjGetErrorCode(decoder_.get()) == TJERR_WARNING &&
                      std::strstr(tjGetErrorStr2(decoder_.get()), "extraneous bytes")))
            return true;
        error = tjGetErrorStr2(decoder_.get());
        return false;
    }

    /// Print colours come inverted, as their usual writer stores them.
    static void convertPrintColours_(qor::vector<unsigned char>& pixels) {
        for (size_t i = 0; i + 3 < pixels.size(); i += 4) {
            unsigned const black = pixels[i + 3];
            for (size_t channel = i; channel < i + 3; ++channel)
                pixels[channel] = static_cast<unsigned char>((pixels[channel] * black + 127) / 255);
            pixels[i + 3] = 255;
        }
    }

    std::string_view bytes_;
    std::unique_ptr<void, JpegDeleter> decoder_;
    osg::Vec2i size_;
    int colours_ = 0;
};

std::unique_ptr<Reader> makeReader(std::string_view bytes, qor::string& error) {
    error.clear();
    if (bytes.starts_with("\x89PNG"))
        return std::make_unique<PngReader>(bytes);
    if (bytes.starts_with("\xFF\xD8"))
        return std::make_unique<JpegReader>(bytes);
    error = "it is neither PNG nor JPEG";
    return nullptr;
}

}  // namespace

bool vtxReadPictureSize(std::string_view bytes, vtxPictureLimits const& limits, osg::Vec2i& size, qor::string& error) {
    std::unique_ptr<Reader> const reader = makeReader(bytes, error);
    return reader && reader->readSize(size, limits, error);
}

bool vtxDecodePicture(std::string_view bytes, vtxPictureLimits const& limits, vtxPicture& picture, qor::string& error) {
    picture = vtxPicture();
    std::unique_ptr<Reader> const reader = makeReader(bytes, error);
    osg::Vec2i size;
    if (!reader || !reader->readSize(size, limits, error))
        return false;
    picture.width = size.x();
    picture.height = size.y();
    picture.pixels.resize(size_t(size.x()) * size_t(size.y()) * 4);
    if (reader->decode(picture.pixels, error))
        return true;
    picture = vtxPicture();
    return false;
}
