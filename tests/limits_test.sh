#!/usr/bin/env bash
# Input made to break the command: it answers, or says what is wrong, in bounded memory and time.
#   limits_test.sh VORN MEGABYTES
# MEGABYTES bound the address space of each run; 0 is no bound, for builds with sanitizers, which
# take all of it.
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"
[[ $2 -eq 0 ]] || ulimit -v $(($2 * 1024))

# repeat N TEXT
repeat() { awk -v n="$1" -v text="$2" 'BEGIN { for (i = 0; i < n; i++) printf "%s", text }'; }
million=1000000

{ echo '(declare-const x Bool)(assert '; repeat $million '(not '; echo x; repeat $million ')'; echo ')(check-sat)'; } >"$dir/deep.smt2"
check million_negations 0 '^sat$' '^$' "$vorn" "$dir/deep.smt2"
{ echo '(declare-const x (_ BitVec 1))(assert (= x '; repeat $million '(let ((x (bvnot x))) '; echo x; repeat $million ')'; echo '))(check-sat)'; } >"$dir/let.smt2"
check million_lets 0 '^sat$' '^$' "$vorn" "$dir/let.smt2"
repeat $million '((' >"$dir/open.smt2"
check million_open_parentheses 1 '^\(error ".*open.smt2:1:2: error: ' '^$' "$vorn" "$dir/open.smt2"
repeat $million '(assert (' >"$dir/openterms.smt2"
check million_open_terms 1 '^\(error ".*openterms.smt2:1:11: error: ' '^$' "$vorn" "$dir/openterms.smt2"
repeat $million ')' >"$dir/close.smt2"
check million_closing_parentheses 1 '^\(error ".*close.smt2:1:1: error: ' '^$' "$vorn" "$dir/close.smt2"
check million_errors_on_standard_input 1 '' '^$' bash -c "head -c 20000 '$dir/close.smt2' | '$vorn' -"

symbol=$(repeat 1048576 a)
echo "(declare-const $symbol Bool)(assert (not $symbol))(check-sat)(get-value ($symbol))" >"$dir/symbol.smt2"
check megabyte_symbol 0 '^sat.*false' '^$' "$vorn" "$dir/symbol.smt2"
{ echo -n '(declare-const x Float64)(assert (= x ((_ to_fp 11 53) RNE 1'; repeat $million 0; echo '.5)))(check-sat)(get-value (x))'; } >"$dir/decimal.smt2"
check million_digits 0 '^sat.*\+oo 11 53' '^$' "$vorn" "$dir/decimal.smt2"
{ echo -n '(echo "'; repeat $million '""'; echo '")'; } >"$dir/string.smt2"
check megabyte_string 0 '^"' '^$' "$vorn" "$dir/string.smt2"

script push.smt2 '(push 1000000000)\n'
check billion_levels 1 '^\(error ".*push.smt2:1:2: error: push 1000000000: no more than 1048576 levels' '^$' "$vorn" "$dir/push.smt2"
script levels.smt2 '(push 1048576)(declare-const x Bool)(assert x)(check-sat)(pop 1048576)(check-sat)\n'
check million_levels 0 $'^sat\nsat$' '^$' "$vorn" "$dir/levels.smt2"
script pushes.smt2 '(push 1048576)(push)\n'
check one_level_too_many 1 '^\(error ".*pushes.smt2:1:16: error: push 1: no more' '^$' "$vorn" "$dir/pushes.smt2"
script numeral.smt2 '(push 99999999999999999999999999)\n'
check numeral_too_large 1 '^\(error ".*numeral.smt2:1:7: error: .*too large' '^$' "$vorn" "$dir/numeral.smt2"

script wide.smt2 '(declare-const x (_ BitVec 1048576))(declare-const y (_ BitVec 1048576))
(assert (= x (bvnot y)))(assert (= ((_ extract 7 0) y) #x5a))(check-sat)(get-value (((_ extract 7 0) x)))\n'
check width_two_to_the_twenty 0 $'^sat\n.*#xa5' '^$' "$vorn" "$dir/wide.smt2"
script wider.smt2 '(declare-const x (_ BitVec 1048577))\n'
check width_beyond 1 '^\(error ".*wider.smt2:1:[0-9]+: error: .*1048577' '^$' "$vorn" "$dir/wider.smt2"
script widefloat.smt2 '(declare-const x (_ FloatingPoint 500000 500000))(assert (fp.isInfinite (fp.neg x)))(check-sat)\n'
check float_of_a_million_bits 0 '^sat$' '^$' "$vorn" "$dir/widefloat.smt2"
script concat.smt2 '(declare-const x (_ BitVec 1048576))(assert (= (concat x x) (concat x x)))\n'
check concatenation_too_wide 1 '^\(error ".*concat.smt2:1:[0-9]+: error: .*2097152' '^$' "$vorn" "$dir/concat.smt2"
script integer.smt2 '(declare-const x Float64)(declare-const r RoundingMode)
(assert (= ((_ fp.to_ubv 100000) r x) (_ bv5 100000)))(check-sat)\n'
check integer_of_many_bits 0 '^sat$' '^$' "$vorn" "$dir/integer.smt2"
for operation in bvmul bvudiv bvsrem; do
  script huge.smt2 "(declare-const x (_ BitVec 1048576))(declare-const y (_ BitVec 1048576))
(assert (= ($operation x y) (bvnot x)))(check-sat)(get-info :reason-unknown)\n"
  check "$operation of a million bits" 3 $'^unknown\n\\(:reason-unknown "timeout"\\)$' '^$' \
    "$vorn" --time-limit 1 "$dir/huge.smt2"
done
script sqrt.smt2 '(declare-const x (_ FloatingPoint 15 20000))(assert (fp.lt x (fp.sqrt RNE x)))(check-sat)\n'
check square_root_of_many_bits 3 '^unknown$' '^$' \
  "$vorn" --no-abstraction --time-limit 1 "$dir/sqrt.smt2"
echo 'rem 60 3 7ffffffffffffffe 0000000000000003' >"$dir/line"
check remainder_of_far_exponents 0 '^[0-9a-f]{16}$' '^$' bash -c "'$vorn' eval <'$dir/line'"

summary
