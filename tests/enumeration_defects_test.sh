#!/usr/bin/env bash
# What is wrong with trying all assignments shows in random scripts.
#   enumeration_defects_test.sh FAULTY_RANDOM_SCRIPTS      the program with the faults of tests/defects
set -u
random_scripts=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# run NAME STATUS STDOUT STDERR SEED COUNT
run() {
  check "$1" "$2" "$3" "$4" env FAULT="$1" "$random_scripts" --seed "$5" --count "$6"
}

wrong='^seed [0-9]+: (disagreement|wrong unsat|wrong core)'
run none 0 ' 0 failures' '^$' 1 100
for fault in block_skipped lane_lost domain_short blame_short; do
  run $fault 1 ' 1 failures' "$wrong" 1 1500
done
# A kernel that is wrong in some lanes is found before it is used, and is wrong indeed.
run kernel_lane 0 ' 0 failures' '^$' 1 300
run kernel_unchecked 1 ' 1 failures' "$wrong" 1 1500

summary
