#!/usr/bin/env bash
# Makes what is drawn now the reference: the pictures here and VERSIONS. Look at each before you keep it.
#   tests/golden/update.sh [BUILD]      BUILD is build/dev if not given
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build="${1:-build/dev}"
[ "$build" != build/dev ] || cmake --preset dev > /dev/null
cmake --build "$build" --target test_golden
rm -f tests/golden/*.png
LIBGL_ALWAYS_SOFTWARE=1 VORLEX_UPDATE_GOLDEN=1 "$build/test_golden" --gtest_brief=1
LIBGL_ALWAYS_SOFTWARE=1 "$build/test_golden" --gtest_brief=1
git --no-pager diff --stat -- tests/golden || true
