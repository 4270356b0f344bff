#!/usr/bin/env bash
# Builds the fuzz targets and lets them look for inputs that break the program.
#   tests/fuzz/run.sh [TARGET] [SECONDS]
# TARGET is reader, session, eval or lift; all of them in turn if none is given, each for that many
# seconds. 0 seconds are no limit. What a target learns stays in build/fuzz/corpus/TARGET for the
# next time. An input that breaks it is written to build/fuzz/ and ends the search; mended, it
# belongs into tests/fuzz/corpus/TARGET.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
targets=(reader session eval lift)
if [[ " ${targets[*]} " == *" ${1:-none} "* ]]; then
  targets=("$1")
  shift
fi
seconds=${1:-60}
if [[ $# -gt 1 || ! $seconds =~ ^[0-9]+$ ]]; then
  echo "usage: tests/fuzz/run.sh [reader|session|eval|lift] [SECONDS]" >&2
  exit 2
fi
"$root/tools/install_packages.sh" clang libclang-rt-dev cmake ninja-build libgmp-dev libcadical-dev libcli11-dev libfmt-dev nlohmann-json3-dev
cd "$root"
[[ -f build/fuzz/build.ninja ]] || cmake --preset fuzz
cmake --build --preset fuzz
for target in "${targets[@]}"; do
  dictionary=$target
  folders=("tests/fuzz/corpus/$target")
  case $target in
    reader) dictionary=smt2 ;;
    session) dictionary=smt2 folders+=(tests/fuzz/corpus/reader) ;;
  esac
  mkdir -p "build/fuzz/corpus/$target"
  # A sanitizer needs room beside that of the program.
  "build/fuzz/tests/fuzz/${target}_fuzz" -dict="tests/fuzz/$dictionary.dict" \
    -artifact_prefix="build/fuzz/$target-" -max_total_time="$seconds" -max_len=4096 -timeout=20 \
    -rss_limit_mb=2048 -print_final_stats=1 "build/fuzz/corpus/$target" "${folders[@]}"
done
