#!/usr/bin/env bash
# Decides every script of a folder and compares the answers with those that the script expects.
#   run.sh VORN FOLDER [OPTION...]
# A script carries (set-info :status ...) before each check-sat, or has a FILE.out beside it with
# all that it prints. Options for the command may stand in a first line "; options: ..."; those given
# here go with every script.
set -u
vorn=$1
folder=$2
shift 2
passed=0
failed=0
for script in "$folder"/*.smt2; do
  read -r -a options < <(sed -n '1s/^; options: *//p' "$script") || true
  if [[ -f ${script%.smt2}.out ]]; then
    expected=$(cat "${script%.smt2}.out")
  else
    expected=$(grep -o '(set-info :status [a-z]*)' "$script" | sed 's/.*status \([a-z]*\))/\1/')
  fi
  actual=$("$vorn" "$@" "${options[@]}" "$script" 2>&1)
  if [[ -n $expected && $actual == "$expected" ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED %s\n--- expected\n%s\n--- got\n%s\n' "$script" "$expected" "$actual"
  fi
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
