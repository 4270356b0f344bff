#!/usr/bin/env bash
# Decides the scripts of an outside corpus, where one is at hand, and compares the answers.
#   corpus.sh VORN CORPUS FOLDER [OPTION...]
# CORPUS/expected.tsv lists scripts with their answers. Exits with 77 where there is no corpus.
set -u
vorn=$1
corpus=$2
folder=$3
shift 3
if [[ ! -f $corpus/expected.tsv ]]; then
  echo "SKIPPED: no corpus at $corpus"
  exit 77
fi
passed=0
failed=0
while IFS=$'\t' read -r script expected; do
  [[ $script == "$folder"/* ]] || continue
  actual=$("$vorn" "$@" --time-limit 60 "$corpus/$script" | grep -E '^(sat|unsat|unknown)$')
  if [[ $actual == "$expected" ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED $script: expected $expected, got $actual"
  fi
done <"$corpus/expected.tsv"
echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
