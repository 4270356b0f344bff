#!/usr/bin/env bash
# The command as its user meets it: options, exit statuses, messages.
#   command_test.sh VORN
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

check help 0 'Usage: vorn.*--encoder NAME:\{ieee,base\}' '^$' "$vorn" --help
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
check progress 0 '^sat$' 'local search found a model' "$vorn" --verbose "$dir/sat.smt2"
check 'no local search' 0 '^sat$' 'searching: ' "$vorn" --no-local-search --verbose "$dir/sat.smt2"

script empty.smt2 ''
check empty_file 1 '^\(error ".*empty.smt2:1:1: error: ' '^$' "$vorn" "$dir/empty.smt2"
script symbol.smt2 '(declare-const x Bool)\n(assert (or x\n  yy))\n'
check unknown_symbol 1 "^\(error \".*symbol.smt2:3:3: error: .*yy" '^$' "$vorn" "$dir/symbol.smt2"
script sort.smt2 '(declare-const x Float32)\n(assert (fp.lt x true))\n'
check wrong_sort 1 "^\(error \".*sort.smt2:2:[0-9]+: error: .*fp.lt" '^$' "$vorn" "$dir/sort.smt2"
script width.smt2 '(declare-const x Float32)\n(declare-const y Float64)\n(assert (= x y))\n'
check width_mismatch 1 '^\(error ".*width.smt2:3:[0-9]+: error: .*FloatingPoint 8 24.*FloatingPoint 11 53' '^$' "$vorn" "$dir/width.smt2"
script arity.smt2 '(declare-const x Float32)\n(assert (fp.isNaN x x))\n'
check wrong_arity 1 '^\(error ".*arity.smt2:2:[0-9]+: error: .*fp.isNaN' '^$' "$vorn" "$dir/arity.smt2"
script open.smt2 '(check-sat)\n(assert (and true\n'
check unclosed_parenthesis 1 '^sat.*\(error ".*open.smt2:2:[0-9]+: error: ' '^$' "$vorn" "$dir/open.smt2"
script stray.smt2 '(check-sat)\n\x01\n'
check stray_byte 1 '^sat.*\(error ".*stray.smt2:2:1: error: ' '^$' "$vorn" "$dir/stray.smt2"
script beyond.smt2 '(declare-const x Float32)\n(assert (= 0.5 (fp.to_real x)))\n'
check beyond_the_command 1 '^\(error ".*beyond.smt2:2:[0-9]+: error: fp\.to_real is not supported' '^$' "$vorn" "$dir/beyond.smt2"
script logic.smt2 '(set-logic QF_FP)\n(echo "done")\n(exit)\n(check-sat)\n'
check exit_ends_the_script 0 '^"done"$' '^$' "$vorn" "$dir/logic.smt2"

# vorn eval: one answer a line.
printf '%s\n' 'add rne 8 23 3f800000 3f800000' 'mul rtz 8 23 7f7fffff 40000000' \
  'from_sbv rne 8 8 23 80' 'add rne 8 23 80000000 80000000' 'cast rne 8 23 11 52 00000001' \
  'mul rne 5 2 01 3c' 'add rna 8 23 3f800000 33800000' 'neg 8 23 7fc00000' 'isnan 8 23 7fc00000' \
  'lt 8 23 80000001 80000000' 'eq 5 10 0000 8000' >"$dir/lines"
check eval_exact 0 $'^40000000\n7f7fffff\nc3000000\n80000000\n36a0000000000000\n01\n3f800001\nffc00000\n1\n1\n1$' \
  '^$' bash -c "'$vorn' eval <'$dir/lines'"
check eval_base 0 $'^40000000\n7f7fffff\nc3000000\n00000000\n0000000020000000\n01\nerror: .*Away.*\nffc00000\n1\n1\n1$' \
  '^$' bash -c "'$vorn' eval --encoder base <'$dir/lines'"
printf '%s\n' '' 'frob 1' 'add rne 8 23 1' 'add rne 8 23 1 zz' 'add rne 8 23 100000000 1' \
  'add foo 8 23 1 1' 'add rne 1 23 1 1' 'add rne 8 0 1 1' 'add rne 8 99999999 1 1' \
  'from_ubv rne 0 8 23 0' 'neg 8 23 00000000' >"$dir/bad"
check eval_bad_lines 0 "^(error: [^"$'\n'"]+"$'\n'"){10}80000000$" '^$' bash -c "'$vorn' eval <'$dir/bad'"
echo 'mul rne 8 1 3f 3f' >"$dir/narrow"
check eval_unsupported_format 0 '^error: not supported by this encoder' '^$' \
  bash -c "'$vorn' eval --encoder base <'$dir/narrow'"
# An answer comes before the next line is written.
check eval_streams 0 '^40000000 80000000$' '^$' bash -c "coproc '$vorn' eval
  echo 'add rne 8 23 3f800000 3f800000' >&\${COPROC[1]}; read -r -t 20 first <&\${COPROC[0]}
  echo 'neg 8 23 0' >&\${COPROC[1]}; read -r -t 20 second <&\${COPROC[0]}; echo \"\$first \$second\""

script refused.smt2 '(declare-const x Float32)\n(assert (fp.isNaN (fp.add RNA x x)))\n'
check base_refuses_ties_to_away 1 '^\(error ".*refused.smt2:2:[0-9]+: error: .*roundNearestTiesToAway' '^$' \
  "$vorn" --encoder base "$dir/refused.smt2"
script narrow.smt2 '(declare-const x (_ FloatingPoint 8 2))\n(assert (fp.isNaN (fp.mul RNE x x)))\n'
check base_refuses_a_format 1 '^\(error ".*narrow.smt2:2:[0-9]+: error: fp.mul on \(_ FloatingPoint 8 2\) is not supported' '^$' \
  "$vorn" --encoder base "$dir/narrow.smt2"

# The other operations, with what the theory leaves open.
printf '%s\n' 'fma rne 8 23 3f800001 3f800001 bf800002' 'sqrt rtp 5 10 4000' 'rti rna 8 23 40200000' \
  'rem 8 23 40a00000 40400000' 'rem rtz 8 23 7f7fffff 00000003' 'min 5 10 7e00 3c00' \
  'max rne 8 23 80000000 00000000' 'abs 8 23 bf800000' 'to_sbv rtz 8 23 8 c3000000' \
  'to_sbv rne 8 23 8 43000000' 'to_ubv rne 11 52 16 40efffc000000000' 'isnormal 5 10 0400' \
  'issubnormal 5 10 0400' 'isnegative 8 23 ff800001' 'ispositive 8 23 00000000' >"$dir/more"
check eval_other_operations 0 $'^28800000\n3da9\n40400000\nbf800000\n00000000\n3c00\nunspecified\n3f800000\n80\nunspecified\nfffe\n1\n0\n0\n1$' \
  '^$' bash -c "'$vorn' eval <'$dir/more'"
check eval_base_has_fewer_operations 0 $'^(error: not supported by this encoder\n?){15}$' '^$' \
  bash -c "'$vorn' eval --encoder base <'$dir/more'"
script sqrt.smt2 '(declare-const x Float32)\n(assert (fp.isNaN (fp.sqrt RNE x)))\n'
check base_refuses_an_operation 1 '^\(error ".*sqrt.smt2:2:[0-9]+: error: fp.sqrt is not supported by this encoder' '^$' \
  "$vorn" --encoder base "$dir/sqrt.smt2"

# Sessions on standard input.
script typos.smt2 '(declare-const x Float16)\n(assert (fp.gt x y))\n(check-sat)\n'
check interactive_errors 1 $'^\\(error "<stdin>:2:18: error: unknown symbol \'y\'"\\)\nsat$' '^$' \
  bash -c "'$vorn' - <'$dir/typos.smt2'"
check interactive_answers_at_once 0 '^sat ok$' '^$' bash -c "coproc '$vorn' -
  echo '(check-sat)' >&\${COPROC[1]}; read -r -t 20 first <&\${COPROC[0]}
  echo '(assert false) (echo \"ok\")' >&\${COPROC[1]}; read -r -t 20 second <&\${COPROC[0]}
  echo \"\$first \${second//\\\"/}\""
script hard.smt2 '(declare-const x Float64)(declare-const y Float64)(declare-const z Float64)(push)
(assert (not (fp.isNaN (fp.mul RNE x (fp.mul RNE y z)))))
(assert (not (fp.eq (fp.mul RNE x (fp.mul RNE y z)) (fp.mul RNE (fp.mul RNE x y) z))))
(assert (fp.eq (fp.rem x y) (fp.sqrt RTP (fp.div RNE z x))))
(check-sat)(get-info :reason-unknown)(pop)(check-sat)\n'
# Local search has a model of this after half a second; the circuits take many times as long, so
# that the limit, or the signal, comes first.
check time_limit 3 $'^unknown\n\\(:reason-unknown "timeout"\\)\nsat$' '^$' \
  "$vorn" --no-local-search --time-limit 0.5 "$dir/hard.smt2"
check interrupt 3 $'^unknown\n\\(:reason-unknown "interrupted"\\)\nsat$' '^$' bash -c "
  trap '' INT; trap - INT; '$vorn' --no-local-search --verbose '$dir/hard.smt2' 2>'$dir/log' & pid=\$!
  until grep -qs searching '$dir/log'; do sleep 0.1; done; kill -INT \$pid; wait \$pid"

awk 'BEGIN { print "(declare-const x Bool)"; printf "(assert "; for (i = 0; i < 100000; i++) printf "(not ";
  printf "x"; for (i = 0; i < 100000; i++) printf ")"; print ")\n(check-sat)" }' >"$dir/deep.smt2"
check deep_nesting 0 '^sat$' '^$' "$vorn" "$dir/deep.smt2"
awk 'BEGIN { print "(declare-const x Float32)(declare-const y Float32)(declare-const c Bool)";
  printf "(assert (fp.lt x "; for (i = 0; i < 100000; i++) printf "(fp.neg (ite (fp.isNaN x) y ";
  printf "y"; for (i = 0; i < 100000; i++) printf "))"; print "))\n(check-sat)" }' >"$dir/deepfp.smt2"
check deep_floating_point 0 '^sat$' '^$' "$vorn" "$dir/deepfp.smt2"

summary
