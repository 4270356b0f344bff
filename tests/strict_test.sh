#!/usr/bin/env bash
# Spellings beyond the standard in the command: --strict, warnings, and names that others cannot read.
#   strict_test.sh VORN
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# Errors may come on either stream.
both() { "$@" 2>&1; }
export -f both

script odd.smt2 '(declare-const |a\\b| (_ BitVec 2))\n(declare-const p (Bool))\n(assert (and p))\n(assert (or p))\n(assert (= |a\\b| #b10))\n(check-sat)\n(get-value (|a\\b|))\n'
check accepted 0 $'^sat\n\\(\\(\\|a\\\\b\\| #b10\\)\\)$' '^$' "$vorn" "$dir/odd.smt2"
check 'accepted by encode' 0 'p cnf' '^$' "$vorn" encode "$dir/odd.smt2" --to dimacs
check 'accepted by explain' 0 '^sat' '^$' "$vorn" explain "$dir/odd.smt2"
refused="odd.smt2:1:18: error: a quoted symbol cannot contain '.'"
check strict 1 "$refused" '^$' both "$vorn" --strict "$dir/odd.smt2"
check 'strict solve' 1 "$refused" '^$' both "$vorn" solve --strict "$dir/odd.smt2"
check 'strict encode' 1 "$refused" '^$' both "$vorn" encode --strict "$dir/odd.smt2" --to dimacs
check 'strict explain' 1 "$refused" '^$' both "$vorn" explain --strict "$dir/odd.smt2"
check 'strict session' 1 "<stdin>:1:18: error: a quoted symbol" '^$' both bash -c "'$vorn' --strict - <'$dir/odd.smt2'"
script plain.smt2 '(declare-const x Float32)\n(assert (fp.lt x ((_ to_fp 8 24) RNE (- (/ 1 3)))))\n(check-sat)\n'
check 'strict of the standard' 0 '^sat$' '^$' "$vorn" --strict "$dir/plain.smt2"

# One warning a kind and file.
warnings() { "$vorn" --verbose "$@" 2>&1 >/dev/null | grep -c ': warning: '; }
check 'a warning a kind' 0 '^3$' '^$' warnings "$dir/odd.smt2"
check 'and file' 0 '^6$' '^$' warnings "$dir/odd.smt2" "$dir/odd.smt2"
check 'no warning without --verbose' 0 '^sat' '^$' "$vorn" "$dir/odd.smt2"

# What other solvers read has no backslashes; what comes back from them has the names of the script.
check 'encoded script' 0 '^; \|a\\x5cb\| \(_ BitVec 2\) is a/b' '^$' "$vorn" encode "$dir/odd.smt2" --to smt2
check 'encoded script, its text' 1 '^$' '^$' bash -c "'$vorn' encode '$dir/odd.smt2' --to smt2 | grep -v '^;' | grep -F '\\'"
check 'symbol map' 0 'c vorn constant \|a\\x5cb\| ' '^$' "$vorn" encode "$dir/odd.smt2" --to dimacs
"$vorn" encode "$dir/odd.smt2" --to dimacs >"$dir/odd.cnf"
read -r high low < <(awk '/a.x5cb/ { print $(NF - 1), $NF }' "$dir/odd.cnf")
printf 's SATISFIABLE\nv %s %s %s 0\n' "$high" "-$low" "$(awk '/constant [|]p[|]/ { print $NF }' "$dir/odd.cnf")" >"$dir/answer"
check 'lift' 0 'define-fun \|a\\b\| \(\) \(_ BitVec 2\) #b10' '^$' \
  "$vorn" lift "$dir/odd.cnf" "$dir/answer" --check "$dir/odd.smt2"

summary
