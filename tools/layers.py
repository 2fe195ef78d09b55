#!/usr/bin/env python3
"""Checks which folder includes which: headers and sources include only their own row or a lower one, and no header of
the toolkit or of the renderer contract names a library that it must not show. Exceptions stand in layers.txt."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROWS = [
    ["platform/qor", "platform/osg"], ["platform/vtx"], ["platform/gl", "platform/trace"], ["gui_lib/base"],
    ["gui_lib/graphics"], ["gui_lib/Skin", "gui_lib/effects", "gui_lib/widget", "gui_lib/layouts"],
    ["gui_lib/controls", "gui_lib/text"], ["gui_lib/windows"], ["gui_lib/lists", "gui_lib/menus"], ["gui_lib/frame"],
    ["host"], ["testkit"], ["examples", "tests", "benchmarks", "tools"]]
ROW_OF = {folder: number for number, folders in enumerate(ROWS, 1) for folder in folders}
KNOT = ROWS[5]
BACK_ENDS = ROWS[2]
# These forward-declare everything, so that any source may include them.
OPEN_TO_SOURCES = {"gui_lib/frame/GUI.h", "gui_lib/frame/WindowsManager.h"}
HIDDEN_LIBRARIES = re.compile(r"^(lua|lauxlib|lualib|GL/|GLES|EGL/|epoxy/|SDL|ft2build|freetype|hb)")
INCLUDE = re.compile(r'^\s*#\s*include\s+(["<])([^">]+)[">]', re.M)


def folder_of(path):
    return max((folder for folder in ROW_OF if path.startswith(folder + "/")), key=len, default=None)


def derives_from(text, header):
    return re.search(r"class\s[^;{]*:[^;{]*\b%s\b[^;{]*{" % pathlib.PurePath(header).stem, text) is not None


def check(path, text, allowed):
    here, is_header = folder_of(path), path.endswith(".h")
    for kind, target in INCLUDE.findall(text):
        if kind == "<":
            if is_header and re.match(r"gui_lib/|platform/(qor|osg|vtx)/", path) and HIDDEN_LIBRARIES.match(target):
                yield f"{path}: a header shows <{target}>"
            continue
        there = folder_of(target)
        if there is None:
            yield f"{path}: \"{target}\" is not relative to the root" if not (ROOT / target).exists() else ""
        elif (path, target) in allowed:
            allowed[path, target] = True
        elif there in BACK_ENDS and here != there and ROW_OF[here] < 11:
            yield f"{path}: only hosts, test kit and programs may name a back end ({target})"
        elif ROW_OF[there] > ROW_OF[here] and (is_header or target not in OPEN_TO_SOURCES):
            yield f"{path} (row {ROW_OF[here]}) includes {target} (row {ROW_OF[there]})"
        elif is_header and here in KNOT and there in KNOT and here != there and not derives_from(text, target):
            yield f"{path}: headers of {', '.join(KNOT)} only forward-declare one another ({target})"


def main():
    allowed = {}
    for line in (ROOT / "tools/layers.txt").read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            source, target, reason = line.split(None, 2)
            allowed[source, target] = False
    faults = []
    for path in sorted(ROOT.glob("[a-z]*/**/*")):
        name = path.relative_to(ROOT).as_posix()
        if path.suffix in (".h", ".cpp") and folder_of(name):
            faults += filter(None, check(name, path.read_text(), allowed))
    faults += [f"layers.txt: {a} no longer includes {b}" for (a, b), used in allowed.items() if not used]
    print("\n".join(faults) or "layers: every include fits")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
