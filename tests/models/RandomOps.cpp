#include "tests/models/RandomOps.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Soak.h"

extern "C" void __sanitizer_set_death_callback(void (*callback)());

namespace models {

Trial::~Trial() = default;

namespace {

struct Operation {
    int verb;
    int arguments[3];
};

using Operations = std::vector<Operation>;

constexpr std::size_t episodeLength = 500;
/// After how many operations everything is compared.
constexpr std::size_t deepEvery = 64;
/// How long an episode may take in a process of its own, seconds.
constexpr unsigned childPatience = 20;

char crashText[200];

void tellCrash() {
    [[maybe_unused]] auto const written = write(STDERR_FILENO, crashText, std::char_traits<char>::length(crashText));
}

/// A crash tells which episode it was in.
void watchForCrashes() {
    if constexpr (support::sanitized) {
        __sanitizer_set_death_callback(tellCrash);
    } else {
        for (int const number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE})
            std::signal(number, [](int caught) {
                tellCrash();
                std::signal(caught, SIG_DFL);
                std::raise(caught);
            });
    }
}

Operations drawOperations(std::vector<Trial::Verb> const& verbs, unsigned long seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    std::vector<int> lots;
    for (std::size_t i = 0; i < verbs.size(); ++i)
        lots.insert(lots.end(), static_cast<std::size_t>(verbs[i].weight), static_cast<int>(i));
    Operations operations(episodeLength);
    for (Operation& operation : operations) {
        operation.verb = lots[random() % lots.size()];
        for (int i = 0; i < 3; ++i) {
            int const range = verbs[static_cast<std::size_t>(operation.verb)].ranges[i];
            operation.arguments[i] = range > 1 ? static_cast<int>(random() % static_cast<unsigned>(range)) : 0;
        }
    }
    return operations;
}

std::string describe(std::vector<Trial::Verb> const& verbs, Operations const& operations) {
    std::string text;
    for (Operation const& operation : operations) {
        Trial::Verb const& verb = verbs[static_cast<std::size_t>(operation.verb)];
        text += std::string("  ") + verb.name;
        for (int i = 0; i < 3; ++i)
            if (verb.ranges[i] > 1)
                text += " " + std::to_string(operation.arguments[i]);
        text += "\n";
    }
    return text;
}

int countFailures() { return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); }

/// What went wrong, or nothing; `done` operations were played.
std::string play(std::unique_ptr<Trial> trial, Operations const& operations, std::size_t& done) {
    int const failuresBefore = countFailures();
    try {
        for (done = 0; done < operations.size();) {
            auto const& [verb, arguments] = operations[done++];
            trial->verbs[static_cast<std::size_t>(verb)].run(arguments[0], arguments[1], arguments[2]);
            bool const deep = done % deepEvery == 0 || done == operations.size();
            if (std::string difference = trial->compare(deep); !difference.empty())
                return difference;
        }
        trial.reset();
    } catch (std::exception const& error) {
        return std::string("an exception: ") + error.what();
    }
    return countFailures() == failuresBefore ? "" : "a failed expectation";
}

/// The same in a process of its own.
std::string playInChild(MakeTrial make, Operations const& operations) {
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        alarm(childPatience);
        crashText[0] = 0;
        // Only the last word counts.
        [[maybe_unused]] FILE* const out = std::freopen("/dev/null", "w", stdout);
        [[maybe_unused]] FILE* const err = std::freopen("/dev/null", "w", stderr);
        std::size_t done = 0;
        std::string const failure = play(make(), operations, done).substr(0, 4000);
        [[maybe_unused]] auto const written = write(ends[1], failure.data(), failure.size());
        _exit(failure.empty() ? 0 : 1);
    }
    close(ends[1]);
    char buffer[4096];
    auto const length = read(ends[0], buffer, sizeof buffer);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (length > 0)
        return std::string(buffer, static_cast<std::size_t>(length));
    return status == 0 ? "" : WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status)) : "a crash";
}

/// Drops ever smaller runs of operations without which it still fails.
Operations shrink(MakeTrial make, Operations operations) {
    for (std::size_t chunk = std::max<std::size_t>(operations.size() / 2, 1); chunk > 0;) {
        bool dropped = false;
        for (std::size_t at = 0; at < operations.size();) {
            auto const from = operations.begin() + static_cast<std::ptrdiff_t>(at);
            auto const to = from + static_cast<std::ptrdiff_t>(std::min(chunk, operations.size() - at));
            Operations shorter(operations.begin(), from);
            shorter.insert(shorter.end(), to, operations.end());
            if (playInChild(make, shorter).empty()) {
                at += chunk;
            } else {
                operations = std::move(shorter);
                dropped = true;
            }
        }
        if (!dropped || chunk > 1)
            chunk /= 2;
    }
    return operations;
}

std::string tellFailure(MakeTrial make, Operations const& operations, std::string const& failure) {
    std::string const again = playInChild(make, operations);
    Operations const few = again.empty() ? operations : shrink(make, operations);
    std::string const last = again.empty() ? failure + " (not when played again)" : playInChild(make, few);
    return std::to_string(few.size()) + " of " + std::to_string(operations.size()) + " operations:\n" +
           describe(make()->verbs, few) + "end in: " + last;
}

}  // namespace

void playRandomly(char const* name, MakeTrial make) {
    if (char const* const seedText = std::getenv("VORLEX_SEED")) {
        Operations const operations = drawOperations(make()->verbs, std::strtoul(seedText, nullptr, 10));
        if (std::string const failure = playInChild(make, operations); !failure.empty())
            FAIL() << name << ", seed " << seedText << ": " << tellFailure(make, operations, failure);
        return;
    }
    watchForCrashes();
    long const wanted = support::sanitized ? 50'000 : support::byEffort(100'000, 1'000'000, 5'000'000);
    for (unsigned long seed = 1; seed <= static_cast<unsigned long>(wanted) / episodeLength; ++seed) {
        std::snprintf(crashText, sizeof crashText, "%s: a crash with seed %lu; VORLEX_SEED=%lu cuts it down.\n", name,
                      seed, seed);
        std::unique_ptr<Trial> trial = make();
        Operations operations = drawOperations(trial->verbs, seed);
        std::size_t done = 0;
        std::string const failure = play(std::move(trial), operations, done);
        if (failure.empty())
            continue;
        operations.resize(done);
        FAIL() << name << ", seed " << seed << ": " << tellFailure(make, operations, failure);
    }
}

}  // namespace models
