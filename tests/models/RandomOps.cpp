#include "tests/models/RandomOps.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Soak.h"

namespace models {

Trial::~Trial() = default;

std::string Trial::compareTold(Side& real, Side& model) {
    real.tell("nothing more");
    model.tell("nothing more");
    auto const [is, wanted] = std::mismatch(real.told.begin(), real.told.end(), model.told.begin());
    std::string const difference =
        is == real.told.end() ? "" : testing::PrintToString(*is) + ", not " + testing::PrintToString(*wanted);
    real.told.clear();
    model.told.clear();
    return difference;
}

namespace {

struct Operation {
    int verb;
    std::array<int, 3> arguments;
};

using Operations = std::vector<Operation>;

constexpr long episodeLength = 500;
/// How long an episode may take in a process of its own, seconds.
constexpr unsigned childPatience = 20;

Operations drawOperations(std::vector<Trial::Verb> const& verbs, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<int> weights;
    for (Trial::Verb const& verb : verbs)
        weights.push_back(verb.weight);
    std::discrete_distribution<int> lots(weights.begin(), weights.end());
    Operations operations(episodeLength);
    for (auto& [verb, arguments] : operations) {
        verb = lots(random);
        for (std::size_t i = 0; i < 3; ++i)
            arguments[i] = static_cast<int>(random() % static_cast<unsigned>(std::max(verbs[verb].ranges[i], 1)));
    }
    return operations;
}

std::string describe(std::vector<Trial::Verb> const& verbs, Operations const& operations) {
    std::string text;
    for (auto const& [verb, arguments] : operations) {
        text += std::string("  ") + verbs[verb].name;
        for (std::size_t i = 0; i < 3; ++i)
            if (verbs[verb].ranges[i] > 1)
                text += " " + std::to_string(arguments[i]);
        text += "\n";
    }
    return text;
}

int countFailures() { return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); }

/// What went wrong, or nothing; `operations` end there.
std::string play(MakeTrial make, Operations& operations) {
    int const failuresBefore = countFailures();
    try {
        std::unique_ptr<Trial> trial = make();
        for (std::size_t i = 0; i < operations.size(); ++i) {
            auto const& [verb, arguments] = operations[i];
            trial->verbs[verb].run(arguments[0], arguments[1], arguments[2]);
            if (std::string difference = trial->compare(); !difference.empty()) {
                operations.resize(i + 1);
                return difference;
            }
        }
    } catch (std::exception const& error) {
        return std::string("an exception: ") + error.what();
    }
    return countFailures() == failuresBefore ? "" : "a failed expectation";
}

/// The same in a process of its own: its status.
int playInChild(MakeTrial make, Operations operations) {
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        alarm(childPatience);
        // Only the last word counts.
        for (FILE* const out : {stdout, stderr})
            [[maybe_unused]] FILE* const nowhere = std::freopen("/dev/null", "w", out);
        _exit(play(make, operations).empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

/// Drops ever smaller runs of operations without which it still fails.
Operations shrink(MakeTrial make, Operations operations) {
    for (std::size_t chunk = std::max<std::size_t>(operations.size() / 2, 1); chunk > 0;) {
        bool dropped = false;
        for (std::size_t at = 0; at < operations.size();) {
            auto const from = static_cast<std::ptrdiff_t>(at);
            auto const to = static_cast<std::ptrdiff_t>(std::min(at + chunk, operations.size()));
            Operations shorter = operations;
            shorter.erase(shorter.begin() + from, shorter.begin() + to);
            if (playInChild(make, shorter) == 0) {
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

}  // namespace

void playRandomly(MakeTrial make) {
    std::vector<Trial::Verb> const verbs = make()->verbs;
    char const* const seedText = std::getenv("VORLEX_SEED");
    long const wanted = support::sanitized ? 50'000 : support::byEffort(100'000, 1'000'000, 5'000'000);
    long const first = seedText ? std::strtol(seedText, nullptr, 10) : 1;
    for (long seed = first; seed < first + wanted / episodeLength; ++seed) {
        Operations operations = drawOperations(verbs, static_cast<unsigned>(seed));
        std::string failure;
        if (seedText ? playInChild(make, operations) == 0 : (failure = play(make, operations)).empty())
            continue;
        std::size_t const before = operations.size();
        int status = playInChild(make, operations);
        if (status == 0) {
            failure += " (not when played again)";
        } else {
            operations = shrink(make, operations);
            status = playInChild(make, operations);
            failure = WIFEXITED(status) ? play(make, operations) : "signal " + std::to_string(WTERMSIG(status));
        }
        FAIL() << "seed " << seed << ": " << operations.size() << " of " << before << " operations:\n"
               << describe(verbs, operations) << "end in: " << failure;
    }
}

}  // namespace models
