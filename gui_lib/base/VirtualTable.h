#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace gui {

/// Which functions the virtual calls of an object reach, read from its class's table of virtual functions as the
/// Itanium C++ ABI lays it out. Elsewhere, and where in doubt, nothing is known: tables are null, and no two functions
/// count as the same.
class VirtualTable {
public:
    /// The table of the object's class, which is that of a base while the base's constructor or destructor runs.
    template <class Object>
    static VirtualTable of(Object const& object) {
        VirtualTable result;
#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
        std::memcpy(&result.functions_, static_cast<void const*>(&object), sizeof(result.functions_));
#else
        static_cast<void>(object);
#endif
        return result;
    }

    std::uintptr_t getAddress() const { return reinterpret_cast<std::uintptr_t>(functions_); }

    /// Calls of each of these member functions reach the same function by both tables. The members are named by the
    /// class whose tables these are, or one of its bases with the same address.
    template <class... Members>
    bool sharesAll(VirtualTable other, Members... members) const {
        return functions_ && other.functions_ && (... && shares_(other, members));
    }

private:
    template <class Member>
    bool shares_(VirtualTable other, Member member) const {
        struct {
            std::ptrdiff_t offsetPlusOne;
            std::ptrdiff_t adjustment;
        } parts;
        static_assert(sizeof(parts) == sizeof(member));
        std::memcpy(&parts, &member, sizeof(parts));
        bool const isVirtual = parts.offsetPlusOne % 2 != 0 && parts.adjustment == 0;
        return isVirtual && find_(parts.offsetPlusOne - 1) == other.find_(parts.offsetPlusOne - 1);
    }
    void const* find_(std::ptrdiff_t offset) const {
        void const* function = nullptr;
        std::memcpy(&function, functions_ + offset, sizeof(function));
        return function;
    }

    char const* functions_ = nullptr;
};

/// Remembers with an object what its class was found to leave as a base has it, so that a walk over many objects may
/// take the base's own ways at the price of one comparison. Holds three flags.
class VirtualMemo {
public:
    /// What `learn` answered for the table of the object's class; 0 where nothing is known. The class is another while
    /// the object is being constructed, so it is compared each time.
    template <class Object, class Learn>
    unsigned getFlags(Object const& object, Learn learn) {
        VirtualTable const table = VirtualTable::of(object);
        // Tables begin at multiples of 8: the flags stand in the lower bits.
        std::uintptr_t const flags = known_ ^ table.getAddress();
        if (flags < 8) [[likely]]
            return static_cast<unsigned>(flags);
        unsigned const learned = learn(table);
        known_ = table.getAddress() | learned;
        return learned;
    }

private:
    std::uintptr_t known_ = 0;
};

}  // namespace gui
