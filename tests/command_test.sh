#!/usr/bin/env bash
# The command as its user meets it: options, exit statuses, messages.
#   command_test.sh VORN
set -u
vorn=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
passed=0
failed=0

# check NAME STATUS STDOUT-PATTERN STDERR-PATTERN COMMAND...   (extended regular expressions)
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
    cat "$dir/out"
    printf -- '--- stderr\n'
    cat "$dir/err"
  fi
}

script() { printf '%b' "$2" >"$dir/$1"; }

check help 0 'Usage: vorn' '^$' "$vorn" --help
check version 0 '^vorn [0-9]+\.[0-9]+\.[0-9]+$' '^$' "$vorn" --version
check no_file 2 '^$' 'no file given' "$vorn"
check unknown_option 2 '^$' 'wrong' "$vorn" --wrong
check unknown_encoder 2 '^$' 'encoder' "$vorn" --encoder other x.smt2
check negative_limit 2 '^$' 'time-limit' "$vorn" --time-limit -1 x.smt2
check missing_file 1 '^$' "$dir/none.smt2: error: .*No such file" "$vorn" "$dir/none.smt2"
check directory 1 '^$' "$dir: error: .*directory" "$vorn" "$dir"

script sat.smt2 '(declare-const x Float32)\n(assert (fp.lt x ((_ to_fp 8 24) RNE 0.5)))\n(check-sat)\n'
script unsat.smt2 '(declare-const x Float32)\n(assert (fp.lt x x))\n(check-sat)\n'
check sat 0 '^sat$' '^$' "$vorn" "$dir/sat.smt2"
check solve_subcommand 0 '^sat$' '^$' "$vorn" solve "$dir/sat.smt2"
check several_files 0 $'^sat\nunsat$' '^$' "$vorn" "$dir/sat.smt2" "$dir/unsat.smt2"
check standard_input 0 '^sat$' '^$' bash -c "'$vorn' - < '$dir/sat.smt2'"
check statistics 0 '^sat$' 'variables [0-9]+, clauses [0-9]+' "$vorn" --stats "$dir/sat.smt2"
check progress 0 '^sat$' 'searching: ' "$vorn" --verbose "$dir/sat.smt2"

script empty.smt2 ''
check empty_file 1 '^$' 'empty.smt2:1:1: error: ' "$vorn" "$dir/empty.smt2"
script symbol.smt2 '(declare-const x Bool)\n(assert (or x\n  yy))\n'
check unknown_symbol 1 '^$' "symbol.smt2:3:3: error: .*yy" "$vorn" "$dir/symbol.smt2"
script sort.smt2 '(declare-const x Float32)\n(assert (fp.lt x true))\n'
check wrong_sort 1 '^$' "sort.smt2:2:[0-9]+: error: .*fp.lt" "$vorn" "$dir/sort.smt2"
script width.smt2 '(declare-const x Float32)\n(declare-const y Float64)\n(assert (= x y))\n'
check width_mismatch 1 '^$' 'width.smt2:3:[0-9]+: error: .*FloatingPoint 8 24.*FloatingPoint 11 53' "$vorn" "$dir/width.smt2"
script arity.smt2 '(declare-const x Float32)\n(assert (fp.isNaN x x))\n'
check wrong_arity 1 '^$' 'arity.smt2:2:[0-9]+: error: .*fp.isNaN' "$vorn" "$dir/arity.smt2"
script open.smt2 '(check-sat)\n(assert (and true\n'
check unclosed_parenthesis 1 '^sat$' 'open.smt2:2:[0-9]+: error: ' "$vorn" "$dir/open.smt2"
script stray.smt2 '(check-sat)\n\x01\n'
check stray_byte 1 '^sat$' 'stray.smt2:2:1: error: ' "$vorn" "$dir/stray.smt2"
script beyond.smt2 '(declare-const x Float32)\n(assert (fp.isNormal (fp.sqrt RNE x)))\n'
check beyond_the_command 1 '^$' 'beyond.smt2:2:[0-9]+: error: fp\.(isNormal|sqrt) is not supported' "$vorn" "$dir/beyond.smt2"
script logic.smt2 '(set-logic QF_FP)\n(echo "done")\n(exit)\n(check-sat)\n'
check exit_ends_the_script 0 '^"done"$' '^$' "$vorn" "$dir/logic.smt2"

awk 'BEGIN { print "(declare-const x Bool)"; printf "(assert "; for (i = 0; i < 100000; i++) printf "(not ";
  printf "x"; for (i = 0; i < 100000; i++) printf ")"; print ")\n(check-sat)" }' >"$dir/deep.smt2"
check deep_nesting 0 '^sat$' '^$' "$vorn" "$dir/deep.smt2"
awk 'BEGIN { print "(declare-const x Float32)(declare-const y Float32)(declare-const c Bool)";
  printf "(assert (fp.lt x "; for (i = 0; i < 100000; i++) printf "(fp.neg (ite (fp.isNaN x) y ";
  printf "y"; for (i = 0; i < 100000; i++) printf "))"; print "))\n(check-sat)" }' >"$dir/deepfp.smt2"
check deep_floating_point 0 '^sat$' '^$' "$vorn" "$dir/deepfp.smt2"

echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
