#pragma once

#include <memory>
#include <typeinfo>

struct lua_State;

namespace gui::skin {

/// What was read from skin tables that never change, by the table's identity and the class that read it.
/// A skin file that returns the same tables each time says so by setting the global "SkinTablesConstant" to true; many
/// widgets then share one reading.
/// Lifetime: lives in the Lua state and ends with it; the tables it knows are kept alive meanwhile.
class SkinTableCache {
public:
    /// While one lives, tables come from the functions of the skin file, so they may be kept.
    class SkinFileScope {
    public:
        SkinFileScope() : outer_(current_) { current_ = this; }
        ~SkinFileScope() { current_ = outer_; }
        SkinFileScope(SkinFileScope const&) = delete;
        SkinFileScope& operator=(SkinFileScope const&) = delete;

    private:
        friend class SkinTableCache;

        SkinFileScope* outer_;
    };

    /// Whether the table on the top of the stack may be kept.
    static bool getUsable(lua_State* L);
    /// What `reader` has read from the table on the top of the stack, or null. One reader always keeps the same
    /// `Content`.
    template <class Content>
    static std::shared_ptr<Content> find(lua_State* L, std::type_info const& reader) {
        std::shared_ptr<void> const* const found = find_(L, reader);
        return found ? std::static_pointer_cast<Content>(*found) : nullptr;
    }
    static void keep(lua_State* L, std::type_info const& reader, std::shared_ptr<void> content);

    /// Forgets everything; the tables may be collected.
    static void clear(lua_State* L);

private:
    static std::shared_ptr<void> const* find_(lua_State* L, std::type_info const& reader);

    static inline SkinFileScope* current_ = nullptr;
};

}  // namespace gui::skin
