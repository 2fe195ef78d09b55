// Plays files through a fuzz target where there is no fuzzer: every file of the folders and every file named.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size);

namespace {

void play(std::filesystem::path const& path) {
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    std::vector<char> const bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<uint8_t const*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** words) {
    int played = 0;
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(words[i])) {
            play(words[i]);
            ++played;
            continue;
        }
        for (auto const& entry : std::filesystem::directory_iterator(words[i])) {
            play(entry.path());
            ++played;
        }
    }
    std::printf("%d played\n", played);
    return played > 0 ? 0 : 1;
}
