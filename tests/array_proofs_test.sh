#!/usr/bin/env bash
# Proofs of unsat for random scripts with arrays, functions and declared sorts: each check of a
# script that is unsat is decided again by itself, with clauses and a proof, which must stand.
#   array_proofs_test.sh VORN RANDOM_SCRIPTS CHECKER FIRST COUNT
# Scripts are those of the seeds FIRST to FIRST + COUNT - 1. CHECKER takes clauses and a proof.
set -u
vorn=$1
random_scripts=$2
checker=$3
first=$4
count=$5
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

refuted=0
stepwise=0
for ((seed = first; seed < first + count; seed++)); do
  "$random_scripts" --arrays --seed "$seed" --count 1 --print >"$dir/script.smt2"
  # Each command has a line of its own. What a check is about is all before it but the other checks.
  "$vorn" --time-limit 20 "$dir/script.smt2" >"$dir/answers" 2>"$dir/errors"
  mapfile -t numbers < <(grep -nx unsat "$dir/answers" | cut -d: -f1)
  for number in "${numbers[@]}"; do
    awk -v number="$number" '!/^\(check-sat/ || ++checks == number; checks == number { exit }' \
      "$dir/script.smt2" >"$dir/one.smt2"
    check "seed $seed, check $number: the answer" 0 '^unsat$' '^$' \
      "$vorn" --cnf "$dir/given.cnf" --proof "$dir/given.drat" "$dir/one.smt2"
    check "seed $seed, check $number: the proof" 0 '^verified' '^$' \
      "$checker" "$dir/given.cnf" "$dir/given.drat"
    refuted=$((refuted + 1))
    grep -q '^verified after [1-9]' "$dir/out" && stepwise=$((stepwise + 1))
  done
done
echo "$count scripts: $refuted checks refuted, $stepwise of them not by propagation alone"
check enough_were_refuted 0 '^yes$' '' \
  bash -c "(($refuted >= $count && $stepwise * 50 >= $count)) && echo yes"

summary
