#pragma once

/// Internal: under what the front half logs.
inline constexpr char const* vtxLogTag = "VTX";
inline constexpr int vtxLogProblem = 64;
