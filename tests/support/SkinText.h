#pragma once

#include <string>
#include <string_view>

namespace support {

/// A file with a text, for calls that take a file name; gone at the end of its life.
class SkinText {
public:
    explicit SkinText(std::string_view text);
    ~SkinText();
    SkinText(SkinText const&) = delete;
    SkinText& operator=(SkinText const&) = delete;

    std::string const& getPath() const { return path_; }

private:
    std::string path_;
};

/// Font file for skins in tests.
inline constexpr char const* fontFile = "assets/fonts/Inter-Regular.otf";

/// Lua text of a skin function that returns {skinData = {params = {`params`}, states = {released = {{`state`}}}}}.
std::string skinFunction(std::string_view params, std::string_view state);

}  // namespace support
