#!/bin/bash
# Makes the atlases of the default skins: each assets/atlas/NAME.svg becomes NAME.png, NAME@2x.png and NAME.lua, the table
# of its cells. The results are committed, so only who edits a drawing needs this (and rsvg-convert, from Debian's
# librsvg2-bin). check.sh tells whether they are current.
set -euo pipefail
cd "$(dirname "$0")/../../assets/atlas"

if ! command -v rsvg-convert >/dev/null; then
    echo "make.sh: rsvg-convert is missing; on Debian: apt-get install librsvg2-bin" >&2
    exit 1
fi

# Prints the cell table of the drawing $1: every <svg> with an id, and the grey of its surface where it names one.
cells() {
    echo "-- Written by tools/atlas/make.sh from $1: the place of each cell, in units of ${1%.svg}.png, and the part of"
    echo "-- white that its surface has."
    echo "return {"
    sed -nE 's/^ *<svg id="([A-Za-z0-9]+)" x="([0-9]+)" y="([0-9]+)" width="([0-9]+)" height="([0-9]+)"( color="#([0-9a-f]{2})[0-9a-f]{4}")?>.*$/\1 \2 \3 \4 \5 \7/p' "$1" |
        while read -r id x y width height grey; do
            echo "    $id = { rect = { x1 = $x, y1 = $y, x2 = $((x + width)), y2 = $((y + height)) }," \
                "level = $((16#${grey:-ff})) / 255 },"
        done
    echo "}"
}

for drawing in *.svg; do
    name=${drawing%.svg}
    rsvg-convert --zoom 1 --format png --output "$name.png" "$drawing"
    rsvg-convert --zoom 2 --format png --output "$name@2x.png" "$drawing"
    cells "$drawing" >"$name.lua"
    if [ "$(grep -c '<svg id=' "$drawing")" -ne "$(grep -c ' rect = ' "$name.lua")" ]; then
        echo "make.sh: $drawing: a cell has no whole x, y, width, height in this order" >&2
        exit 1
    fi
done

sha256sum -- *.svg *.png *.lua >atlas.sha256
echo "Made $(ls -- *.png | wc -l) pictures in assets/atlas."
