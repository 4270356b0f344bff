#!/usr/bin/env bash
# Whoever ends the command while it writes a file, and whenever: the name has the whole file, or what
# was there before.
#   killed_test.sh VORN
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# product BITS PRIME: no two numbers of BITS bits make it but by 1, which takes long to prove.
product() {
  printf '(declare-const x (_ BitVec %s))(declare-const y (_ BitVec %s))
(assert (and (distinct x (_ bv1 %s)) (distinct y (_ bv1 %s))))
(assert (= (bvmul ((_ zero_extend %s) x) ((_ zero_extend %s) y)) (_ bv%s %s)))\n(check-sat)\n' \
    "$1" "$1" "$1" "$1" "$1" "$1" "$2" $((2 * $1))
}
product 8 16381 >"$dir/proved.smt2"
product 32 4611686018427387847 >"$dir/endless.smt2"
# Many clauses that are soon satisfied: no limit of time, which would decide what there is to write.
script large.smt2 '(declare-const x (_ BitVec 120))(declare-const y (_ BitVec 120))
(declare-const z (_ BitVec 120))(assert (bvugt (bvmul x (bvmul y z)) z))(check-sat)\n'
files=$dir/files
mkdir "$files"
contents() { ls -A "$files"; }
temporary() { compgen -G "$files/.vorn-*.tmp"; }

# start COMMAND... in the background, until a temporary file has something in it, or for a while;
# sets $pid.
start() {
  "$@" >"$dir/answer" 2>"$dir/complaint" </dev/null &
  pid=$!
  for ((i = 0; i < 2000; ++i)); do
    [[ ! -s $(temporary) ]] || break
    sleep 0.01
  done
}
# finish SIGNAL: sets $status. What the shell says of the signal is of no interest.
finish() {
  kill "-$1" "$pid"
  wait "$pid" 2>"$dir/null"
  status=$?
}

# Signals in the middle of a file.
for signal in TERM XCPU; do
  start "$vorn" "$dir/endless.smt2" --proof "$files/f"
  finish $signal 2>"$dir/null"
  check "$signal ends it" 0 "^$((128 + $(kill -l $signal)))\$" '^$' echo "$status"
  check "$signal leaves nothing" 0 '^$' '^$' contents
done
start "$vorn" "$dir/endless.smt2" --proof "$files/f"
finish INT
check 'an interrupt ends the check' 0 '^3$' '^$' echo "$status"
check 'the answer is unknown' 0 '^unknown$' '^$' cat "$dir/answer"
check 'the steps so far are a file' 0 '^f$' '^$' contents
check 'of whole lines' 0 '^ 0$' '^$' bash -c "tail -c 3 '$files/f' | tr -d '\n'"
rm "$files/f"
start "$vorn" "$dir/endless.smt2" --proof "$files/f"
finish KILL 2>"$dir/null"
check 'killed in the middle: no file' 1 '' '' test -e "$files/f"
check 'killed in the middle: a temporary one' 0 '^\.vorn-[0-9a-v]{12}\.tmp$' '^$' contents
rm "$(temporary)"

# At any moment.
kills=16
torn=0
kill_often() { # NAME COMMAND... that is to be followed by the name of a file
  local name=$1 began took
  shift
  rm -f "$dir/whole"
  began=$(date +%s%N)
  "$@" "$dir/whole" >"$dir/answer" 2>&1 </dev/null
  took=$(($(date +%s%N) - began))
  check "$name: whole" 0 '^$' '^$' test -s "$dir/whole"
  for ((i = 0; i < kills; ++i)); do
    rm -f "$files/f"
    ((i % 2 == 0)) || echo old >"$files/f"
    "$@" "$files/f" >"$dir/answer" 2>&1 </dev/null &
    pid=$!
    sleep "$(awk -v t="$took" -v r="$RANDOM" 'BEGIN { print 1.1 * t * r / 32768 / 1e9 }')"
    { finish KILL; } 2>"$dir/null"
    if [[ -e $files/f ]] && ! cmp -s "$files/f" "$dir/whole" && [[ $(head -c 10 "$files/f") != old ]]; then
      torn=$((torn + 1))
      echo "FAILED $name: a part of the file has its name"
    fi
    rm -f "$files"/.vorn-*.tmp
  done
}
kill_often proof "$vorn" "$dir/proved.smt2" --proof
kill_often clauses "$vorn" "$dir/large.smt2" --cnf
kill_often encode "$vorn" encode "$dir/large.smt2" --to dimacs -o
check 'no file is torn' 0 '^0$' '^$' echo "$torn"

summary
