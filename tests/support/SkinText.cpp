#include "tests/support/SkinText.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace support {

SkinText::SkinText(std::string_view text) {
    static int count = 0;
    char name[64];
    std::snprintf(name, sizeof name, "vorlex-test-%d-%d.lua", static_cast<int>(getpid()), ++count);
    path_ = (std::filesystem::temp_directory_path() / name).string();
    std::ofstream(path_, std::ios::binary) << text;
}

SkinText::~SkinText() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

std::string skinFunction(std::string_view params, std::string_view state) {
    return "function() return {skinData = {params = {" + std::string(params) + "}, states = {released = {{" +
           std::string(state) + "}}}}} end";
}

}  // namespace support
