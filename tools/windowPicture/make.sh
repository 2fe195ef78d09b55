#!/usr/bin/env bash
# Draws the pictures of docs/resources.md anew, one for each window file of docs/examples.
#   tools/windowPicture/make.sh [BUILD]    BUILD holds the program windowPicture; build/dev if it is left out
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build="${1:-build/dev}"
for file in docs/examples/*.lua; do
    LIBGL_ALWAYS_SOFTWARE=1 "$build/windowPicture" "$file" "docs/pictures/window-$(basename "$file" .lua).png"
done
