#!/usr/bin/env bash
# What is wrong with the substitution of definitions shows in random scripts.
#   substitution_defects_test.sh FAULTY_RANDOM_SCRIPTS   the program with the faults of tests/defects
set -u
random_scripts=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# run NAME STATUS STDOUT STDERR SEED COUNT
run() {
  check "$1" "$2" "$3" "$4" env FAULT="$1" "$random_scripts" --seed "$5" --count "$6"
}

# What is defined wrongly is a wrong unsat, or a model that its check finds to be none.
wrong='^seed [0-9]+: (disagreement|wrong unsat|wrong core|wrong model|exception)'
run none 0 ' 0 failures' '^$' 1 100
for fault in pop_keeps no_occurrence_check; do
  run $fault 1 ' 1 failures' "$wrong" 1 1500
done
run zeros_are_one 1 ' 1 failures' "$wrong" 6001 1500

summary
