#pragma once

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/qor/Fnv.h"
#include "platform/qor/Memory.h"
#include "platform/qor/Span.h"
#include "platform/qor/String.h"

/// The standard containers over the counted allocator.
namespace qor {

template <typename T>
using vector = std::vector<T, allocator<T>>;

template <typename T>
using list = std::list<T, allocator<T>>;

template <typename T>
using deque = std::deque<T, allocator<T>>;

template <typename T, typename Less = std::less<T>>
using set = std::set<T, Less, allocator<T>>;

template <typename Key, typename T, typename Less = std::less<Key>>
using map = std::map<Key, T, Less, allocator<std::pair<Key const, T>>>;

/// Hashed with 64-bit FNV-1a. With string keys it may be searched by a view or a literal.
template <typename Key, typename T, typename Hash = FnvHash<Key>>
using hash_map = std::unordered_map<Key, T, Hash, std::equal_to<>, allocator<std::pair<Key const, T>>>;

template <typename Key, typename Hash = FnvHash<Key>>
using hash_set = std::unordered_set<Key, Hash, std::equal_to<>, allocator<Key>>;

}  // namespace qor
