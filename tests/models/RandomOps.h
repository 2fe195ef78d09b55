#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace models {

/// No slot, no number.
constexpr int none = -1;

/// One end of a comparison, the toolkit or a naive model of it: it tells in lines what it hears and how it stands.
class Side {
public:
    /// What is told, and up to six numbers.
    using Line = std::pair<std::string_view, std::array<int, 6>>;

    template <class... Numbers>
    void tell(char const* what, Numbers... numbers) {
        told.push_back({what, {static_cast<int>(numbers)...}});
    }
    /// Number `id` hears of something; a trap that waits for that is sprung, once.
    void hear(int id, int event, int detail = 0) {
        tell("heard", id, event, detail);
        if (auto const trap = traps.extract({id, event}))
            trap.mapped()();
    }

    std::vector<Line> told;
    std::map<std::pair<int, int>, std::function<void()>> traps;
};

/// The two sides, both fresh. Operations name their subjects by slots that may be empty, so that any part of a list of
/// operations can be played.
class Trial {
public:
    struct Verb {
        char const* name;
        int weight;
        /// Each argument is drawn from 0 to one less than this.
        std::array<int, 3> ranges;
        std::function<void(int, int, int)> run;
    };

    virtual ~Trial();
    /// What differs between the two, or nothing.
    virtual std::string compare() = 0;

    std::vector<Verb> verbs;

protected:
    /// The first lines that differ; both are cleared.
    static std::string compareTold(Side& real, Side& model);
};

/// A trial whose verbs are written once for both sides. Those have the same operations and `describe`.
template <class Real, class Model>
class Pair : public Trial {
public:
    explicit Pair(int slots = 0) : ids(static_cast<std::size_t>(slots), none) {}
    std::string compare() override {
        real.describe();
        model.describe();
        return compareTold(real, model);
    }

protected:
    template <class Run>
    void add(char const* name, int weight, std::array<int, 3> ranges, Run run) {
        verbs.push_back({name, weight, ranges, [this, run](int a, int b, int c) {
                             run(real, a, b, c);
                             run(model, a, b, c);
                         }});
    }
    /// The first argument is a slot; `run` gets the number of who lives there.
    template <class Run>
    void addOnLive(char const* name, int weight, std::array<int, 3> ranges, Run run) {
        add(name, weight, ranges, [this, run](auto& side, int slot, int a, int b) {
            if (side.live(ids[slot]))
                run(side, ids[slot], a, b);
        });
    }
    template <class... Arguments>
    void create(int slot, Arguments... arguments) {
        if (model.live(ids[slot]))
            return;
        ids[slot] = model.create(arguments...);
        real.create(arguments...);
    }

    Model model;
    Real real;
    /// The numbers of who is in the slots; they stay after a death.
    std::vector<int> ids;
};

using MakeTrial = std::unique_ptr<Trial> (*)();

/// Plays about a million random operations (fewer under sanitizers and with little effort) in episodes on a fresh trial
/// each. The first list of operations that ends in a difference or another failure is cut down to few and told with its
/// seed. With VORLEX_SEED as many episodes are played from that one on, in processes of their own, so that a crash is
/// found and cut down as well.
void playRandomly(MakeTrial make);

template <class T>
void playRandomly() {
    playRandomly([]() -> std::unique_ptr<Trial> { return std::make_unique<T>(); });
}

}  // namespace models
