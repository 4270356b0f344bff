#!/usr/bin/env bash
# Installs the Debian packages that are missing, configures a preset and builds a target.
#   tools/setup.sh PRESET TARGET
# A second call finds everything in place and does nothing.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
target=$2

# Someone who only runs files, or installs, needs none of the test libraries.
tests=yes
[[ $target != vorn_command && $preset != package ]] || tests=

packages=(g++ cmake ninja-build libgmp-dev libcadical-dev libcli11-dev libfmt-dev libmimalloc-dev nlohmann-json3-dev)
case $preset in
  package) packages+=(dpkg-dev file) ;;
  clang | fuzz) packages+=(clang) ;;
  coverage) packages+=(gcovr) ;;
esac
if [[ $tests ]]; then
  packages+=(libmpfr-dev libgtest-dev librapidcheck-dev libbenchmark-dev
             binutils cadical doxygen mandoc parallel picosat pkgconf python3)
fi
"$root/tools/install_packages.sh" "${packages[@]}"

# Messages go to standard error: standard output belongs to the command that is run next.
build="$root/build/$preset"
if [[ $tests ]]; then
  options=(-DVORN_BUILD_TESTS=ON -DVORN_BUILD_BENCH=ON)
  if [[ -f $build/CMakeCache.txt ]] && grep -q 'VORN_BUILD_TESTS:BOOL=OFF' "$build/CMakeCache.txt"; then
    rm -f "$build/build.ninja"
  fi
else
  options=(-DVORN_BUILD_TESTS=OFF -DVORN_BUILD_BENCH=OFF)  # an existing build keeps its own
fi
if [[ ! -f $build/build.ninja ]]; then
  (cd "$root" && cmake --preset "$preset" "${options[@]}") >&2
fi
# Progress is shown where there are steps to be seen, and nothing where there is nothing to do but to look
# for new source files, which ninja always does.
ninja -C "$build" "$target" 2>&1 |
  { grep --line-buffered -vE '^ninja: (Entering directory|no work to do)|Re-checking globbed' >&2 || true; }
