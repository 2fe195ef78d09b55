#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/Memory.h"

#include <cstddef>
#include <new>

namespace gui {

/// Storage of handler records, which stay where they are and are never freed nor used again: a stale handler must
/// answer null for as long as the program runs.
template <class Record>
class HandlerArena {
public:
    /// A default record at the end.
    Record* append() {
        if (total_ == chunks_.size() * chunkSize)
            chunks_.push_back(static_cast<Record*>(qor_malloc(sizeof(Record) * chunkSize)));
        Record* const record = new (chunks_.back() + total_ % chunkSize) Record();
        ++total_;
        return record;
    }

    /// Records since the last `clear`.
    std::size_t size() const { return total_ - first_; }
    Record* at(std::size_t index) const {
        std::size_t const place = first_ + index;
        return chunks_[place / chunkSize] + place % chunkSize;
    }
    /// The table begins anew; the records stay.
    void clear() { first_ = total_; }

private:
    static constexpr std::size_t chunkSize = 512;

    qor::vector<Record*> chunks_;
    std::size_t first_ = 0;
    std::size_t total_ = 0;
};

}  // namespace gui
