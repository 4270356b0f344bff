#!/usr/bin/env bash
# Checks formatting (clang-format) of the whole tree and static analysis (clang-tidy) of the library
# and the command.
#   tools/lint.sh [FILE...]    only these files
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/tools/install_packages.sh" clang-format clang-tidy
"$root/tools/setup.sh" release vorn_command
cd "$root"
mapfile -t files < <(if [[ $# -gt 0 ]]; then printf '%s\n' "$@"; else git ls-files '*.cpp' '*.h'; fi)
clang-format --dry-run --Werror "${files[@]}"
printf '%s\n' "${files[@]}" | grep -E '^(vorn|tools)/.*\.cpp$' |
  xargs -r -P "$(nproc)" -n 2 \
    clang-tidy --quiet -p build/release --extra-arg=-Wno-unknown-warning-option
echo "lint: ${#files[@]} files are clean"
