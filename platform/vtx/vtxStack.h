#pragma once

#include "platform/qor/Containers.h"

#include <cstddef>

/// Internal: a stack of plain values that keeps its storage, so that a push is a store and a count.
template <class Value>
class vtxStack {
public:
    vtxStack() = default;
    vtxStack(vtxStack const&) = delete;
    vtxStack& operator=(vtxStack const&) = delete;

    /// A new top, to be filled.
    Value& push() {
        if (next_ == limit_) [[unlikely]]
            grow_();
        ++count_;
        return *next_++;
    }
    /// Not of an empty one, like `top`.
    void pop() {
        --next_;
        --count_;
    }
    Value const& top() const { return next_[-1]; }
    std::size_t size() const { return count_; }
    /// Drops what lies above.
    void shrink(std::size_t count) {
        next_ -= count_ - count;
        count_ = count;
    }

private:
    [[gnu::noinline]] void grow_() {
        values_.resize(values_.size() * 2 + 8);
        next_ = values_.data() + count_;
        limit_ = values_.data() + values_.size();
    }

    qor::vector<Value> values_;
    Value* next_ = nullptr;
    Value* limit_ = nullptr;
    std::size_t count_ = 0;
};
