// Runs the workloads. Without arguments, and with those of Google Benchmark, times are printed, and beside them what
// was allocated and what the device was given. With --instructions, which is meant for callgrind, each operation is
// counted on its own.

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstring>

#include "benchmarks/HeapCount.h"
#include "benchmarks/Workload.h"
#include "platform/vtx/vtxRenderer.h"

std::vector<WorkloadKind> const& getWorkloadKinds() {
    static std::vector<WorkloadKind> const kinds = {
        {{"W1a", "W1a2", "W1i", "W1c", "W1d", "W1e", "W1f", "W1h"}, makePanel, {100, 1000, 10000}, {}},
        {{"W4a", "W4b", "W4c"}, makeLayoutTree, {8}, {}},
        {{"W5a", "W5b"}, makeManyWindows, {1000}, {}},
        {{"W5c", "W5d", "W5e", "W5f"}, makeManyWidgets, {100000}, {1000, 10000}},
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

// --- Time ---

void measureTime(benchmark::State& state, WorkloadKind const& kind, int size, std::string const& id) {
    auto const workload = kind.make(size);
    Operation const& operation = *find(*workload, id);
    for (int i = 0; i < 3; ++i) {
        prepare(operation);
        operation.run();
    }
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
    double const counted = operation.before ? 1.0 : runs;
    vtxRenderer::Counters const counters = renderer.getCounters();
    state.counters["allocs"] = static_cast<double>(allocations) / runs / operation.per;
    state.counters["runs"] = counters.runs / counted;
    state.counters["instances"] = counters.quads / counted;
    if (operation.per > 1)
        state.counters["us_each"] =
            benchmark::Counter(runs * operation.per / 1e6, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.SetLabel(operation.what);
}

void registerTimes() {
    for (WorkloadKind const& kind : getWorkloadKinds())
        for (int size : kind.sizes)
            for (std::string const& id : kind.ids)
                benchmark::RegisterBenchmark(
                    nameOf(id, size).c_str(),
                    [&kind, size, id](benchmark::State& state) { measureTime(state, kind, size, id); })
                    ->MeasureProcessCPUTime()
                    ->Unit(benchmark::kMicrosecond);
}

// --- Heap ---

/// What all buttons of a window have cost with everything that was made for drawing them, and one frame's stream.
HeapCount measureHeap(int size) {
    HeapCount const start = HeapCount::now();
    auto const panel = makePanel(size);
    HeapCount const end = HeapCount::now();
    return HeapCount{end.allocations - start.allocations, end.liveBytes - start.liveBytes};
}

void printHeap() {
    std::printf("%-10s %14s %14s\n", "heap", "bytes/button", "allocs/button");
    for (int size : {100, 1000, 10000}) {
        // What a program has of its own falls out.
        HeapCount const one = measureHeap(1);
        HeapCount const all = measureHeap(size);
        std::printf("W1b/%-6d %14.0f %14.1f\n", size, double(all.liveBytes - one.liveBytes) / (size - 1),
                    double(all.allocations - one.allocations) / (size - 1));
    }
}

// --- Instructions ---

/// Counts one operation and leaves its instructions in a dump of its name, with how many runs and widgets share them.
void countInstructions(Operation const& operation, int size) {
    bool const large = size >= 100000;
    for (int i = 0; i < (large ? 1 : 3); ++i) {
        prepare(operation);
        operation.run();
    }
    int const runs = large ? 1 : 4;
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < runs; ++i) {
        prepare(operation);
        CALLGRIND_START_INSTRUMENTATION;
        operation.run();
        CALLGRIND_STOP_INSTRUMENTATION;
    }
    std::string const text =
        nameOf(operation.id, size) + "|" + std::to_string(runs * operation.per) + "|" + operation.what;
    CALLGRIND_DUMP_STATS_AT(text.c_str());
}

/// Those whose name begins with `wanted`: "W1", "W1c/1000"; "" is all.
void countInstructions(std::string const& wanted) {
    for (WorkloadKind const& kind : getWorkloadKinds()) {
        std::vector<int> sizes = kind.sizes;
        sizes.insert(sizes.end(), kind.shapeSizes.begin(), kind.shapeSizes.end());
        for (int size : sizes) {
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
    if (count > 1 && std::strcmp(arguments[1], "--heap") == 0) {
        printHeap();
        return 0;
    }
    registerTimes();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
