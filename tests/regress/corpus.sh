#!/usr/bin/env bash
# Decides the scripts of an outside corpus, where one is at hand, and compares the answers.
#   corpus.sh VORN CORPUS FOLDER [OPTION...]
# CORPUS/expected.tsv lists scripts with their answers; those of which it says unknown may have any.
# SECONDS_EACH in the environment bounds each script; one that is not decided by then is counted, and no
# failure. Exits with 77 where there is no corpus.
set -u
vorn=$1
corpus=$2
folder=$3
shift 3
if [[ ! -f $corpus/expected.tsv ]]; then
  echo "SKIPPED: no corpus at $corpus"
  exit 77
fi
seconds=${SECONDS_EACH:-30}
passed=0
failed=0
undecided=0
while IFS=$'\t' read -r script expected; do
  [[ $script == "$folder"/* ]] || continue
  actual=$("$vorn" "$@" --time-limit "$seconds" "$corpus/$script" | grep -E '^(sat|unsat|unknown)$')
  if [[ $actual == "$expected" || ($expected == unknown && -n $actual) ]]; then
    passed=$((passed + 1))
  elif [[ $actual == unknown ]]; then
    undecided=$((undecided + 1))
    echo "undecided in $seconds s: $script"
  else
    failed=$((failed + 1))
    echo "FAILED $script: expected $expected, got $actual"
  fi
done <"$corpus/expected.tsv"
echo "$passed passed, $undecided undecided, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
