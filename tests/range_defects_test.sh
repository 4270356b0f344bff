#!/usr/bin/env bash
# What is wrong with ranges, forms or relations shows in random scripts.
#   range_defects_test.sh FAULTY_RANDOM_SCRIPTS      the program with the faults of tests/defects
set -u
random_scripts=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# run NAME STATUS STDOUT STDERR SEED COUNT
run() {
  check "$1" "$2" "$3" "$4" env FAULT="$1" "$random_scripts" --seed "$5" --count "$6"
}

# A wrong refutation shows in the answer, or in what is blamed for one that is right.
wrong='^seed [0-9]+: (disagreement|wrong unsat|wrong core)'
run none 0 ' 0 failures' '^$' 1 100
for fault in add_short mul_number narrow_add_short narrow_less_short to_integer_closed \
  bits_short pop_keeps forget_rest form_exact form_interval_short root_strict; do
  run $fault 1 ' 1 failures' "$wrong" 1 1500
done
# Scripts that show these are rare.
for fault in sum_not_strict remainder_short integers_unbounded; do
  run $fault 1 ' 1 failures' "$wrong" 6001 1500
done
run round_mode 1 ' 1 failures' "$wrong" 2001 1500
run blame_short 1 ' 1 failures' '^seed [0-9]+: wrong core' 1 1500

summary
