#!/usr/bin/env bash
# The same input, the same output: a long session prints the same bytes in every process.
#   determinism_test.sh LONG_SESSION
# One process has addresses at random. The others have another layout each: more allocations before
# the session, a larger environment, memory that is not zero at first and no randomness.
set -u
program=$1
rounds=150
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
failed=0

# same NAME COMMAND...
same() {
  local name=$1
  shift
  "$@" >"$dir/out"
  local status=$?
  if [[ $status -ne 0 ]] || ! cmp "$dir/first" "$dir/out"; then
    failed=1
    echo "FAILED $name: exit status $status"
  fi
}

"$program" $rounds 0 >"$dir/first" || { echo "FAILED: exit status $?"; exit 1; }
same 'other allocations' env FILLER="$(printf '%09999d' 0)" MALLOC_PERTURB_=165 "$program" $rounds 2000
# A container may forbid to choose the layout.
if setarch -R true 2>/dev/null; then
  same 'fixed addresses' env MALLOC_PERTURB_=90 setarch -R "$program" $rounds 77
fi
tail -n 1 "$dir/first"
exit $failed
