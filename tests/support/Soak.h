#pragma once

#include <cstdlib>
#include <string_view>

#if defined(__has_feature)
#define VORLEX_HAS_FEATURE(feature) __has_feature(feature)
#else
#define VORLEX_HAS_FEATURE(feature) 0
#endif

namespace support {

/// How long random tests go on: quick unless the environment variable VORLEX_EFFORT says "all" or "soak", as `./test
/// --all` and `./test --soak` do.
enum class Effort { Quick, All, Soak };

inline Effort getEffort() {
    char const* const value = std::getenv("VORLEX_EFFORT");
    std::string_view const effort = value ? value : "";
    return effort == "soak" ? Effort::Soak : effort == "all" ? Effort::All : Effort::Quick;
}

template <class T>
T byEffort(T quick, T all, T soak) {
    return getEffort() == Effort::Soak ? soak : getEffort() == Effort::All ? all : quick;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || VORLEX_HAS_FEATURE(address_sanitizer) || \
    VORLEX_HAS_FEATURE(thread_sanitizer)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

}  // namespace support

#undef VORLEX_HAS_FEATURE
