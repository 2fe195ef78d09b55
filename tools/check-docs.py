#!/usr/bin/env python3
"""Checks the documentation: README.md holds examples/hello/hello.cpp as it is, and every relative link and picture of
every page exists.

    tools/check-docs.py               prints each fault and ends with 1 if there is one
    tools/check-docs.py --code PAGE   prints the C++ blocks of a page one after the other, for a compiler
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SKIPPED = {"build", "out", ".git"}
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.M | re.S)
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")


def code_of(text):
    return [code for language, code in BLOCK.findall(text) if language == "cpp"]


def anchors_of(text):
    titles = re.findall(r"^#+ (.+)$", BLOCK.sub("", text), re.M)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def check_links(page):
    text = BLOCK.sub("", page.read_text())
    for link in LINK.findall(re.sub(r"`[^`\n]*`", "", text)):
        target, _, anchor = link.partition("#")
        if re.match(r"[a-z]+:", link):
            continue
        place = (page.parent / target).resolve() if target else page
        name = page.relative_to(ROOT)
        if not place.exists():
            yield f"{name}: there is no {link}"
        elif anchor and place.suffix == ".md" and anchor not in anchors_of(place.read_text()):
            yield f"{name}: {link} names no title of that page"


def main():
    if sys.argv[1:2] == ["--code"] and len(sys.argv) == 3:
        print("\n".join(code_of(pathlib.Path(sys.argv[2]).read_text())))
        return 0
    pages = [page for page in sorted(ROOT.rglob("*.md")) if not SKIPPED & set(page.relative_to(ROOT).parts)]
    faults = [fault for page in pages for fault in check_links(page)]
    if (ROOT / "examples/hello/hello.cpp").read_text() not in code_of((ROOT / "README.md").read_text()):
        faults.append("README.md: its listing is not that of examples/hello/hello.cpp")
    print("\n".join(faults) or f"docs: {len(pages)} pages, every link leads somewhere")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
