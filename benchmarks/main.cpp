// Runs the workloads. Without arguments, and with those of Google Benchmark, times are printed, and beside them what
// was allocated and what the device was given. With --heap the memory of a button is printed. With --instructions,
// which is meant for callgrind, each operation is counted on its own.

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstring>

#include "benchmarks/TimeTable.h"
#include "benchmarks/Workload.h"
#include "platform/vtx/vtxRenderer.h"

std::vector<WorkloadKind> const& getWorkloadKinds() {
    static std::vector<WorkloadKind> const kinds = {
        {{"W1a", "W1a2", "W1i", "W1c", "W1d", "W1e", "W1f", "W1h"}, makePanel, {100, 1000, 10000}},
        {{"W4a", "W4b", "W4c"}, makeLayoutTree, {8}},
        {{"W5a", "W5b"}, makeManyWindows, {1000}},
        {{"W5c", "W5d", "W5e", "W5f"}, makeManyWidgets, {1000, 10000, 100000}},
    };
    return kinds;
}

namespace {

std::string nameOf(std::string const& id, int size) {
    std::string name = id;
    name += "/";
    name += std::to_string(size);
    return name;
}

void prepare(Operation const& operation) {
    if (operation.before)
        operation.before();
}

Operation const* find(Workload const& workload, std::string const& id) {
    for (Operation const& operation : workload.getOperations())
        if (operation.id == id)
            return &operation;
    return nullptr;
}

void warm(Operation const& operation, int runs) {
    for (int i = 0; i < runs; ++i) {
        prepare(operation);
        operation.run();
    }
}

// --- Time ---

void measureTime(benchmark::State& state, WorkloadKind const& kind, int size, std::string const& id) {
    auto const workload = kind.make(size);
    Operation const& operation = *find(*workload, id);
    warm(operation, 3);
    vtxRenderer& renderer = *vtxRenderer::get();
    renderer.resetCounters();
    std::size_t allocations = 0;
    for (auto _ : state) {
        if (operation.before) {
            state.PauseTiming();
            operation.before();
            renderer.resetCounters();
            state.ResumeTiming();
        }
        std::size_t const start = HeapCount::now().allocations;
        operation.run();
        allocations += HeapCount::now().allocations - start;
    }
    double const runs = static_cast<double>(state.iterations());
    // Else the counters hold the last run only.
    double const counted = operation.before ? 1.0 : runs;
    vtxRenderer::Counters const counters = renderer.getCounters();
    state.counters[TimeTable::shares] = operation.per;
    state.counters[TimeTable::allocations] = static_cast<double>(allocations) / runs / operation.per;
    state.counters[TimeTable::deviceRuns] = counters.runs / counted;
    state.counters[TimeTable::instances] = counters.quads / counted;
    state.SetLabel(operation.what);
}

void registerTimes() {
    constexpr double seconds = 0.1;
    for (WorkloadKind const& kind : getWorkloadKinds())
        for (int size : kind.sizes)
            for (std::string const& id : kind.ids)
                benchmark::RegisterBenchmark(
                    nameOf(id, size).c_str(),
                    [&kind, size, id](benchmark::State& state) { measureTime(state, kind, size, id); })
                    ->MeasureProcessCPUTime()
                    ->MinTime(seconds)
                    ->Unit(benchmark::kMicrosecond);
}

// --- Heap ---

void printHeap(int size) {
    HeapCount const grown = measurePanelHeap(size);
    int const buttons = size - 1;
    std::printf("W1b/%-12d %14.0f %16.2f\n", size, double(grown.liveBytes) / buttons,
                double(grown.allocations) / buttons);
}

/// Each size in a process of its own, so that none finds what another has left.
int printHeap() {
    std::printf("%-16s %14s %16s\n", "heap", "bytes/button", "allocs/button");
    int failed = 0;
    for (int size : {100, 1000, 10000}) {
        std::fflush(stdout);
        pid_t const child = fork();
        if (child == 0) {
            printHeap(size);
            std::fflush(stdout);
            _exit(0);
        }
        int status = 1;
        waitpid(child, &status, 0);
        failed |= status;
    }
    return failed ? 1 : 0;
}

// --- Instructions ---

/// Counts one operation and leaves its instructions in a dump of its name, with how many runs and widgets share them.
/// Prints what else the last run took: allocations and device runs.
void countInstructions(Operation const& operation, int size) {
    warm(operation, size >= 100000 ? 1 : 3);
    int const runs = size >= 10000 ? 1 : 4;
    std::size_t allocations = 0;
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < runs; ++i) {
        prepare(operation);
        vtxRenderer::get()->resetCounters();
        std::size_t const start = HeapCount::now().allocations;
        CALLGRIND_START_INSTRUMENTATION;
        operation.run();
        CALLGRIND_STOP_INSTRUMENTATION;
        allocations = HeapCount::now().allocations - start;
    }
    std::string const name = nameOf(operation.id, size);
    std::string const text = name + "|" + std::to_string(runs * operation.per) + "|" + operation.what;
    CALLGRIND_DUMP_STATS_AT(text.c_str());
    std::printf("%s|%g|%u\n", name.c_str(), double(allocations) / operation.per,
                vtxRenderer::get()->getCounters().runs);
}

/// Those whose name begins with `wanted`: "W1", "W1c/1000"; "" is all.
void countInstructions(std::string const& wanted) {
    for (WorkloadKind const& kind : getWorkloadKinds()) {
        for (int size : kind.sizes) {
            std::unique_ptr<Workload> workload;
            for (std::string const& id : kind.ids) {
                if (nameOf(id, size).compare(0, wanted.size(), wanted) != 0)
                    continue;
                if (!workload)
                    workload = kind.make(size);
                countInstructions(*find(*workload, id), size);
            }
        }
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "--instructions") == 0) {
        countInstructions(count > 2 ? arguments[2] : "");
        return 0;
    }
    if (count > 1 && std::strcmp(arguments[1], "--heap") == 0)
        return printHeap();
    registerTimes();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    TimeTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
