#include "platform/qor/Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>

#include <sys/stat.h>

namespace qor {

namespace {

struct Roots {
    std::mutex lock;
    vector<string> folders;
};

Roots& getRoots() {
    static Roots* const roots = new Roots;
    return *roots;
}

// No devices and pipes: reading one may never end.
bool isFile(string const& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

void setAssetRoots(vector<string> const& roots) {
    Roots& current = getRoots();
    std::lock_guard const guard(current.lock);
    current.folders.clear();
    for (string const& root : roots)
        current.folders.push_back(normalizePath(root));
}

void addAssetRoot(std::string_view root) {
    string const folder = normalizePath(root);
    Roots& current = getRoots();
    std::lock_guard const guard(current.lock);
    if (std::find(current.folders.begin(), current.folders.end(), folder) == current.folders.end())
        current.folders.push_back(folder);
}

vector<string> getAssetRoots() {
    Roots& current = getRoots();
    std::lock_guard const guard(current.lock);
    return current.folders;
}

string findFile(std::string_view name) {
    string const path = normalizePath(name);
    if (path.empty() || path.find('\0') != string::npos)
        return {};
    if (isFile(path))
        return path;
    if (path.front() == '/')
        return {};
    for (string const& root : getAssetRoots()) {
        string inRoot = root.empty() ? path : string(root + "/" + path);
        if (isFile(inRoot))
            return inRoot;
    }
    return {};
}

FileStamp getFileStamp(std::string_view name) {
    string const path = findFile(name);
    struct stat status;
    if (path.empty() || stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, uint64_t(status.st_size), uint64_t(status.st_dev),
            uint64_t(status.st_ino)};
}

string normalizePath(std::string_view name) {
    string path;
    path.reserve(name.size());
    for (size_t at = 0; at < name.size();) {
        size_t end = at;
        while (end < name.size() && name[end] != '/' && name[end] != '\\')
            ++end;
        std::string_view const part = name.substr(at, end - at);
        bool const slash = end < name.size();
        if (part.empty() ? at == 0 : part != ".") {
            path += part;
            if (slash)
                path += '/';
        }
        at = end + 1;
    }
    return path;
}

bool readFile(std::string_view name, string& content, string& error, size_t maxBytes) {
    content.clear();
    string const path = findFile(name);
    string const shown(name);
    if (path.empty()) {
        error.format("%s: not found in the working directory or in an asset root", shown.c_str());
        return false;
    }
    std::unique_ptr<FILE, int (*)(FILE*)> const file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) {
        error.format("%s: cannot be opened: %s", path.c_str(), std::strerror(errno));
        return false;
    }
    char buffer[16384];
    while (size_t const count = std::fread(buffer, 1, sizeof buffer, file.get())) {
        if (content.size() + count > maxBytes) {
            error.format("%s: longer than %zu bytes", path.c_str(), maxBytes);
            content.clear();
            return false;
        }
        content.append(buffer, count);
    }
    if (std::ferror(file.get())) {
        error.format("%s: cannot be read: %s", path.c_str(), std::strerror(errno));
        content.clear();
        return false;
    }
    return true;
}

}  // namespace qor
