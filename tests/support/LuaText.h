#pragma once

#include <string>
#include <string_view>

struct lua_State;

namespace support {

/// A Lua state for a test, with the libraries open. Failing scripts fail the test.
class LuaText {
public:
    LuaText();
    /// Runs `script` at once.
    explicit LuaText(std::string_view script);
    ~LuaText();
    LuaText(LuaText const&) = delete;
    LuaText& operator=(LuaText const&) = delete;

    operator lua_State*() const { return state_; }

    void run(std::string_view script);
    /// Pushes the value of an expression.
    void push(std::string_view expression);
    /// The value on the top of the stack as Lua text, tables with sorted keys; what two values have in common if equal.
    std::string describeTop() const;
    int getTop() const;
    void clearStack();

private:
    lua_State* state_;
};

}  // namespace support
