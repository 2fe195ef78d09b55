#!/usr/bin/env python3
"""Counts the instructions of each operation with callgrind and compares them with what is to be reached.

usage: instructions.py [--markdown] PROGRAM [FILTER]
PROGRAM is vorlex_benchmarks, FILTER the beginning of names: "W1", "W1c/1000". Ends with 1 where a figure or the rule that
the cost of a widget does not depend on how many there are does not hold. Dumps with the names of functions stay in
out/bench for callgrind_annotate. Run in the root of the tree.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

DUMPS = Path("out/bench")
KINDS = ["W5", "W1", "W4"]  # counted side by side, the longest first
# Thousands of instructions. A second name is subtracted: what a frame takes above one in which nothing changed.
REACH = [
    ("W1a2/1000", None, 25.0),
    ("W1c/1000", None, 700.0),
    ("W1d/1000", "W1c/1000", 8.0),
    ("W1e/1000", None, 3500.0),
    ("W1f/1000", "W1c/1000", 10.0),
    ("W1h/1000", None, 1000.0),
    ("W4a/8", None, 5000.0),
    ("W4b/8", None, 12000.0),
]
HEAP_BYTES, HEAP_ALLOCATIONS = 4000.0, 25.0  # live, and made, per button of a panel of 1,000
DEVICE_RUNS = 3  # in a frame of a panel of any size
# Create, mark and destroy: per widget at the larger sizes against that at the first.
SHAPE_OPERATIONS = ["W5c", "W5d", "W5e", "W5f"]
SHAPE_SIZES = [1000, 10000, 100000]
SHAPE_FACTOR = 1.3


class Count:
    def __init__(self, name, what, thousands, allocations, runs):
        self.name, self.what, self.thousands = name, what, thousands
        self.allocations, self.runs = allocations, runs


def count(program, wanted):
    """The counts of the operations whose name begins with `wanted`, in order."""
    dump = DUMPS / ("counts-" + (re.sub(r"\W", "-", wanted) or "all"))
    for old in DUMPS.glob(dump.name + ".*"):
        old.unlink()
    command = ["valgrind", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={dump}", program]
    done = subprocess.run(command + ["--instructions", wanted], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"instructions.py: {' '.join(command)} failed:\n{done.stderr[-2000:]}")
    others = {name: (float(allocations), int(runs)) for name, allocations, runs in
              (line.split("|") for line in done.stdout.splitlines() if line.count("|") == 2)}
    counts = []
    for path in sorted(DUMPS.glob(dump.name + ".*"), key=lambda path: int(path.suffix[1:])):
        text = path.read_text()
        title = re.search(r"^desc: Trigger: Client Request: (.*)\|(\d+)\|(.*)$", text, re.M)
        total = re.search(r"^totals: (\d+)", text, re.M)
        if title and total:
            name, shares, what = title.groups()
            counts.append(Count(name, what, int(total[1]) / int(shares) / 1000, *others[name]))
    return counts


def count_all(program, wanted):
    DUMPS.mkdir(parents=True, exist_ok=True)
    parts = [kind for kind in KINDS if kind.startswith(wanted)] or [wanted]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        found = sum(pool.map(lambda part: count(program, part), parts), [])
    return sorted(found, key=lambda entry: entry.name[:2])


def measure_heap(program):
    """(name, bytes, allocations) of a button in panels of several sizes."""
    text = subprocess.run([program, "--heap"], capture_output=True, text=True, check=True).stdout
    rows = [line.split() for line in text.splitlines() if line.startswith("W1b/")]
    return [(name, float(size), float(allocations)) for name, size, allocations in rows]


class Table:
    """What was counted, what is to be reached, and whether it is."""

    def __init__(self):
        self.rows, self.held = [], True

    def add(self, name, what, value, form, reach=None):
        verdict = ""
        if reach is not None:
            verdict = "yes" if value <= reach else "NO"
            self.held = self.held and value <= reach
        self.rows.append((name, what, form.format(value), "" if reach is None else f"{reach:,g}", verdict))

    def print(self, title, markdown):
        head = ("", title, "counted", "reach", "holds")
        if markdown:
            print("| " + " | ".join(head) + " |\n|---|---|---|---|---|")
            for row in self.rows:
                print("| " + " | ".join(row) + " |")
        else:
            for row in [head] + self.rows:
                print("{:<22} {:<46} {:>12} {:>8} {:>6}".format(*row))
        print()


def add_instructions(table, counts):
    values = {entry.name: entry for entry in counts}
    reach = {name: (base, limit) for name, base, limit in REACH}
    for entry in counts:
        base, limit = reach.get(entry.name, (None, None))
        table.add(entry.name, entry.what, entry.thousands, "{:,.2f}", None if base else limit)
        if base in values:
            table.add(f"{entry.name} - {base}", "what that takes above nothing",
                      entry.thousands - values[base].thousands, "{:,.2f}", limit)


def add_shape(table, counts):
    values = {entry.name: entry for entry in counts}
    for operation in SHAPE_OPERATIONS:
        found = [values.get(f"{operation}/{size}") for size in SHAPE_SIZES]
        for entry in found[1:]:
            if entry and found[0]:
                table.add(f"{entry.name} : {SHAPE_SIZES[0]}", entry.what, entry.thousands / found[0].thousands, "{:.2f}",
                          SHAPE_FACTOR)


def add_device(table, counts):
    for entry in counts:
        if entry.name.startswith("W1c/"):
            table.add("W1g" + entry.name[3:], "device runs of a frame", entry.runs, "{}", DEVICE_RUNS)
    for entry in counts:
        if re.match("W1[cdfh]/", entry.name):
            table.add(entry.name, "allocations: " + entry.what, entry.allocations, "{:g}", 0)


def add_heap(table, rows):
    for name, size, allocations in rows:
        judged = name == "W1b/1000"
        table.add(name, "live bytes per button", size, "{:,.0f}", HEAP_BYTES if judged else None)
        table.add(name, "allocations per button", allocations, "{:.1f}", HEAP_ALLOCATIONS if judged else None)


def main():
    parser = argparse.ArgumentParser(description="Counts instructions; see the top of this file.")
    parser.add_argument("--markdown", action="store_true", help="print tables as docs/performance.md has them")
    parser.add_argument("program")
    parser.add_argument("filter", nargs="?", default="")
    arguments = parser.parse_args()
    if not shutil.which("valgrind"):
        sys.exit("instructions.py: no valgrind; tools/install-deps.sh test installs it")
    counts = count_all(arguments.program, arguments.filter)
    if not counts:
        sys.exit(f"instructions.py: no operation's name begins with {arguments.filter}")
    held = True
    for title, add, found in [("thousands of instructions", add_instructions, counts),
                              ("cost of a widget by size", add_shape, counts),
                              ("counters", add_device, counts),
                              ("heap", add_heap, [] if arguments.filter else measure_heap(arguments.program))]:
        table = Table()
        add(table, found)
        if table.rows:
            table.print(title, arguments.markdown)
        held = held and table.held
    print("all reached" if held else "NOT all reached: see the rows that say NO")
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
