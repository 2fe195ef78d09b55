#pragma once

#include <cstdint>
#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

/// Where files are found. Names may use '\\' and '/' alike. An absolute name is taken as it is; a relative one is tried
/// in the working directory, then in each asset root in their order. May be called from any thread.
namespace qor {

/// Replaces the roots. Relative roots are relative to the working directory of the moment.
VORLEX_API void setAssetRoots(vector<string> const& roots);
/// Adds one at the end, unless it is there already.
VORLEX_API void addAssetRoot(std::string_view root);
VORLEX_API vector<string> getAssetRoots();

/// The path of the file to open, or an empty string where there is none (or a folder or a device of that name).
VORLEX_API string findFile(std::string_view name);

/// What tells whether a file has changed on disk; all 0 where there is none.
struct FileStamp {
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    uint64_t size = 0;
    uint64_t device = 0;
    uint64_t inode = 0;

    bool exists() const { return inode != 0; }
    bool operator==(FileStamp const&) const = default;
};

/// Of the file that `findFile` finds now.
VORLEX_API FileStamp getFileStamp(std::string_view name);

/// Slashes for backslashes, without "./" at the front or within and without doubled slashes.
VORLEX_API string normalizePath(std::string_view name);

/// The whole file. False, with `error` telling why and of which file, if it cannot be found or read, or if it is longer
/// than `maxBytes`.
VORLEX_API bool readFile(std::string_view name, string& content, string& error, size_t maxBytes = size_t(256) << 20);

}  // namespace qor
