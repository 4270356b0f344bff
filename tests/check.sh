# shellcheck shell=bash
# Sourced by the tests of the command: runs it and compares what it does.
#   check NAME STATUS STDOUT-PATTERN STDERR-PATTERN COMMAND...   (extended regular expressions)
# Standard input is empty. $dir is a directory for files, and `script NAME TEXT` writes one there.
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
passed=0
failed=0

check() {
  local name=$1 status=$2 out=$3 err=$4
  shift 4
  "$@" >"$dir/out" 2>"$dir/err" </dev/null
  local got=$?
  if [[ $got -eq $status ]] && [[ "$(cat "$dir/out")" =~ $out ]] && [[ "$(cat "$dir/err")" =~ $err ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED %s: exit status %s\n--- stdout\n' "$name" "$got"
    head -c 2000 "$dir/out"
    printf -- '--- stderr\n'
    head -c 2000 "$dir/err"
  fi
}

script() { printf '%b' "$2" >"$dir/$1"; }

# Ends a test: its exit status is that of this.
summary() {
  echo "$passed passed, $failed failed"
  [[ $failed -eq 0 && $passed -gt 0 ]]
}
