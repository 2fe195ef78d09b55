#include "host/PngWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include <spng.h>

namespace host {

namespace {

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
struct FreeContext {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};

}  // namespace

bool writePng(char const* path, osg::Vec2i const& size, unsigned char const* pixels, qor::string& error) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    std::unique_ptr<FILE, CloseFile> file(std::fopen(path, "wb"));
    if (!file) {
        error.format("%s cannot be written: %s", path, std::strerror(errno));
        return false;
    }
    std::unique_ptr<spng_ctx, FreeContext> context(spng_ctx_new(SPNG_CTX_ENCODER));
    spng_ihdr header = {};
    header.width = uint32_t(size.x());
    header.height = uint32_t(size.y());
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
    int result = spng_set_png_file(context.get(), file.get());
    if (!result)
        result = spng_set_ihdr(context.get(), &header);
    if (!result)
        result = spng_encode_image(context.get(), pixels, size_t(size.x()) * size_t(size.y()) * 4, SPNG_FMT_PNG,
                                   SPNG_ENCODE_FINALIZE);
    if (result)
        error.format("%s cannot be written: %s", path, spng_strerror(result));
    return !result;
}

}  // namespace host
