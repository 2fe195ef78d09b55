// The monkey over the gallery. A run is a file of bytes, out/monkey/seed-N.bytes, which a child process plays; one that
// fails is cut down to few steps and written beside it with a list of what happens. VORLEX_MONKEY_FILE=path plays that
// file instead and says what it does.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "examples/gallery/Gallery.h"
#include "tests/support/Monkey.h"
#include "tests/support/Soak.h"

extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak));

namespace {

using Bytes = std::vector<uint8_t>;
using support::Monkey;

constexpr char const* nowhere = "/dev/null";
constexpr std::size_t stepsOfOneSeed = 20'000;
/// A step takes far less than a millisecond, and ten times that under sanitizers.
constexpr unsigned secondsOfOneSeed = support::sanitized ? 600 : 120;

/// Memory that a child process fills in for its parent, good also when the child dies.
struct Shared {
    support::MonkeyMatrix matrix{};
    uint64_t callbacks = 0;
    uint64_t acts = 0;
    std::size_t step = 0;
    char fault[512] = "";
    uint8_t bytes[stepsOfOneSeed * support::MonkeyStep::size];
};

Shared& shared() {
    static auto* const memory =
        new (mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;
    return *memory;
}

int playHere(std::span<uint8_t> bytes, bool talk, bool counted) {
    Monkey::Settings settings;
    settings.makeScene = [](host::HostApplication& application) {
        return std::make_shared<Gallery>(application, Options());
    };
    settings.makeFirstScene = [](host::HostApplication& application) {
        auto gallery = std::make_shared<Gallery>(application, Options());
        gallery->getPages().openAll();
        return gallery;
    };
    settings.talk = talk;
    settings.progress = &shared().step;
    Monkey monkey(settings);
    monkey.getMatrix() = shared().matrix;
    std::string const fault = monkey.play(bytes);
    if (counted) {
        shared().matrix = monkey.getMatrix();
        shared().callbacks += monkey.getCallbackCount();
        shared().acts += monkey.getActCount();
    }
    std::snprintf(shared().fault, sizeof(Shared::fault), "%s", fault.c_str());
    if (!fault.empty())
        return 1;
    return __lsan_do_recoverable_leak_check && __lsan_do_recoverable_leak_check() ? 2 : 0;
}

/// Plays the bytes in a child process and gives back what it filled in. Empty if all went well, else what went wrong.
/// `output` is the file that takes what the child says; an empty name leaves it where it goes.
std::string play(Bytes& bytes, char const* output, bool talk) {
    std::fflush(stdout);
    shared().fault[0] = 0;
    std::memcpy(shared().bytes, bytes.data(), bytes.size());
    pid_t const child = fork();
    if (child == 0) {
        alarm(secondsOfOneSeed);
        int const file = *output ? open(output, O_WRONLY | O_CREAT | O_TRUNC, 0644) : -1;
        if (file >= 0) {
            dup2(file, STDOUT_FILENO);
            dup2(file, STDERR_FILENO);
        }
        _exit(playHere({shared().bytes, bytes.size()}, talk, output != nowhere && !talk));
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::memcpy(bytes.data(), shared().bytes, bytes.size());
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return "";
    if (shared().fault[0])
        return shared().fault;
    return WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) : "a sanitizer ended it";
}

void write(std::string const& path, Bytes const& bytes) {
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(bytes.data()), std::ssize(bytes));
}

/// Leaves out steps, many at first, as long as the run still fails.
Bytes shrink(Bytes bytes, std::size_t lastStep) {
    // Each scene begins anew: mostly that of the last step does without those before it.
    std::size_t const size = support::MonkeyStep::size;
    std::size_t const scene = lastStep - lastStep % Monkey::Settings().sceneSteps;
    Bytes lastScene(bytes.begin() + std::ptrdiff_t(scene * size),
                    bytes.begin() + std::ptrdiff_t(std::min((lastStep + 1) * size, bytes.size())));
    if (!play(lastScene, nowhere, false).empty())
        bytes = lastScene;
    constexpr int mostSeconds = 120;
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(mostSeconds);
    // What comes late mostly needs what came before, so the walk goes from the end to the start; the last one is
    // repeated as long as it finds something.
    bool shrunk = false;
    for (std::size_t chunk = bytes.size() / size / 2; chunk > 0; chunk = chunk == 1 && shrunk ? 1 : chunk / 2) {
        shrunk = false;
        for (std::size_t to = bytes.size(); to > 0 && std::chrono::steady_clock::now() < end;) {
            to = std::min(to, bytes.size());
            std::size_t const from = to - std::min(to, chunk * size);
            Bytes fewer(bytes.begin(), bytes.begin() + std::ptrdiff_t(from));
            fewer.insert(fewer.end(), bytes.begin() + std::ptrdiff_t(to), bytes.end());
            if (!play(fewer, nowhere, false).empty()) {
                bytes = fewer;
                shrunk = true;
            }
            to = from;
        }
    }
    return bytes;
}

void report(std::string const& stem, Bytes const& bytes, std::string const& fault) {
    std::size_t const lastStep = shared().step;
    Bytes fewest = shrink(bytes, lastStep);
    write(stem + ".min.bytes", fewest);
    std::string const last = play(fewest, (stem + ".min.txt").c_str(), true);
    ADD_FAILURE() << stem << ".bytes: " << fault << "\ncut down to " << fewest.size() / support::MonkeyStep::size
                  << " steps (" << last << "): " << stem << ".min.txt";
}

void printMatrix() {
    using namespace support;
    std::printf("%-18s", "");
    for (std::size_t verb = 0; verb < monkeyVerbCount; ++verb)
        std::printf(" %12s", getName(MonkeyVerb(verb)));
    std::printf("\n");
    for (std::size_t kind = 0; kind < monkeyKindCount; ++kind) {
        std::printf("%-18s", getName(MonkeyKind(kind)));
        for (std::size_t verb = 0; verb < monkeyVerbCount; ++verb) {
            if (getImpossible(MonkeyKind(kind), MonkeyVerb(verb)))
                std::printf(" %12s", "-");
            else
                std::printf(" %12u", shared().matrix[kind][verb]);
        }
        std::printf("\n");
    }
}

void expectFullMatrix() {
    using namespace support;
    for (std::size_t kind = 0; kind < monkeyKindCount; ++kind)
        for (std::size_t verb = 0; verb < monkeyVerbCount; ++verb) {
            bool const used = shared().matrix[kind][verb] > 0 || getImpossible(MonkeyKind(kind), MonkeyVerb(verb));
            EXPECT_TRUE(used) << getName(MonkeyKind(kind)) << " never did: " << getName(MonkeyVerb(verb));
        }
}

void playFile(char const* path) {
    std::ifstream file(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(bytes.empty()) << path;
    bytes.resize(std::min(bytes.size(), sizeof(Shared::bytes)));
    EXPECT_EQ(play(bytes, "", true), "");
}

uint64_t firstSeed() {
    if (char const* const seed = std::getenv("VORLEX_MONKEY_SEED"))
        return std::strtoull(seed, nullptr, 10);
    return support::getEffort() == support::Effort::Soak ? std::random_device()() : 1;
}

TEST(Monkey, FindsNothingInTheGallery) {
    if (char const* const path = std::getenv("VORLEX_MONKEY_FILE"))
        return playFile(path);
    std::filesystem::create_directories("out/monkey");
    uint64_t const seeds = support::byEffort<uint64_t>(1, 15, 250);
    uint64_t const first = firstSeed();
    std::printf("seeds %llu to %llu\n", (unsigned long long)first, (unsigned long long)(first + seeds - 1));
    auto const start = std::chrono::steady_clock::now();
    for (uint64_t seed = first; seed < first + seeds; ++seed) {
        std::string const stem = "out/monkey/seed-" + std::to_string(seed);
        Bytes bytes = support::makeMonkeyBytes(seed, stepsOfOneSeed);
        std::string const fault = play(bytes, (stem + ".txt").c_str(), false);
        if (fault.empty()) {
            std::filesystem::remove(stem + ".txt");
            continue;
        }
        write(stem + ".bytes", bytes);
        report(stem, bytes, fault);
        if (testing::Test::HasFatalFailure() || support::getEffort() == support::Effort::Quick)
            break;
    }
    double const seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%.0f events a second; %llu callbacks, %llu of them acted\n", double(seeds * stepsOfOneSeed) / seconds,
                (unsigned long long)shared().callbacks, (unsigned long long)shared().acts);
    if (support::getEffort() == support::Effort::Quick)
        return;
    printMatrix();
    if (support::getEffort() == support::Effort::Soak)
        expectFullMatrix();
}

}  // namespace
