#!/usr/bin/env bash
# Plays the gallery's tour of a build without a display: twice as a trace, which must come out the same, and with
# "pixels" once as pictures.
#   tests/tour/run.sh BUILD [pixels]
set -euo pipefail
build="$1"
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT

for run in first second; do
    "$build/gallery" --headless --back-end trace --out "$out/$run" > "$out/$run.log" || { cat "$out/$run.log"; exit 1; }
done
cmp "$out/first/trace.txt" "$out/second/trace.txt"
echo "the tour's traces are the same: $(wc -l < "$out/first/trace.txt") lines"
if [ "${2:-}" = pixels ]; then
    "$build/gallery" --headless --out "$out/pictures" > "$out/pictures.log" || { cat "$out/pictures.log"; exit 1; }
    echo "the tour wrote $(find "$out/pictures" -name '*.png' | wc -l) pictures"
fi
