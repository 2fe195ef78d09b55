#pragma once

#include "gui_lib/frame/Message.h"
#include "platform/qor/Containers.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <tuple>
#include <utility>

namespace gui {

/// The objects of one message class. A request takes the unused object with the lowest index; only when all are in use
/// is one made.
template <class T>
class MessageStorage {
public:
    template <class... Payload>
    T* take(Payload&&... payload) {
        T* const message = takeUnused_();
        message->set(std::forward<Payload>(payload)...);
        return message;
    }

    void release(Message* message) {
        std::size_t const index = message->poolIndex_;
        unused_[index / 64] |= std::uint64_t{1} << (index % 64);
        if (index / 64 < firstWord_)
            firstWord_ = index / 64;
    }

    std::size_t size() const { return messages_.size(); }

private:
    T* takeUnused_() {
        for (; firstWord_ < unused_.size(); ++firstWord_) {
            std::uint64_t& word = unused_[firstWord_];
            if (word == 0)
                continue;
            std::size_t const bit = static_cast<std::size_t>(__builtin_ctzll(word));
            word &= word - 1;
            return messages_[firstWord_ * 64 + bit].get();
        }
        std::size_t const index = messages_.size();
        messages_.push_back(std::make_unique<T>());
        messages_.back()->poolIndex_ = index;
        if (index % 64 == 0)
            unused_.push_back(0);
        firstWord_ = index / 64;
        return messages_.back().get();
    }

    qor::vector<std::unique_ptr<T>> messages_;
    /// A bit for each unused object; no word before `firstWord_` has one.
    qor::vector<std::uint64_t> unused_;
    std::size_t firstWord_ = 0;
};

/// All message objects, kept until GUI ends, so that input allocates nothing in the steady state.
class MessagePool {
public:
    template <class T>
    MessageStorage<T>& storage() {
        return std::get<MessageStorage<T>>(storages_);
    }

private:
    std::tuple<MessageStorage<MessageChar>, MessageStorage<MessageKeyDown>, MessageStorage<MessageKeyUp>,
               MessageStorage<MessageKillWindow>, MessageStorage<MessageMouseDown>, MessageStorage<MessageMouseUp>,
               MessageStorage<MessageMouseMove>, MessageStorage<MessageMouseWheel>, MessageStorage<MessageRawKeyInput>,
               MessageStorage<MessageRawMouseInput>, MessageStorage<MessageUserCallback>>
        storages_;
};

}  // namespace gui
