#include "host/Assets.h"

#include <dlfcn.h>

#include <filesystem>
#include <initializer_list>
#include <system_error>

#include "platform/qor/Log.h"
#include "platform/qor/Paths.h"

namespace host {

namespace {

namespace fs = std::filesystem;

/// Adds the first of the places that holds `sign`, looking beside `start` and in the folders above it.
bool addFrom(fs::path start, std::initializer_list<char const*> places, char const* sign) {
    constexpr int levels = 6;
    std::error_code error;
    for (int level = 0; level < levels && !start.empty(); ++level) {
        for (char const* const place : places) {
            fs::path const root = *place ? start / place : start;
            if (fs::exists(root / sign, error)) {
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

/// Looks from where the program lies, then the toolkit's library, then in the working directory.
bool add(std::initializer_list<char const*> places, char const* sign) {
    std::error_code error;
    for (fs::path const& start :
         {fs::read_symlink("/proc/self/exe", error).parent_path(), libraryFolder(), fs::current_path(error)})
        if (addFrom(start, places, sign))
            return true;
    return false;
}

}  // namespace

bool addToolkitAssets() {
    // The loader script of window files is known by a path from a root that is not that of the assets.
    bool const found = add({"share/vorlex/assets", "assets"}, "skins");
    add({"share/vorlex", ""}, "vorlex/loader/CreateWindow.lua");
    if (found)
        return true;
    qor_logf("HOST", 64,
             "No assets found near the program or the toolkit's library: skins and fonts are missing. Keep the folder "
             "\"assets\" beside the program, or call qor::addAssetRoot.");
    return false;
}

}  // namespace host
