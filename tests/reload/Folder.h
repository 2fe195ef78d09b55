#pragma once

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/qor/String.h"

/// A folder for files that a test edits; each writing gets a time stamp of its own. Gone at the end of its life.
class Folder {
public:
    Folder() {
        static int count = 0;
        char name[64];
        std::snprintf(name, sizeof name, "vorlex-reload-%d-%d", static_cast<int>(getpid()), ++count);
        path_ = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directories(path_);
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;

    qor::string path(std::string_view name) const { return qor::string((path_ / name).c_str()); }
    void write(std::string_view name, std::string_view text) {
        std::ofstream(path_ / name, std::ios::binary) << text;
        touch(name);
    }
    void copy(std::string_view name, std::string const& source) {
        std::filesystem::copy_file(source, path_ / name, std::filesystem::copy_options::overwrite_existing);
        touch(name);
    }
    void touch(std::string_view name) {
        static int seconds = 0;
        std::filesystem::last_write_time(
            path_ / name, std::filesystem::file_time_type::clock::now() + std::chrono::seconds(++seconds));
    }
    void remove(std::string_view name) { std::filesystem::remove(path_ / name); }

private:
    std::filesystem::path path_;
};
