#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace models {

/// The toolkit and a naive model of it side by side, both fresh. Operations name their subjects by slots that may be
/// empty, so that any part of a list of operations can be played.
class Trial {
public:
    struct Verb {
        char const* name;
        int weight;
        /// Each argument is drawn from 0 to one less than this.
        int ranges[3];
        /// Does the same to the toolkit and to the model.
        std::function<void(int, int, int)> run;
    };

    virtual ~Trial();
    /// What differs between the two, or nothing. `deep` asks for what takes too long after every operation.
    virtual std::string compare(bool deep) = 0;

    std::vector<Verb> verbs;
};

/// No slot, no number.
constexpr int none = -1;

using MakeTrial = std::unique_ptr<Trial> (*)();

template <class T>
std::unique_ptr<Trial> makeTrial() {
    return std::make_unique<T>();
}

/// Plays about a million random operations (fewer under sanitizers and with little effort) in episodes on a fresh trial
/// each. The first list of operations that ends in a difference or another failure is cut down to few and told with its
/// seed. With VORLEX_SEED only that episode is played, in processes of its own, so that a crash is cut down as well.
void playRandomly(char const* name, MakeTrial make);

}  // namespace models
