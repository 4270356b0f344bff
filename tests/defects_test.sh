#!/usr/bin/env bash
# What is wrong with the command itself does not read as an error of its input, nor the other way
# round.
#   defects_test.sh FAULTY_VORN      the command with the faults of tests/defects
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"
export TMPDIR=$dir # where reports go

script sum.smt2 '(declare-const x Float16)\n(assert (fp.gt (fp.add RNE x x) x))\n(check-sat)\n'
sum='add rne 5 10 3c00 3c00'
echo "$sum" >"$dir/line"
"$vorn" encode --to dimacs -o "$dir/sum.cnf" "$dir/sum.smt2"
{ echo 's SATISFIABLE'; awk '/^p cnf/ { printf "v"; for (i = 1; i <= $3; i++) printf " %d", i; print " 0" }' "$dir/sum.cnf"; } >"$dir/answer"

# run NAME STATUS STDOUT STDERR FAULT ARGUMENT...
run() {
  local fault=$5
  check "$1: $fault" "$2" "$3" "$4" env FAULT="$fault" "$vorn" "${@:6}"
}

check 'without a fault' 0 '^sat$' '^$' "$vorn" "$dir/sum.smt2"
run 'no such fault' 0 '^sat$' '^$' none "$dir/sum.smt2"

defect='^internal error: planted'$'\n''This is a defect of vorn\. Please report it, with '
for fault in internal_error logic_error out_of_range domain_error; do
  rm -f "$dir"/vorn-report-*
  run solve 4 '^$' "${defect}the script that shows it: $dir/vorn-report-[0-9]+\.smt2$" $fault "$dir/sum.smt2"
  check "report: $fault" 0 '^; internal error: planted'$'\n''\(declare-const x .*fp\.lt .*\(check-sat\)$' '^$' \
    cat "$dir"/vorn-report-*
  check "decides the report: $fault" 0 '^sat$' '^$' "$vorn" "$dir"/vorn-report-*
  check "solve, interactive: $fault" 4 '^$' "$defect" env FAULT=$fault bash -c "'$vorn' - <'$dir/sum.smt2'"
  check "eval: $fault" 4 '^error: an empty line$' "${defect}the line: $sum$" \
    env FAULT=$fault bash -c "{ echo; cat '$dir/line'; } | '$vorn' eval"
  # shellcheck disable=SC2086
  run 'explain' 4 '^$' "${defect}what was explained\.$" $fault explain $sum
  run 'explain a script' 4 '^$' "${defect}what was explained\.$" $fault explain "$dir/sum.smt2"
  run 'encode' 4 '^$' "${defect}what was encoded\.$" $fault encode --to smt2 "$dir/sum.smt2"
  run 'encode an operation' 4 '^$' "${defect}what was encoded\.$" $fault encode --to dot --op "$sum"
  run 'lift' 4 '^$' "${defect}the files that it was given\.$" $fault \
    lift --check "$dir/sum.smt2" "$dir/sum.cnf" "$dir/answer"
done

check 'no place for the report' 4 '^$' "${defect}the script that shows it: \(.*No such file or directory.*\)$" \
  env FAULT=logic_error TMPDIR="$dir/none" "$vorn" "$dir/sum.smt2"
check 'report and answer are lost' 4 '^$' "$defect" \
  env FAULT=logic_error bash -c "'$vorn' '$dir/sum.smt2' >&-"

for fault in invalid_argument length_error runtime_error; do
  run solve 1 "^\(error \"$dir/sum\.smt2:2:9: error: .*planted.*\"\)$" '^$' $fault --no-substitution "$dir/sum.smt2"
  check "solve, interactive: $fault" 1 '^\(error "<stdin>:2:9: error: .*planted.*"\)'$'\n''sat$' '^$' \
    env FAULT=$fault bash -c "'$vorn' --no-substitution - <'$dir/sum.smt2'"
  status=0
  [[ $fault != length_error ]] || status=3
  check "eval: $fault" $status '^error: .*planted$' '^$' env FAULT=$fault bash -c "'$vorn' eval <'$dir/line'"
  run 'encode' 1 '^$' "^$dir/sum\.smt2:2:9: error: .*planted" $fault encode --to smt2 "$dir/sum.smt2"
done
# With substitution assertions are translated by the check.
for fault in invalid_argument runtime_error; do
  run solve 1 "^\(error \"$dir/sum\.smt2:3:2: error: .*planted.*\"\)$" '^$' $fault "$dir/sum.smt2"
done
run solve 3 '^unknown$' '^$' length_error "$dir/sum.smt2"
run 'encode an operation' 1 '^$' '^add .*: error: .*planted$' invalid_argument encode --to dot --op "$sum"
run 'encode an operation' 3 '^$' '^add .*: error: planted$' length_error encode --to dot --op "$sum"
run 'solve' 3 '^unknown$' '^$' bad_alloc "$dir/sum.smt2"
run 'encode' 3 '^$' 'sum\.smt2:3:2: error: out of memory$' bad_alloc encode --to smt2 "$dir/sum.smt2"
run 'explain' 3 '^$' 'sum\.smt2:3:2: error: out of memory$' bad_alloc explain "$dir/sum.smt2"
# shellcheck disable=SC2086
run 'explain an operation' 3 '^$' '^error: out of memory$' bad_alloc explain $sum
# shellcheck disable=SC2086
run 'explain an operation' 3 '^$' '^error: planted$' length_error explain $sum
run 'lift' 3 '^$' 'sum\.smt2:3:2: error: out of memory$' bad_alloc lift --check "$dir/sum.smt2" "$dir/sum.cnf" "$dir/answer"
check 'eval: bad_alloc' 3 '^error: out of memory'$'\n''error: an empty line$' '^$' \
  env FAULT=bad_alloc bash -c "{ cat '$dir/line'; echo; } | '$vorn' eval"

# What the theory forgets of arrays and functions, the check of the model sees. Indices are not to be
# the same terms from the first.
array='(declare-const %s (Array (_ BitVec 4) Bool))'
small='(declare-const %s (Array Bool Bool))'
script reads.smt2 "${array/\%s/a}"'(declare-const i (_ BitVec 4))(declare-const j (_ BitVec 4))
(assert (= i j))(assert (distinct (select a i) (select a j)))\n(check-sat)\n'
script writes.smt2 "${array/\%s/a}"'(declare-const i (_ BitVec 4))(declare-const j (_ BitVec 4))
(assert (= i j))(assert (not (select (store a i true) j)))\n(check-sat)\n'
script equals.smt2 "${array/\%s/a}${array/\%s/b}"'(declare-const i (_ BitVec 4))
(assert (= a b))(assert (distinct (select a i) (select b i)))\n(check-sat)\n'
script constants.smt2 "${array/\%s/a}"'(declare-const p Bool)(declare-const q Bool)
(assert (distinct p q))(define-sort A () (Array (_ BitVec 4) Bool))
(assert (= a ((as const A) p)))(assert (= a ((as const A) q)))\n(check-sat)\n'
script functions.smt2 '(declare-fun f (Float16) Bool)(declare-const x Float16)(declare-const y Float16)
(assert (= x y))(assert (distinct (f x) (f y)))\n(check-sat)\n'
script witnesses.smt2 "${small/\%s/a}${small/\%s/b}"'(assert (distinct a b))
(assert (= (select a true) (select b true)))(assert (= (select a false) (select b false)))\n(check-sat)\n'
broken='^internal error: the model found does not satisfy an assertion'
for name in reads writes equals constants functions witnesses; do
  check "$name: without a fault" 0 '^unsat$' '^$' "$vorn" "$dir/$name.smt2"
  run "$name" 4 '^$' "$broken" forget_statements --no-substitution "$dir/$name.smt2"
done
for name in reads writes equals constants; do
  run "$name" 4 '^$' "$broken" forget_conflicts --no-substitution "$dir/$name.smt2"
done

summary
