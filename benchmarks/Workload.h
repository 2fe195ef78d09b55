#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/HeapCount.h"

/// One thing that is measured.
struct Operation {
    std::string id;  ///< "W1c"
    std::string what;
    std::function<void()> run;
    /// Not measured, before each run; may be empty.
    std::function<void()> before;
    /// Widgets or events that share the cost of a run.
    int per = 1;
};

/// A scene on a host of its own with the operations on it.
class Workload {
public:
    virtual ~Workload() = default;
    /// Good while the workload lives.
    virtual std::vector<Operation> const& getOperations() const = 0;
};

/// A kind of workload and the sizes that it is measured at.
struct WorkloadKind {
    /// Of its operations, in order.
    std::vector<std::string> ids;
    std::unique_ptr<Workload> (*make)(int size);
    std::vector<int> sizes;
};

/// A window of `size` push buttons.
std::unique_ptr<Workload> makePanel(int size);
/// Rows in columns in rows, `size` levels deep, three to each.
std::unique_ptr<Workload> makeLayoutTree(int size);
/// `size` windows of 20 widgets, overlapping.
std::unique_ptr<Workload> makeManyWindows(int size);
/// `size` widgets in panels of 100.
std::unique_ptr<Workload> makeManyWidgets(int size);

/// What the heap holds more, and how often it was asked, once a panel of one button has grown to `size` of them and
/// been drawn. To be asked once a process: what the toolkit keeps for its next widgets makes a second panel cheaper.
HeapCount measurePanelHeap(int size);

std::vector<WorkloadKind> const& getWorkloadKinds();
