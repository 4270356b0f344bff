#!/usr/bin/env bash
# Runs every wrong script of a folder and compares the complaint with the one that it expects.
#   errors.sh VORN FOLDER
# The first line of a script is "; expect: LINE:COLUMN: MESSAGE", counted as a line of the script. The
# command has to print just that error, as its last answer, nothing on standard error, and to end with the
# status for wrong input.
set -u
vorn=$1
folder=$2
answers=$(mktemp)
complaints=$(mktemp)
trap 'rm -f "$answers" "$complaints"' EXIT
passed=0
failed=0
for script in "$folder"/*.smt2; do
  IFS= read -r first <"$script"
  if [[ $first =~ ^'; expect: '([0-9]+:[0-9]+)': '(.+)$ ]]; then
    expected="$script:${BASH_REMATCH[1]}: error: ${BASH_REMATCH[2]}"
    expected="(error \"${expected//\"/\"\"}\")"
  else
    expected="a first line '; expect: LINE:COLUMN: MESSAGE'"
  fi
  "$vorn" "$script" >"$answers" 2>"$complaints"
  status=$?
  actual=$(tr -d '\0' <"$answers")
  if [[ $status -eq 1 && $actual == *"$expected" && ${actual%"$expected"} != *'(error "'* && ! -s $complaints ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED %s: exit status %s\n--- expected\n%s\n--- got\n%s\n' "$script" "$status" \
      "$expected" "$actual"
  fi
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
