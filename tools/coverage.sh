#!/usr/bin/env bash
# Prints the line coverage of gui_lib and platform/vtx by the everyday tests, and ends with 1 if one is below 90 %.
#   tools/coverage.sh [--html]    --html also writes the lines to out/coverage/gui_lib.html and vtx.html
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/coverage
cmake --preset coverage > /dev/null
cmake --build $build
find $build -name '*.gcda' -delete
ctest --test-dir $build --output-on-failure -j "$(nproc)"
mkdir -p out/coverage
status=0
for part in gui_lib platform/vtx; do
    html=()
    [ "${1:-}" != --html ] || html=(--html-details "out/coverage/$(basename $part).html")
    gcovr --root . --object-directory $build --filter "$part/" \
        --gcov-ignore-parse-errors -j "$(nproc)" --fail-under-line 90 --txt "out/coverage/$(basename $part).txt" \
        --print-summary "${html[@]}" $build > "out/coverage/$(basename $part).summary" || status=1
    echo "$part: $(grep '^lines:' "out/coverage/$(basename $part).summary")"
done
exit $status
