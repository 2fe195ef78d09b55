#!/usr/bin/env bash
# Installs the Debian packages that the project needs and that are not there yet.
#   tools/install-deps.sh [build|test|all]
# build: the library and the gallery; test: also the tests and the benchmarks; all: also every check of ./test --all,
# which is the default.
set -euo pipefail

build_packages=(g++ cmake ninja-build ccache pkg-config
    libopenscenegraph-dev liblua5.1-0-dev libboost-container-dev
    libfreetype-dev libharfbuzz-dev libfontconfig-dev libspng-dev libturbojpeg0-dev
    libepoxy-dev libegl-dev libgl-dev libsdl2-dev libegl1 libgl1 libgl1-mesa-dri)
test_packages=(python3 libgtest-dev libbenchmark-dev valgrind)
check_packages=(clang clang-format libclang-rt-14-dev llvm-14 gcovr xvfb xdotool x11-utils libx11-dev libxfixes-dev)

wanted=("${build_packages[@]}")
case "${1:-all}" in
    build) ;;
    test) wanted+=("${test_packages[@]}") ;;
    all) wanted+=("${test_packages[@]}" "${check_packages[@]}") ;;
    *) echo "usage: $0 [build|test|all]" >&2; exit 2 ;;
esac

if ! command -v dpkg-query > /dev/null; then
    echo "install-deps: this is no Debian system; see to it that these or their like are installed: ${wanted[*]}" >&2
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    if [ "$(dpkg-query -W -f '${db:Status-Status}\n' "$package" 2> /dev/null | sort -u | head -n 1)" != installed ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo > /dev/null; then
        echo "install-deps: as root, run: apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "install-deps: installing with apt-get${as_root[*]:+ (by sudo)}: ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
