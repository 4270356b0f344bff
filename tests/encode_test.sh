#!/usr/bin/env bash
# Formulas for other programs: what leaves vorn must have the answer that vorn gives, and models and
# proofs must stand when others look at them.
#   encode_test.sh VORN SOLVER CHECKER SCRIPTS
# SOLVER reads DIMACS from standard input and answers as in the competitions; CHECKER takes clauses
# and a proof. Where others of their kind are installed they are asked too, which is said.
set -u
vorn=$1
solver=$2
checker=$3
scripts=$4
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# Usage and errors.
script sat.smt2 '(declare-const x Float16)\n(declare-const |a b| (_ BitVec 8))\n(declare-const p Bool)
(declare-const r RoundingMode)(declare-const idle Float32)\n(assert (fp.gt (fp.add r x x) x))
(assert (= |a b| ((_ fp.to_ubv 8) r x)))\n(assert (xor p (= r RNA)))\n(check-sat)\n'
check no_format 2 '^$' '--to is required' "$vorn" encode "$dir/sat.smt2"
check unknown_format 2 '^$' 'other' "$vorn" encode --to other "$dir/sat.smt2"
check no_script 2 '^$' 'FILE is required' "$vorn" encode --to smt2
check missing_script 1 '^$' 'none.smt2: error: .*No such file' "$vorn" encode --to smt2 "$dir/none.smt2"
check no_directory 1 '^$' '^vorn: error: cannot write the formula to .*none/out: No such file' \
  "$vorn" encode --to smt2 "$dir/sat.smt2" -o "$dir/none/out"
script nothing.smt2 '(declare-const x Float16)\n(assert (fp.isNaN x))\n'
check no_check 1 '^$' 'nothing.smt2: error: the script has no check-sat' "$vorn" encode --to dimacs "$dir/nothing.smt2"
script wrong.smt2 '(assert (fp.isNaN y))\n(check-sat)\n'
check wrong_script 1 '^$' "wrong.smt2:1:19: error: unknown symbol 'y'" "$vorn" encode --to aiger "$dir/wrong.smt2"
script two.smt2 '(declare-const x Float16)\n(push)(assert (fp.lt x x))\n(check-sat)\n(pop)(check-sat)(exit)(check-sat)\n'
check more_checks 0 'QF_BV' 'two.smt2: note: only the first of 2 checks is encoded' \
  "$vorn" encode --to smt2 "$dir/two.smt2"
check levels 0 '^unsat$' '' bash -c "'$vorn' encode --to smt2 '$dir/two.smt2' | '$vorn' -"
script assuming.smt2 '(declare-const p Bool)\n(assert (not p))\n(check-sat-assuming (p))\n(get-unsat-assumptions)\n'
check assumptions 0 '^unsat$' '^$' bash -c "'$vorn' encode --to smt2 '$dir/assuming.smt2' | '$vorn' -"
check standard_input 0 '^sat$' '^$' bash -c "'$vorn' encode --to smt2 - <'$dir/sat.smt2' | '$vorn' -"
check names_of_script 0 '; \|x\| \(_ FloatingPoint 5 11\) is vorn.*\(declare-const \|a b\| \(_ BitVec 8\)\)' '^$' \
  "$vorn" encode --to smt2 "$dir/sat.smt2"
script base.smt2 '(declare-const x Float16)\n(assert (fp.isNaN (fp.sqrt RNE x)))\n(check-sat)\n'
check base_encoder 1 '^$' 'base.smt2:2:[0-9]+: error: fp.sqrt is not supported' \
  "$vorn" encode --encoder base --to smt2 "$dir/base.smt2"

# Clauses, their map, and the way back.
check dimacs 0 $'^c vorn map [0-9]+ [0-9]+\nc vorn constant \|x\| \\(_ FloatingPoint 5 11\\)( -?[0-9]+){16}\nc vorn constant \|a b\| .*\|p\| Bool -?[0-9]+\n.*RoundingMode( -?[0-9]+){3}\n.*\|idle\| \\(_ FloatingPoint 8 24\\)( F){32}\nc vorn choice 8( -?[0-9]+){8}\np cnf ' \
  '^$' "$vorn" encode --to dimacs "$dir/sat.smt2"
"$vorn" encode --to dimacs "$dir/sat.smt2" -o "$dir/sat.cnf"
"$solver" <"$dir/sat.cnf" >"$dir/sat.sol"
check lift 0 $'^sat\n\\(\n  \\(define-fun x \\(\\) \\(_ FloatingPoint 5 11\\) .*define-fun \\|a b\\| \\(\\) \\(_ BitVec 8\\) #x..\\)\n.*idle.*\\+zero 8 24\\)\\)\n\\)$' \
  '^$' "$vorn" lift "$dir/sat.cnf" "$dir/sat.sol" --check "$dir/sat.smt2"
grep '^c' "$dir/sat.cnf" >"$dir/sat.map"
check lift_by_comments 0 '^sat' '^$' bash -c "'$vorn' lift '$dir/sat.map' - <'$dir/sat.sol'"
# The model that is printed is one for vorn, too.
check model_is_a_model 0 '^sat$' '^$' bash -c "
  { sed -n '/declare-const/p' '$dir/sat.smt2'; sed '1,/check-sat/!d; /declare-const/d; /check-sat/d' '$dir/sat.smt2'
    '$vorn' lift '$dir/sat.cnf' '$dir/sat.sol' | sed -n 's/.*(define-fun \\(x\\|r\\|p\\) () \\(Bool\\|RoundingMode\\|(_ FloatingPoint 5 11)\\) \\(.*\\))\$/(assert (= \\1 \\3))/p'
    echo '(check-sat)'; } | '$vorn' -"
sed '/^v/d' "$dir/sat.sol" >"$dir/zeros.sol"
echo 'v 0' >>"$dir/zeros.sol"
check lift_unchecked 0 '^sat' '^$' "$vorn" lift "$dir/sat.cnf" "$dir/zeros.sol"
check lift_checked 1 '^$' 'zeros.sol: error: the model does not satisfy \(' \
  "$vorn" lift "$dir/sat.cnf" "$dir/zeros.sol" --check "$dir/sat.smt2"
check lift_other_script 1 '^$' 'sat.cnf: error: the map has no p of sort Bool, so it was not made from .*assuming' \
  bash -c "sed -i.bak '/|p|/d' '$dir/sat.cnf'; '$vorn' lift '$dir/sat.cnf' '$dir/sat.sol' --check '$dir/assuming.smt2'"
mv "$dir/sat.cnf.bak" "$dir/sat.cnf"
script unsat.sol 's UNSATISFIABLE\n'
check lift_unsat 0 '^unsat$' '^$' "$vorn" lift "$dir/sat.cnf" "$dir/unsat.sol" --check "$dir/sat.smt2"
script unknown.sol 'c late\ns UNKNOWN\n'
check lift_unknown 0 '^unknown$' '^$' "$vorn" lift "$dir/sat.cnf" "$dir/unknown.sol"
script bad.sol 's SATISFIABLE\nv 1 2\nv 1000000 0\n'
check bad_solution 1 '^$' 'bad.sol:3: error: literal 1000000' "$vorn" lift "$dir/sat.cnf" "$dir/bad.sol"
script modes.cnf 'c vorn map 1 1\nc vorn constant |r| RoundingMode T F T\np cnf 1 0\n'
script modes.sol 's SATISFIABLE\nv 1 0\n'
check no_rounding_mode 1 '^$' 'modes.sol: error: the value of r is no rounding mode' "$vorn" lift "$dir/modes.cnf" "$dir/modes.sol"
script plain.cnf 'c hello\np cnf 1 0\n'
check no_map 1 '^$' 'plain.cnf:2:1: error: there is no symbol map' "$vorn" lift "$dir/plain.cnf" "$dir/modes.sol"
script broken.cnf 'c vorn map 1 3\nc vorn constant |x| (_ BitVec 2) 1 4\n'
check bad_map 1 '^$' "broken.cnf:2:[0-9]+: error: symbol map: '4' is no bit" "$vorn" lift "$dir/broken.cnf" "$dir/modes.sol"
script short.cnf 'c vorn map 1 3\nc vorn constant |x| (_ BitVec 2) 1\n'
check short_map 1 '^$' 'short.cnf:2:[0-9]+: error: symbol map: .* has 2 bits, got 1' "$vorn" lift "$dir/short.cnf" "$dir/modes.sol"

# Names of any kind.
script names.smt2 '(declare-const |two\nlines| (_ BitVec 3))\n(declare-const || Bool)\n(assert (and || (= |two\nlines| #b101)))\n(check-sat)\n'
"$vorn" encode --to dimacs "$dir/names.smt2" >"$dir/names.cnf"
"$solver" <"$dir/names.cnf" >"$dir/names.sol"
check names 0 $'\\|two\nlines\\| \\(\\) \\(_ BitVec 3\\) #b101\\)\n  \\(define-fun \\|\\| \\(\\) Bool true' '^$' \
  "$vorn" lift "$dir/names.cnf" "$dir/names.sol" --check "$dir/names.smt2"
check names_of_circuit 0 $'\ni[0-9] \\|two\\\\x0alines\\|\\[2\\]\n' '^$' "$vorn" encode --to aiger "$dir/names.smt2"

# What the theory leaves open is a function outside of vorn, too.
script open-unsat.smt2 '(declare-const x Float16)(declare-const y Float16)(declare-const r RoundingMode)
(assert (= x y))(assert (fp.isInfinite y))(assert (= r RTZ))
(assert (distinct ((_ fp.to_sbv 9) r x) ((_ fp.to_sbv 9) RTZ y)))\n(check-sat)\n'
script open-sat.smt2 '(declare-const x Float16)(declare-const y Float16)(declare-const z Float16)
(assert (and (fp.isNaN x) (fp.isZero y) (fp.isZero z) (distinct y z) (fp.isNegative y)))
(assert (= ((_ fp.to_ubv 8) RNE x) #xab))(assert (= ((_ fp.to_ubv 8) RTZ x) #xba))
(assert (fp.isNegative (fp.min y z)))(assert (fp.isPositive (fp.min z y)))(assert (fp.isNegative (fp.max y z)))
(check-sat)\n'

# Every script: the other forms have its first answer.
judge() { # NAME SCRIPT OPTION...
  local name=$1 file=$2 answer solution
  shift 2
  answer=$("$vorn" "$@" "$file" 2>/dev/null | grep -m1 -xE 'sat|unsat')
  check "$name: encode to smt2" 0 "^$answer\$" '^$' \
    bash -c "'$vorn' encode --to smt2 $* '$file' 2>/dev/null | '$vorn' -"
  "$vorn" encode --to dimacs "$@" "$file" >"$dir/formula.cnf" 2>/dev/null
  for program in "$solver" "${others[@]}"; do
    solution=$dir/formula.sol
    "$program" <"$dir/formula.cnf" >"$solution" 2>/dev/null
    check "$name: $program" 0 "^$answer(\$|"$'\n'")" '^$' \
      "$vorn" lift "$dir/formula.cnf" "$solution" --check "$file"
  done
  [[ $(grep -c '(check-sat' "$file") -eq 1 ]] || return
  check "$name: solve with a proof" 0 "^$answer(\$|"$'\n'")" '^$' \
    "$vorn" "$@" --cnf "$dir/given.cnf" --proof "$dir/given.drat" "$file"
  traced=$((traced + 1))
  "$solver" <"$dir/given.cnf" >"$dir/given.sol"
  check "$name: the clauses" 0 "^s $([[ $answer == sat ]] || echo UN)SATISFIABLE\$" '' head -n 1 "$dir/given.sol"
  if [[ $answer == unsat ]]; then
    refuted=$((refuted + 1))
    check "$name: the proof" 0 '^verified' '^$' "$checker" "$dir/given.cnf" "$dir/given.drat"
    [[ -z $drat_trim ]] || check "$name: drat-trim" 0 's VERIFIED' '' "$drat_trim" "$dir/given.cnf" "$dir/given.drat"
  else
    check "$name: no proof" 1 'does not end in a contradiction' '^$' "$checker" "$dir/given.cnf" "$dir/given.drat"
  fi
}
others=()
for program in kissat cadical picosat; do
  if command -v "$program" >"$dir/null"; then
    others+=("$program")
  else
    echo "SKIPPED: $program is not installed"
  fi
done
drat_trim=$(command -v drat-trim) || echo 'SKIPPED: drat-trim is not installed'
traced=0
refuted=0
for file in "$scripts"/*.smt2 "$scripts"/arrays/*.smt2 "$dir"/open-*.smt2 "$dir/assuming.smt2" "$dir/names.smt2"; do
  read -r -a options < <(sed -n '1s/^; options: *//p' "$file") || true
  judge "$(basename "$file")" "$file" "${options[@]}"
done
check scripts_were_judged 0 '^yes$' '' bash -c "((traced = $traced, refuted = $refuted, traced >= 10 && refuted >= 5)) && echo yes"
check open_unsat 0 '^unsat$' '^$' bash -c "'$vorn' encode --to smt2 '$dir/open-unsat.smt2' | '$vorn' -"

# Arrays and functions: as lemmas, or as they are.
script memory.smt2 '(set-logic QF_AUFBVFP)
(declare-const m (Array (_ BitVec 32) Float32))(declare-const i (_ BitVec 32))(declare-const j (_ BitVec 32))
(declare-fun f (Float32 RoundingMode) Float32)(declare-const r RoundingMode)(declare-const x Float32)
(assert (= x (f (select m i) r)))(assert (fp.lt (f (select (store m j x) i) RTZ) (select m j)))
(assert (distinct (store m i x) (store m j x)))(assert (= r RTZ))\n(check-sat)\n'
check kept 0 $'; \\|m\\| \\(Array \\(_ BitVec 32\\) \\(_ FloatingPoint 8 24\\)\\) is [^\n]+\n; \\|f\\| [^\n]+ is [^\n]+\n\\(set-logic QF_AUFBV\\)\n.*\\(declare-fun [^ ]+ \\(\\(_ BitVec 32\\) \\(_ BitVec 3\\)\\) \\(_ BitVec 32\\)\\)' '^$' \
  "$vorn" encode --to smt2 --keep-arrays "$dir/memory.smt2"
check not_kept 0 '\(set-logic QF_BV\)' '^$' "$vorn" encode --to smt2 "$dir/memory.smt2"
check kept_in_clauses 2 '^$' 'keep-arrays goes with --to smt2' "$vorn" encode --to dimacs --keep-arrays "$dir/memory.smt2"
kept() { # NAME SCRIPT ANSWER
  check "kept: $1" 0 "^$3\$" '^$' bash -c "'$vorn' encode --to smt2 --keep-arrays '$2' 2>'$dir/null' | '$vorn' -"
}
kept memory "$dir/memory.smt2" sat
for file in "$scripts"/arrays/*.smt2; do
  kept "$(basename "$file")" "$file" "$("$vorn" "$file" | grep -m1 -xE 'sat|unsat')"
done
# As floats the arrays are equal, as bits they would not have to be.
script nans.smt2 '(declare-const a (Array Bool Float16))(declare-const b (Array Bool Float16))
(assert (and (fp.isNaN (select a true)) (fp.isNaN (select b true)) (= (select a false) (select b false))))
(assert (distinct a b))\n(check-sat)\n'
kept nans "$dir/nans.smt2" unsat
script loose.smt2 '(declare-const a (Array (Array Bool Float16) Bool))(declare-const i (Array Bool Float16))
(assert (select a i))\n(check-sat)\n'
check kept_loose 1 '^$' 'loose.smt2:3:2: error: arrays of floats, .* as indices or arguments cannot be kept' \
  "$vorn" encode --to smt2 --keep-arrays "$dir/loose.smt2"
script modes.smt2 '(declare-const a (Array RoundingMode Bool))
(define-fun none () (Array RoundingMode Bool) ((as const (Array RoundingMode Bool)) false))
(assert (= (store (store (store (store (store none RNE true) RNA true) RTP true) RTN true) RTZ true)
  ((as const (Array RoundingMode Bool)) true)))\n(check-sat)\n'
check kept_everywhere 1 '^$' 'modes.smt2:5:2: error: constant arrays over .* cannot be kept' \
  "$vorn" encode --to smt2 --keep-arrays "$dir/modes.smt2"
check not_kept_everywhere 0 '^sat$' '^$' bash -c "'$vorn' encode --to smt2 '$dir/modes.smt2' | '$vorn' -"
script finite.smt2 '(declare-sort S 0)(declare-const a S)
(assert (= (store ((as const (Array S Bool)) true) a false) ((as const (Array S Bool)) false)))\n(check-sat)\n'
check only_infinite 1 '^$' 'finite.smt2:3:2: error: what has no model in which uninterpreted sorts are infinite' \
  "$vorn" encode --to smt2 "$dir/finite.smt2"
# The way back: constants are given, arrays and functions are found.
"$vorn" encode --to dimacs "$dir/memory.smt2" >"$dir/memory.cnf"
"$solver" <"$dir/memory.cnf" >"$dir/memory.sol"
check lift_arrays 0 '^sat.*define-fun m .*\(store|as const.*define-fun f \(\(x!0 \(_ FloatingPoint 8 24\)\) \(x!1 RoundingMode\)\)' '^$' \
  "$vorn" lift "$dir/memory.cnf" "$dir/memory.sol" --check "$dir/memory.smt2"
check lift_arrays_unchecked 0 '^sat.*define-fun i .*define-fun x' '^$' "$vorn" lift "$dir/memory.cnf" "$dir/memory.sol"
sed '/^v/d' "$dir/memory.sol" >"$dir/memory-zeros.sol"
echo 'v 0' >>"$dir/memory-zeros.sol"
check lift_no_arrays 1 '^$' 'zeros.sol: error: the model does not satisfy the assertions, whatever the arrays' \
  "$vorn" lift "$dir/memory.cnf" "$dir/memory-zeros.sol" --check "$dir/memory.smt2"

# A circuit is read by who reads such files; here it is only known to be one (aiger_test.cpp reads it).
check aiger 0 $'^aag [0-9]+ [0-9]+ 0 1 [0-9]+\n.*\ni0 \|x\|\\[0\\]\n.*\no0 assertions$' '^$' "$vorn" encode --to aiger "$dir/sat.smt2"
"$vorn" encode --to aiger "$dir/sat.smt2" -o "$dir/sat.aig"
check aiger_binary 0 '^aig [0-9]+ [0-9]+ 0 1 [0-9]+$' '' head -n 1 "$dir/sat.aig"

# Proofs.
script levels.smt2 '(declare-const x Float16)(declare-const y Float16)\n(push)(assert (fp.lt x y))
(push)(assert (fp.lt y x))(pop)(push)\n(check-sat-assuming ((fp.lt y x) (fp.isZero y)))\n(get-unsat-assumptions)(pop)(pop)\n'
check levels_and_assumptions 0 $'^unsat\n\\(\\(fp.lt y x\\) \\(fp.isZero y\\)\\)$' '^$' \
  "$vorn" --cnf "$dir/l.cnf" --proof "$dir/l.drat" "$dir/levels.smt2"
check proof_of_levels 0 '^verified' '^$' "$checker" "$dir/l.cnf" "$dir/l.drat"
check checker_misses_the_end 1 'does not end' '^$' bash -c "'$checker' '$dir/l.cnf' /dev/null"
script chain.smt2 '(declare-const x Float16)(declare-const y Float16)(declare-const z Float16)
(assert (fp.lt x y))(assert (fp.lt y z))(assert (fp.lt z x))\n(check-sat)\n'
"$vorn" --cnf "$dir/c.cnf" --proof "$dir/c.drat" "$dir/chain.smt2" >"$dir/null"
check proof_of_chain 0 '^verified after [1-9]' '^$' "$checker" "$dir/c.cnf" "$dir/c.drat"
# Without the clauses of one assertion there is nothing to refute: the checker must say so.
sed 's/(assert (fp.lt z x))//' "$dir/chain.smt2" >"$dir/weaker.smt2"
"$vorn" --cnf "$dir/w.cnf" "$dir/weaker.smt2" >"$dir/null"
check checker_refuses 1 'does not (follow|end)' '^$' "$checker" "$dir/w.cnf" "$dir/c.drat"
check two_checks 1 '^$' 'two.smt2: error: --cnf and --proof take a script with one check-sat, this one has 2$' \
  "$vorn" --proof "$dir/p" "$dir/two.smt2"
check no_checks 1 '^$' 'this one has 0$' "$vorn" --cnf "$dir/p" "$dir/nothing.smt2"
check two_files 2 '^$' 'take one file' "$vorn" --cnf "$dir/p" "$dir/sat.smt2" "$dir/sat.smt2"
check proof_of_a_session 2 '^$' 'not standard input' "$vorn" --proof "$dir/p" -
check one_file_for_both 2 '^$' 'same file' "$vorn" --proof "$dir/p" --cnf "$dir/p" "$dir/sat.smt2"
check proof_in_no_directory 1 '^$' '^vorn: error: cannot write the proof to .*none/p: No such file' \
  "$vorn" --proof "$dir/none/p" "$dir/sat.smt2"
check clauses_in_no_directory 1 '^$' '^vorn: error: cannot write the clauses to .*none/p: No such file' \
  "$vorn" --cnf "$dir/none/p" "$dir/sat.smt2"

summary
