#!/usr/bin/env bash
# Builds the fuzz target and lets it look for scripts that break the reader.
#   tests/fuzz/run.sh [SECONDS]
# 0 seconds are no limit. What it learns stays in build/fuzz/corpus for the next time. An input that
# breaks the reader is written to build/fuzz/ and ends the search; mended, it belongs into
# tests/fuzz/corpus.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
seconds=${1:-60}
"$root/tools/install_packages.sh" clang libclang-rt-dev cmake ninja-build libgmp-dev libcadical-dev libcli11-dev libfmt-dev nlohmann-json3-dev
cd "$root"
[[ -f build/fuzz/build.ninja ]] || cmake --preset fuzz
cmake --build --preset fuzz
mkdir -p build/fuzz/corpus
exec build/fuzz/tests/fuzz/reader_fuzz -dict=tests/fuzz/smt2.dict -artifact_prefix=build/fuzz/ \
  -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
  build/fuzz/corpus tests/fuzz/corpus
