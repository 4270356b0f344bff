#!/usr/bin/env bash
# What becomes of errors in scripts: where they are printed, what they end, and with which status.
#   script_errors_test.sh VORN
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# Errors are answers, in files and in sessions; only what cannot be read ends a file.
script state.smt2 '(get-model)\n(pop)\n(set-logic QF_FP)\n(set-logic QF_BV)\n(get-unsat-assumptions)
(set-option :produce-assignments false)(get-assignment)\n(get-info :error-behavior)\n(assert false)(check-sat)
(get-value (true))\n(reset-assertions)(check-sat)(get-model)\n'
answers='get-model: there is no model.*"\)
\(error "[^"]*:2:2: error: pop 1: .*"\)
\(error "[^"]*:4:2: error: set-logic: .*"\)
\(error "[^"]*:5:2: error: get-unsat-assumptions: .*"\)
\(error "[^"]*:6:41: error: get-assignment: the option :produce-assignments is false"\)
\(:error-behavior continued-execution\)
unsat
\(error "[^"]*:9:2: error: get-value: there is no model.*"\)
sat
\(
\)$'
check state 1 "^\(error \"$dir/state.smt2:1:2: error: $answers" '^$' "$vorn" "$dir/state.smt2"
check state_in_a_session 1 "^\(error \"<stdin>:1:2: error: $answers" '^$' bash -c "'$vorn' - <'$dir/state.smt2'"
script text.smt2 '(check-sat)\n(assert (or true x))\n(check-sat)\n'
check text 1 $'^sat\n\\(error "'"$dir/text.smt2"$':2:18: error: unknown symbol \'x\'"\\)$' '^$' "$vorn" "$dir/text.smt2"
check text_in_a_session 1 $'^sat\n\\(error "<stdin>:2:18: error: .*"\\)\nsat$' '^$' bash -c "'$vorn' - <'$dir/text.smt2'"
script quotes.smt2 '(set-info "a")\n'
check quotes_are_doubled 1 "^\(error \"$dir/quotes.smt2:1:11: error: expected a keyword, got '\"\"a\"\"'\"\)\$" '^$' "$vorn" "$dir/quotes.smt2"
script unsupported.smt2 '(check-sat)(get-proof)(set-option :odd 1)(check-sat)\n'
check unsupported 0 $'^sat\nunsupported\nunsupported\nsat$' '^$' "$vorn" "$dir/unsupported.smt2"
script datatype.smt2 '(declare-datatype T ((t)))\n(check-sat)\n'
check refused 1 '^\(error "[^"]*:1:2: error: declare-datatype is not supported"\)$' '^$' "$vorn" "$dir/datatype.smt2"

# Named formulas that are checked for cores are refused where they stand, once they are decided; where the
# clauses are left there is no core, and named formulas are among them.
script core.smt2 '(set-option :produce-unsat-cores true)(declare-const x Float16)\n(assert (! (fp.lt x x) :named n))(push)
(assert (! (fp.isNaN (fp.sqrt RNE x)) :named s))\n(check-sat)(pop)(check-sat)(get-unsat-core)\n'
check core_refused 1 '^\(error "[^"]*:3:9: error: fp.sqrt is not supported by this encoder"\)$' '^$' \
  "$vorn" --encoder base "$dir/core.smt2"
check core_refused_in_a_session 1 $'^\\(error "[^"]*:3:9: error: fp.sqrt .*"\\)\nunsat\n\\(n\\)$' '^$' \
  bash -c "'$vorn' --encoder base - <'$dir/core.smt2'"
script traced.smt2 '(set-option :produce-unsat-cores true)(assert (! false :named n))\n(check-sat)(get-unsat-core)(get-unsat-assumptions)\n'
check core_of_clauses 1 $'^unsat\n\\(error "[^"]*:2:13: error: get-unsat-core: a check that leaves .*"\\)\n\\(\\)$' '^$' \
  "$vorn" --cnf "$dir/traced.cnf" --proof "$dir/traced.drat" "$dir/traced.smt2"

# Limits.
script hard.smt2 '(declare-const x Float64)(declare-const y Float64)(declare-const z Float64)(push)
(assert (not (fp.isNaN (fp.mul RNE x (fp.mul RNE y z)))))
(assert (not (fp.eq (fp.mul RNE x (fp.mul RNE y z)) (fp.mul RNE (fp.mul RNE x y) z))))
(check-sat)(get-value (x))(get-model)(pop)(check-sat)\n'
check after_unknown 3 $'^unknown\n\\(error "[^"]*:4:13: error: get-value: .*"\\)\n\\(error "[^"]*:4:28: error: get-model: .*"\\)\nsat$' '^$' \
  "$vorn" --no-local-search --time-limit 0.2 "$dir/hard.smt2"
check after_unknown_in_a_session 3 $'^unknown\n.*\nsat$' '^$' \
  bash -c "'$vorn' --no-local-search --time-limit 0.2 - <'$dir/hard.smt2'"
{ cat "$dir/hard.smt2"; echo '(pop)'; } >"$dir/both.smt2"
check unknown_and_an_error 1 $'^unknown\n.*\nsat\n\\(error ".*:5:2: error: pop 1' '^$' \
  "$vorn" --no-local-search --time-limit 0.2 "$dir/both.smt2"

# Several files: the gravest status, whatever their order.
script sat.smt2 '(check-sat)\n'
limited() { "$vorn" --no-local-search --time-limit 0.2 "$@"; }
check limit_last 3 $'^sat\nunknown' '' limited "$dir/sat.smt2" "$dir/hard.smt2"
check limit_first 3 $'^unknown.*\nsat$' '' limited "$dir/hard.smt2" "$dir/sat.smt2"
check error_after_limit 1 '^unknown.*unknown symbol' '' limited "$dir/hard.smt2" "$dir/text.smt2"
check error_before_limit 1 'unknown symbol.*unknown' '' limited "$dir/text.smt2" "$dir/hard.smt2"
check no_file_and_limit 1 '^unknown' 'none.smt2: error: cannot read' limited "$dir/hard.smt2" "$dir/none.smt2"

# The status that a script states is that of the next check.
script wrong.smt2 '(set-info :status unsat)\n(check-sat)\n(check-sat)(get-info :status)\n'
check status 1 $'^sat\nsat\n\\(:status sat\\)$' "^$dir/wrong.smt2:2:2: warning: the script says unsat, the answer is sat\$" \
  "$vorn" "$dir/wrong.smt2"
check status_in_a_session 1 $'^sat\nsat\n' '^<stdin>:2:2: warning: the script says unsat, the answer is sat$' \
  bash -c "'$vorn' - <'$dir/wrong.smt2'"
script right.smt2 '(get-info :status)(set-info :status sat)(get-info :status)(check-sat)(assert false)
(check-sat)(set-info :status unknown)(check-sat)\n'
check status_right 0 $'^\\(:status unknown\\)\n\\(:status sat\\)\nsat\nunsat\nunsat$' '^$' "$vorn" "$dir/right.smt2"
sed 's/(check-sat)(get-value/(set-info :status sat)&/' "$dir/hard.smt2" >"$dir/stated.smt2"
check status_unknown 3 '^unknown' '^$' limited "$dir/stated.smt2"

# Without a file, standard input is one, if there is something in it.
check redirected 0 '^sat$' '^$' bash -c "'$vorn' <'$dir/sat.smt2'"
check piped 0 '^sat$' '^$' bash -c "sleep 0.2 | cat - '$dir/sat.smt2' | '$vorn' solve --no-rewrite"
check nothing 2 '^$' '^vorn: no file given' "$vorn"
check nothing_piped 2 '^$' '^vorn: no file given' bash -c "true | '$vorn' --no-rewrite"
check traced_input 2 '^$' 'not standard input' bash -c "'$vorn' --cnf '$dir/cnf' <'$dir/sat.smt2'"
if [[ -n $(type -P script) ]]; then
  check terminal 0 'no file given' '' timeout 20 bash -c "command script -qec \"'$vorn'; exit 0\" /dev/null </dev/null"
else
  echo 'SKIPPED: script is not installed'
fi

summary
