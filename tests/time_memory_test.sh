#!/usr/bin/env bash
# Time and memory that end: the answer is unknown, never a wrong one or a dead process, and the
# session goes on.
#   time_memory_test.sh VORN MEGABYTES
# MEGABYTES bound the address space of runs that need more; 0 leaves out what counts memory, for
# builds with sanitizers, which take several times as much.
set -u
vorn=$1
megabytes=$2
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# No test looks at a clock, but a command that hangs is to fail: `soon` is for what has a limit of
# a second, `late` for what has to fill memory before it ends.
soon() { timeout 60 "$vorn" "$@"; }
late() { timeout 900 "$vorn" --no-local-search "$@"; }
from() { local file=$1; shift; "$@" - <"$file"; }
line=$'\n'

# Circuits that take long to build or to search ------------------------------------------------

# Put off, they need not be built for an answer.
circuits() { soon --no-abstraction "$@"; }

# chain SUFFIX OPERATION N: N applications of the operation, one within the other.
chain() {
  awk -v open="($2 " -v close_with="$1)" -v n="$3" 'BEGIN {
    print "(declare-const x (_ FloatingPoint 15 113))(declare-const y (_ FloatingPoint 15 113))"
    printf "(assert (fp.lt y "
    for (i = 0; i < n; i++) printf "%s", open
    printf "x"
    for (i = 0; i < n; i++) printf "%s", close_with
    print "))\n(check-sat)(get-info :reason-unknown)" }'
}
chain '' 'fp.sqrt RNE' 200 >"$dir/sqrt.smt2"
chain ' y' 'fp.div RNE' 200 >"$dir/div.smt2"
chain ' y' fp.rem 20 >"$dir/rem.smt2"
script farrem.smt2 '(declare-const x (_ FloatingPoint 18 113))(declare-const y (_ FloatingPoint 18 113))
(assert (fp.lt y (fp.rem x y)))\n(check-sat)(get-info :reason-unknown)\n'
timeout_answer="^unknown$line\\(:reason-unknown \"timeout\"\\)\$"
for name in sqrt div rem farrem; do
  check "$name" 3 "$timeout_answer" '^$' circuits --time-limit 1 "$dir/$name.smt2"
  check "$name by circuits" 3 "$timeout_answer" '^$' circuits --no-local-search --time-limit 1 "$dir/$name.smt2"
  check "$name in a session" 3 "$timeout_answer" '^$' from "$dir/$name.smt2" circuits --time-limit 1
done

# Reading that takes long ----------------------------------------------------------------------

# doublings N: functions of which each applies the one before twice, the first being a sum.
doublings() {
  echo '(declare-const y Float32)(define-fun f0 ((a Float32)) Float32 (fp.add RNE a a))'
  for ((i = 1; i <= $1; i++)); do
    echo "(define-fun f$i ((a Float32)) Float32 (f$((i - 1)) (f$((i - 1)) a)))"
  done
}
{ doublings 31; echo '(check-sat)(assert (fp.lt y (f31 y)))(push)(check-sat)(check-sat-assuming (true))(pop)(echo "no")(exit)(check-sat)'; } >"$dir/double.smt2"
# A session has no remaining checks: the command has no effect, and its answer says so. What comes
# after it is decided without it.
{
  doublings 12
  printf '(assert (fp.lt y '
  for ((i = 0; i < 100000; i++)); do printf '(f12 '; done
  printf y
  for ((i = 0; i < 100000; i++)); do printf ')'; done
  echo '))(check-sat)(assert (fp.eq (fp.add RNE y y) ((_ to_fp 8 24) RNE 3.0)))(check-sat)(get-value (y))'
} >"$dir/session.smt2"
goes_on="sat${line}sat$line\\(\\(y \\(fp #b0 #b01111111 #b10000000000000000000000\\)\\)\\)\$"
all_unknown="^unknown${line}unknown${line}unknown\$"
check doublings_and_time 3 "$all_unknown" "double.smt2:[0-9]+:[0-9]+: error: the limit of time or memory was reached\$" \
  soon --time-limit 1 "$dir/double.smt2"
check doublings_and_time_in_a_session 3 "^\\(error \"<stdin>:14:[0-9]+: error: the limit of time or memory was reached\"\\)$line$goes_on" '^$' \
  from "$dir/session.smt2" soon --time-limit 1
script sat.smt2 '(check-sat)\n'
check one_of_several_files 3 "^sat$line${all_unknown#^}" 'double.smt2:' soon --time-limit 1 "$dir/sat.smt2" "$dir/double.smt2"
check one_of_several_files_first 3 "${all_unknown%\$}${line}sat\$" 'double.smt2:' soon --time-limit 1 "$dir/double.smt2" "$dir/sat.smt2"

# Usage ----------------------------------------------------------------------------------------

script small.smt2 '(declare-const x Float32)(declare-const r RoundingMode)
(assert (fp.lt x (fp.mul r x x)))(check-sat)(get-value (x r))
(push)(assert (fp.isZero x))(check-sat)(pop)(check-sat-assuming ((fp.isNegative x)))(get-model)\n'
expected=$("$vorn" "$dir/small.smt2")
check there_are_answers 0 "^sat$line.*${line}unsat${line}sat$line\\(" '^$' echo "$expected"
unchanged() { # OPTION...
  [[ "$("$vorn" "$@" "$dir/small.smt2")" == "$expected" ]]
}
for option in --time-limit --memory-limit; do
  for value in 0 -0 -1 nan -inf; do
    check "$option $value" 2 '^$' "$option: must be more than 0, not $value" "$vorn" "$option" "$value" "$dir/sat.smt2"
  done
  for value in word 1x ''; do
    check "$option '$value'" 2 '^$' "$option: '$value' is not a number" "$vorn" "$option" "$value" "$dir/sat.smt2"
  done
  for value in 1e5 1e10 1e300 inf; do
    check "$option $value" 0 '' '^$' unchanged "$option" "$value"
  done
done
# What is seen before the clock is looked at may be answered.
check least_time 3 "^unknown$line.*(unknown|unsat)${line}unknown" '^$' soon --time-limit 1e-300 "$dir/small.smt2"

if [[ $megabytes -eq 0 ]]; then
  summary
  exit
fi

# Memory ---------------------------------------------------------------------------------------

# sums N: what its circuits need grows with N, about a megabyte for each.
sums() {
  awk -v n="$1" 'BEGIN {
    print "(declare-const y Float32)(push)"
    for (i = 0; i <= n; i++) printf "(declare-const x%d Float64)\n", i
    for (i = 0; i < n; i++) printf "(assert (fp.lt x%d (fp.add RNE x%d x%d)))\n", i, i, i + 1
    print "(check-sat)(get-info :reason-unknown)(pop)"
    print "(assert (fp.eq (fp.add RNE y y) ((_ to_fp 8 24) RNE 3.0)))(check-sat)(get-value (y))"
    print "(push)(assert (fp.isNegative y))(check-sat)(pop)(check-sat-assuming ((fp.isPositive y)))" }'
}
memout="^unknown$line\\(:reason-unknown \"memout\"\\)$line${goes_on#sat"$line"}"
memout="${memout%\$}${line}unsat${line}sat\$"
sums 1000 >"$dir/sums.smt2"
sums 4000 >"$dir/moresums.smt2"
check memory_100 3 "$memout" '^$' late --memory-limit 100 "$dir/sums.smt2"
check memory_500 3 "$memout" '^$' late --memory-limit 500 "$dir/sums.smt2"
check memory_2000 3 "$memout" '^$' late --memory-limit 2000 "$dir/moresums.smt2"
check memory_of_a_session 3 "$memout" '^$' from "$dir/sums.smt2" late --memory-limit 100
check memory_of_several_files 3 "${memout%\$}${line}sat$line$memout" '^$' \
  late --memory-limit 100 "$dir/sums.smt2" "$dir/sat.smt2" "$dir/sums.smt2"

check doublings_and_memory 3 "$all_unknown" "double.smt2:[0-9]+:[0-9]+: error: (out of memory|the limit of time or memory was reached)\$" \
  soon --memory-limit 50 "$dir/double.smt2"
check doublings_and_memory_in_a_session 3 "^\\(error \"<stdin>:14:[0-9]+: error: [a-z ]+\"\\)$line$goes_on" '^$' \
  from "$dir/session.smt2" soon --memory-limit 50
# What has no room for the script has no answers, and says why.
for least in 1e-300 0.001 0.1; do
  check "memory $least" 3 '^$' 'sums.smt2: error: out of memory$' soon --memory-limit "$least" "$dir/sums.smt2"
done

# The system's bound in place of the command's.
bounded() { (ulimit -v $((megabytes * 1024)); "$@"); }
check address_space 3 "$memout" '^$' bounded late "$dir/sums.smt2"
check address_space_of_a_session 3 "$memout" '^$' bounded from "$dir/sums.smt2" late
check address_space_and_doublings 3 "$all_unknown" 'double.smt2:[0-9]+:[0-9]+: error: out of memory$' \
  bounded soon "$dir/double.smt2"

summary
