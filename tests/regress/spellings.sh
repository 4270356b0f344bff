#!/usr/bin/env bash
# Runs scripts whose spelling departs from the standard: each is decided all the same, with a warning
# where it is asked for, and refused with --strict.
#   spellings.sh VORN FOLDER
# The first line of a script is "; strict: LINE:COLUMN: MESSAGE", counted as a line of the script: the
# complaint about the first departure. A script gives its answer by (set-info :status ...).
set -u
vorn=$1
folder=$2
passed=0
failed=0
report() { # SCRIPT WHAT EXPECTED GOT
  printf 'FAILED %s: %s\n--- expected\n%s\n--- got\n%s\n' "$@"
  wrong=1
}
for script in "$folder"/*.smt2; do
  wrong=0
  IFS= read -r first <"$script"
  if [[ ! $first =~ ^'; strict: '([0-9]+:[0-9]+)': '(.+)$ ]]; then
    report "$script" 'first line' "; strict: LINE:COLUMN: MESSAGE" "$first"
  fi
  place="$script:${BASH_REMATCH[1]-}"
  message=${BASH_REMATCH[2]-}
  answer=$(sed -n 's/^(set-info :status \([a-z]*\))$/\1/p' "$script")
  actual=$("$vorn" "$script" 2>&1)
  [[ -n $answer && $actual == "$answer" ]] || report "$script" 'answer' "$answer" "$actual"
  warning="$place: warning: $message; further ones of this kind are not shown"
  actual=$("$vorn" --verbose "$script" 2>&1 >/dev/null)
  grep -qxF -- "$warning" <<<"$actual" || report "$script" 'warning' "$warning" "$actual"
  actual=$("$vorn" --strict "$script" 2>&1)
  status=$?
  [[ $status -eq 1 && $actual == *"$place: error: $message"* ]] ||
    report "$script" "strict, exit status $status" "$place: error: $message" "$actual"
  [[ $wrong -eq 0 ]] && passed=$((passed + 1)) || failed=$((failed + 1))
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]
