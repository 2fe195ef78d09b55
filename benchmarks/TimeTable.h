#pragma once

#include <benchmark/benchmark.h>

/// Prints a row for each operation: CPU time and allocations of one widget or event, and what a run gave the device.
class TimeTable final : public benchmark::BenchmarkReporter {
public:
    // --- Names of the counters that a benchmark sets ---
    /// Widgets or events that share the cost of a run.
    static constexpr char const* shares = "shares";
    static constexpr char const* allocations = "allocations";
    static constexpr char const* deviceRuns = "deviceRuns";
    static constexpr char const* instances = "instances";

    // BenchmarkReporter:
    bool ReportContext(Context const& context) override;
    void ReportRuns(std::vector<Run> const& runs) override;
};
