#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "platform/qor/Log.h"
#include "platform/qor/String.h"

namespace fuzz {

/// Ends the program, which is how a fuzzer learns of a broken property.
inline void check(bool holds, char const* property) {
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", property);
    std::abort();
}

/// For targets whose inputs make the toolkit complain.
inline void muteLog() {
    qor::setLogSink([](char const*, int, char const*) {});
}

/// Makes choices from the bytes of an input; at their end all are 0.
class FuzzInput {
public:
    FuzzInput(uint8_t const* data, size_t size) : bytes_(reinterpret_cast<char const*>(data), size) {}

    bool isEmpty() const { return bytes_.empty(); }

    unsigned getByte() {
        if (bytes_.empty())
            return 0;
        auto const byte = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return byte;
    }
    /// 0 to `count` - 1; of two bytes where one is not enough.
    size_t pick(size_t count) { return (count > 256 ? getByte() << 8 | getByte() : getByte()) % count; }
    bool getFlag() { return (getByte() & 1) != 0; }
    /// Most often a small number, sometimes one at the edge of what a number can be.
    int getInt() {
        static constexpr int edges[] = {-1, 0, 1, 65535, 65536, -65536, 1 << 24, INT32_MAX - 1, INT32_MAX, INT32_MIN};
        unsigned const byte = getByte();
        return byte >= 246 ? edges[byte - 246] : int(byte & 1 ? byte : getByte() << 1) - 64;
    }
    float getFloat() { return static_cast<float>(getInt()) / (getFlag() ? 8.0f : 1.0f); }

    /// Of at most `length` bytes.
    std::string_view getBytes(size_t length) {
        std::string_view const taken = bytes_.substr(0, length);
        bytes_.remove_prefix(taken.size());
        return taken;
    }
    std::string_view getRest() { return getBytes(bytes_.size()); }

private:
    std::string_view bytes_;
};

}  // namespace fuzz
