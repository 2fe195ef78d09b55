#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "platform/qor/Memory.h"

/// Internal: an array that is written anew again and again from the front, mostly with what stands there already. What
/// was written in this round comes first, then a gap, then what is left of the round before, which is either kept or
/// dropped. While all is kept, nothing is moved.
template <class T>
class vtxGapBuffer {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    vtxGapBuffer() = default;
    ~vtxGapBuffer() { qor_free(data_); }
    vtxGapBuffer(vtxGapBuffer const&) = delete;
    vtxGapBuffer& operator=(vtxGapBuffer const&) = delete;

    T* data() { return data_; }
    /// How many were written in this round.
    std::size_t size() const { return written_; }
    /// How many of the round before are left, and the first of them.
    std::size_t getLeft() const { return end_ - left_; }
    T* getNext() { return data_ + left_; }

    /// What was written is now of the round before.
    void restart() {
        end_ = written_;
        written_ = left_ = 0;
    }
    /// Writes the next `count` of the round before again.
    void keep(std::size_t count) {
        if (written_ != left_)
            std::memmove(data_ + written_, data_ + left_, count * sizeof(T));
        written_ += count;
        left_ += count;
    }
    void drop(std::size_t count) { left_ += count; }
    /// Its content is undefined.
    T& append() {
        if (written_ == (left_ == end_ ? capacity_ : left_)) [[unlikely]]
            widen_();
        return data_[written_++];
    }

private:
    /// Makes room before what is left, by an eighth, so that it is rarely moved.
    [[gnu::noinline]] void widen_() {
        std::size_t const left = getLeft();
        std::size_t const used = written_ + left;
        std::size_t const room = used / 8 + 64;
        if (used + room > capacity_) {
            capacity_ = used + room;
            T* const larger = static_cast<T*>(qor_malloc(capacity_ * sizeof(T)));
            if (data_) {
                std::memcpy(larger, data_, written_ * sizeof(T));
                std::memcpy(larger + capacity_ - left, data_ + left_, left * sizeof(T));
            }
            qor_free(data_);
            data_ = larger;
        } else if (left > 0) {
            std::memmove(data_ + capacity_ - left, data_ + left_, left * sizeof(T));
        }
        left_ = capacity_ - left;
        end_ = capacity_;
    }

    T* data_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t written_ = 0;
    std::size_t left_ = 0;
    std::size_t end_ = 0;
};
