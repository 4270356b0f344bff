#!/usr/bin/env bash
# Installs the Debian packages that are missing, configures a preset and builds a target.
#   tools/setup.sh PRESET TARGET
# A second call finds everything in place and does nothing.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
target=$2

packages=(g++ cmake ninja-build libgmp-dev libcadical-dev libcli11-dev libfmt-dev)
if [[ $target != vorn_command ]]; then
  packages+=(libmpfr-dev libgtest-dev librapidcheck-dev libbenchmark-dev
             binutils doxygen mandoc picosat pkgconf)
fi
"$root/tools/install_packages.sh" "${packages[@]}"

# Messages go to standard error: standard output belongs to the command that is run next.
build="$root/build/$preset"
options=()
if [[ $target == vorn_command ]]; then
  # Someone who only runs files needs none of the test libraries; an existing build keeps its own.
  [[ -f $build/build.ninja ]] || options=(-DVORN_BUILD_TESTS=OFF -DVORN_BUILD_BENCH=OFF)
elif [[ -f $build/CMakeCache.txt ]] && grep -q 'VORN_BUILD_TESTS:BOOL=OFF' "$build/CMakeCache.txt"; then
  rm -f "$build/build.ninja"
fi
if [[ ! -f $build/build.ninja ]]; then
  [[ $target == vorn_command ]] || options=(-DVORN_BUILD_TESTS=ON -DVORN_BUILD_BENCH=ON)
  (cd "$root" && cmake --preset "$preset" "${options[@]}") >&2
fi
# Progress is shown where there are steps to be seen, and nothing where there is nothing to do but to look
# for new source files, which ninja always does.
ninja -C "$build" "$target" 2>&1 |
  { grep --line-buffered -vE '^ninja: (Entering directory|no work to do)|Re-checking globbed' >&2 || true; }
