#pragma once

namespace qor {

/// A static value that is never destroyed. With a constexpr default constructor it is there before the program begins,
/// so that reaching it needs no check, as a static of a function would.
template <typename T>
union Immortal {
    T value;

    constexpr Immortal() : value() {}
    Immortal(Immortal const&) = delete;
    Immortal& operator=(Immortal const&) = delete;
    ~Immortal() {}
};

}  // namespace qor
