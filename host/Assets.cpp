#include "host/Assets.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"

namespace host {

namespace {

namespace fs = std::filesystem;

/// Looks beside `start` and in the folders above it.
bool addFrom(fs::path start) {
    constexpr int levels = 6;
    std::error_code error;
    for (int level = 0; level < levels && !start.empty(); ++level) {
        for (char const* const place : {"share/vorlex/assets", "assets"}) {
            fs::path const root = start / place;
            if (fs::is_directory(root / "skins", error)) {
                qor::addAssetRoot(root.native());
                return true;
            }
        }
        if (!start.has_relative_path())
            break;
        start = start.parent_path();
    }
    return false;
}

fs::path libraryFolder() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void const*>(&addToolkitAssets), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    return fs::weakly_canonical(info.dli_fname, error).parent_path();
}

}  // namespace

bool addToolkitAssets() {
    std::error_code error;
    fs::path const program = fs::read_symlink("/proc/self/exe", error).parent_path();
    if (addFrom(program) || addFrom(libraryFolder()) || addFrom(fs::current_path(error)))
        return true;
    qor_logf("HOST", 64,
             "No assets found near the program or the toolkit's library: skins and fonts are missing. Keep the folder "
             "\"assets\" beside the program, or call qor::addAssetRoot.");
    return false;
}

}  // namespace host
