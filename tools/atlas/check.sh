#!/bin/bash
# Checks that the committed atlases belong to the drawings beside them: make.sh notes the sums of both. Needs no
# rsvg-convert.
set -euo pipefail
cd "$(dirname "$0")/../../assets/atlas"

for drawing in *.svg; do
    name=${drawing%.svg}
    for file in "$drawing" "$name.png" "$name@2x.png" "$name.lua"; do
        if ! grep -q "  $file\$" atlas.sha256; then
            echo "check.sh: $file is not in atlas.sha256: run tools/atlas/make.sh" >&2
            exit 1
        fi
    done
done
if ! sha256sum --check --quiet atlas.sha256; then
    echo "check.sh: an atlas is not what its drawing gives: run tools/atlas/make.sh" >&2
    exit 1
fi
