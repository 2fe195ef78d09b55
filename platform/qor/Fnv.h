#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace qor {

inline constexpr uint64_t fnvOffset = 14695981039346656037ULL;
inline constexpr uint64_t fnvPrime = 1099511628211ULL;

/// 64-bit FNV-1a over bytes; `seed` continues an earlier hash.
inline uint64_t fnv1a(void const* data, size_t size, uint64_t seed = fnvOffset) {
    auto const* bytes = static_cast<unsigned char const*>(data);
    uint64_t hash = seed;
    for (size_t i = 0; i < size; ++i)
        hash = (hash ^ bytes[i]) * fnvPrime;
    return hash;
}

/// Hasher of the toolkit's hash maps: FNV-1a over the key's bytes, for numbers, enums, pointers and strings.
/// Strings, views and literals of one text hash alike, so that a map may be searched without making a string.
template <typename Key>
struct FnvHash {
    size_t operator()(Key const& key) const requires(std::is_scalar_v<Key>) { return fnv1a(&key, sizeof(Key)); }
};

template <typename Char>
struct FnvStringHash {
    using is_transparent = void;
    size_t operator()(std::basic_string_view<Char> text) const {
        return fnv1a(text.data(), text.size() * sizeof(Char));
    }
};

}  // namespace qor
