#include "benchmarks/TimeTable.h"

#include <cstdio>

bool TimeTable::ReportContext(Context const&) {
    std::printf("%-13s %-44s %12s %12s %6s %10s\n", "", "", "CPU us", "allocations", "runs", "instances");
    return true;
}

void TimeTable::ReportRuns(std::vector<Run> const& runs) {
    for (Run const& run : runs) {
        auto const counter = [&run](char const* name) { return run.counters.at(name).value; };
        std::string const name = run.run_name.function_name;
        std::printf("%-13s %-44s %12.3f %12.2f %6.0f %10.0f\n", name.c_str(), run.report_label.c_str(),
                    run.GetAdjustedCPUTime() / counter(shares), counter(allocations), counter(deviceRuns),
                    counter(instances));
        std::fflush(stdout);
    }
}
