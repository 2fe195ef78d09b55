#!/usr/bin/env python3
"""Plants faults in a copy of the tree, one after the other, and shows which test sees each.

    tools/faults/faults.py             every fault; ends with 1 if one survives
    tools/faults/faults.py NAME...     only those whose name holds one of the words
    tools/faults/faults.py --check     only looks whether each fault still applies and stands in docs/testing.md
    tools/faults/faults.py --table     as without, and writes the table into docs/testing.md

The copy is out/faults. A fault is first shown to the program that should see it, then to all tests.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tomllib

ROOT = pathlib.Path(__file__).resolve().parents[2]
COPY = ROOT / "out" / "faults"
PAGE = ROOT / "docs" / "testing.md"
BEGIN, END = "<!-- planted faults -->\n", "<!-- end of planted faults -->\n"
KEPT = ("build", "out", ".git")
FAILED = re.compile(r"^\[  FAILED  \] ([\w/.]+)", re.M)
ENTRY = re.compile(r"^\s*\d+ - (\w+) \(", re.M)


def read_faults():
    return tomllib.loads((ROOT / "tools/faults/faults.toml").read_text())["fault"]


def check(faults):
    page = PAGE.read_text()
    for fault in faults:
        found = (ROOT / fault["file"]).read_text().count(fault["line"])
        if found != 1:
            yield f"{fault['name']}: its line stands {found} times in {fault['file']}, not once"
        if f"| {fault['name']} |" not in page:
            yield f"{fault['name']}: is not in the table of docs/testing.md; run tools/faults/faults.py --table"


def run(*command, **options):
    return subprocess.run(command, cwd=COPY, text=True, errors="replace", stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, **options)


def mirror():
    """Brings the copy up to date; files that are the same keep their time, so that little is built anew."""
    seen = set()
    for path in ROOT.rglob("*"):
        name = path.relative_to(ROOT)
        if name.parts[0] in KEPT or not path.is_file():
            continue
        seen.add(name)
        target = COPY / name
        if not target.exists() or target.read_bytes() != path.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(path, target)
    for path in list(COPY.rglob("*")):
        name = path.relative_to(COPY)
        if path.is_file() and name.parts[0] not in KEPT and name not in seen:
            path.unlink()


def build(target="all"):
    return run("cmake", "--build", "build/dev", "--target", target)


def test(name):
    """The names of the tests that fail: those within the program where it tells them, else the program's."""
    chosen = ["-R", f"^{name}$"] if name else []
    result = run("timeout", "900", "ctest", "--test-dir", "build/dev", "--output-on-failure", "-j",
                 str(os.cpu_count()), *chosen)
    if result.returncode == 0:
        return []
    inner = list(dict.fromkeys(FAILED.findall(result.stdout)))
    return inner or ENTRY.findall(result.stdout) or [name or "ctest"]


def plant(fault):
    """Who sees the fault; empty if nobody does."""
    path = COPY / fault["file"]
    clean = path.read_text()
    path.write_text(clean.replace(fault["line"], fault["with"]))
    try:
        built = build(fault["test"])
        if built.returncode != 0:
            print(built.stdout[-3000:])
            raise SystemExit(f"faults: '{fault['name']}' does not compile")
        seen = test(fault["test"])
        if not seen:
            build()
            seen = test("")
        return seen
    finally:
        path.write_text(clean)


def main():
    words = [word for word in sys.argv[1:] if not word.startswith("--")]
    if unknown := set(sys.argv[1:]) - set(words) - {"--check", "--table"}:
        raise SystemExit(f"faults: no such option: {' '.join(unknown)}\n{__doc__.strip()}")
    faults = read_faults()
    if "--check" in sys.argv:
        wrong = list(check(faults))
        print("\n".join(wrong) or f"faults: all {len(faults)} apply")
        return 1 if wrong else 0
    faults = [fault for fault in faults if not words or any(word in fault["name"] for word in words)]
    mirror()
    ready = run("cmake", "--preset", "dev").returncode == 0 and build().returncode == 0
    if not ready or (seen := test("")):
        raise SystemExit(f"faults: the tree as it is does not build or pass: {seen if ready else 'build'}")
    rows, survivors = [], 0
    for fault in faults:
        seen = plant(fault)
        survivors += not seen
        more = f" and {len(seen) - 1} more" if len(seen) > 1 else ""
        rows.append(f"| {fault['name']} | {fault['what']} | {f'`{seen[0]}`{more}' if seen else '**nobody**'} |\n")
        print(rows[-1], end="", flush=True)
    if "--table" in sys.argv and not words:
        page = PAGE.read_text()
        head, tail = page.index(BEGIN) + len(BEGIN), page.index(END)
        table = "| Fault | What goes wrong | Seen by |\n|---|---|---|\n" + "".join(rows)
        PAGE.write_text(page[:head] + table + page[tail:])
    print(f"faults: {len(faults)} planted, {survivors} not seen")
    return 1 if survivors else 0


if __name__ == "__main__":
    sys.exit(main())
