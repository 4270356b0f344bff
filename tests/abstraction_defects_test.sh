#!/usr/bin/env bash
# What is wrong with statements on operations that were put off shows in random scripts.
#   abstraction_defects_test.sh FAULTY_RANDOM_SCRIPTS      the program with the faults of tests/defects
set -u
random_scripts=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# run NAME STATUS STDOUT STDERR COUNT
run() {
  check "$1" "$2" "$3" "$4" env FAULT="$1" "$random_scripts" --seed 1 --count "$5"
}

# What holds of too few operands shows in the answer, or in what is blamed for one that is right.
wrong='^seed [0-9]+: (disagreement|wrong unsat|wrong core)'
run none 0 ' 0 failures' '^$' 100
run fact_not_zero 1 ' 1 failures' "$wrong" 1500
run lemma_everywhere 1 ' 1 failures' "$wrong" 1500
# What is not stated shows in the check of the model.
run no_refinement 1 ' 1 failures' '^seed [0-9]+: exception: .*does not satisfy an assertion' 1500

summary
