#pragma once

#include <map>
#include <string>

namespace speed_test {

/// Counts the calls of GL functions that are made through libepoxy while one lives. One lives at a time.
class GLCalls {
public:
    GLCalls();
    ~GLCalls();
    GLCalls(GLCalls const&) = delete;
    GLCalls& operator=(GLCalls const&) = delete;

    /// Of all functions since the start.
    int getTotal() const;
    /// By name, those that were called.
    std::map<std::string, int> const& getCounts() const;
    /// A line for each function that was called.
    std::string describe() const;
    /// Whether calls of a function are seen.
    static bool getCounted(std::string const& function);
};

}  // namespace speed_test
