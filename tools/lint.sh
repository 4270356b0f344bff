#!/usr/bin/env bash
# Checks formatting (clang-format) and static analysis (clang-tidy) of the whole tree.
#   tools/lint.sh [FILE...]    only these files
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/tools/install_packages.sh" clang-format clang-tidy
"$root/tools/setup.sh" debug all
cd "$root"
mapfile -t files < <(if [[ $# -gt 0 ]]; then printf '%s\n' "$@"; else git ls-files '*.cpp' '*.h'; fi)
clang-format --dry-run --Werror "${files[@]}"
printf '%s\n' "${files[@]}" | grep '\.cpp$' |
  xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/debug
echo "lint: ${#files[@]} files are clean"
