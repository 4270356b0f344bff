#!/usr/bin/env bash
# Output that cannot be written is an error, whoever writes it and wherever it goes; files have their
# name only once they are complete, and no input is overwritten.
#   output_test.sh VORN
set -u
vorn=$1
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

script chain.smt2 '(declare-const x Float32)(declare-const y Float32)(declare-const z Float32)
(assert (fp.lt x y))(assert (fp.lt y z))(assert (fp.lt z x))\n(check-sat)\n'
script sat.smt2 '(declare-const x Float32)\n(assert (fp.isNaN x))\n(check-sat)\n'
chain=$dir/chain.smt2
"$vorn" encode --to dimacs "$dir/sat.smt2" -o "$dir/sat.cnf"
script unsat.sol 's UNSATISFIABLE\n'
echo 'neg 8 23 0' >"$dir/line"

# Standard output.
full='^vorn: error: cannot write standard output: No space left on device$'
closed='^vorn: error: cannot write standard output: Bad file descriptor$'
large='^vorn: error: cannot write standard output: File too large$'
fails_to_print() { # NAME COMMAND
  check "$1: full disk" 1 '^$' "$full" bash -c "$2 >/dev/full"
  check "$1: closed" 1 '^$' "$closed" bash -c "$2 >&-"
  check "$1: limit" 1 '^$' "$large" bash -c "ulimit -f 1; head -c 1024 /dev/zero >'$dir/used'; $2 >>'$dir/used'"
}
fails_to_print file "'$vorn' '$chain'"
fails_to_print session "'$vorn' - <'$chain'"
fails_to_print 'no file' "'$vorn' <'$chain'"
fails_to_print eval "'$vorn' eval <'$dir/line'"
fails_to_print encode "'$vorn' encode '$chain' --to smt2"
fails_to_print explain "'$vorn' explain neg 8 23 0"
fails_to_print 'explain a script' "'$vorn' explain '$dir/sat.smt2'"
fails_to_print lift "'$vorn' lift '$dir/sat.cnf' '$dir/unsat.sol'"
fails_to_print help "'$vorn' --help"
fails_to_print 'help of a subcommand' "'$vorn' encode --help"
fails_to_print version "'$vorn' --version"
script wrong.smt2 '(assert x)\n'
fails_to_print 'an error' "'$vorn' '$dir/wrong.smt2'"
# Nobody is computed for who is not there.
check 'a session stops' 1 '^$' "$full" timeout 60 bash -c "yes '(check-sat)' | '$vorn' - >/dev/full"
check 'eval stops' 1 '^$' "$full" timeout 60 bash -c "yes 'neg 8 23 0' | '$vorn' eval >/dev/full"
check 'files are left out' 1 '^$' "$full" bash -c "'$vorn' '$chain' '$dir/none.smt2' >/dev/full"
# A reader that has left ends the command by its signal, unless that is ignored.
ended() { # COMMAND: its status, with nobody at the other end of the pipe
  bash -c "set -o pipefail; { sleep 0.2; $1; } | true; echo \${PIPESTATUS[0]}"
}
if (($((16#$(awk '/^SigIgn/ { print $2 }' /proc/self/status))) & 1 << 12)); then
  echo 'SKIPPED: SIGPIPE is ignored here'
else
  check 'broken pipe' 0 '^141$' '^$' ended "exec '$vorn' '$chain'"
fi
check 'broken pipe, ignored' 0 '^1$' '^vorn: error: cannot write standard output: Broken pipe$' \
  ended "trap '' PIPE; exec '$vorn' '$chain'"

# Files.
mkdir "$dir/files"
files=$dir/files
contents() { ls -A "$files"; }
fails_to_write() { # NAME WHAT COMMAND, which is to be followed by a file name
  check "$1: full disk" 1 '^$' "^vorn: error: cannot write the $2 to /dev/full: No space left on device\$" \
    bash -c "$3 /dev/full"
  check "$1: no folder" 1 '^$' "^vorn: error: cannot write the $2 to $dir/none/f: No such file or directory\$" \
    bash -c "$3 '$dir/none/f'"
  check "$1: a folder" 1 '^$' "^vorn: error: cannot write the $2 to $files: Is a directory\$" bash -c "$3 '$files'"
  check "$1: limit" 1 '^$' "^vorn: error: cannot write the $2 to $files/f: File too large\$" \
    bash -c "ulimit -f 1; $3 '$files/f'"
  check "$1: nothing is left" 0 '^$' '^$' contents
  echo old >"$files/f"
  check "$1: limit, over a file" 1 '^$' "^vorn: error: cannot write the $2 to $files/f: File too large\$" \
    bash -c "ulimit -f 1; $3 '$files/f'"
  check "$1: the file has stayed" 0 '^old$' '^$' cat "$files/f"
  check "$1: nothing beside it" 0 '^f$' '^$' contents
  rm "$files/f"
}
fails_to_write proof proof "'$vorn' '$chain' --proof"
fails_to_write clauses clauses "'$vorn' '$chain' --cnf"
fails_to_write 'both, the proof' proof "'$vorn' '$chain' --cnf /dev/null --proof"
for format in dimacs aiger smt2; do
  fails_to_write "encode to $format" formula "'$vorn' encode '$chain' --to $format -o"
done
fails_to_write 'encode an operation' formula "'$vorn' encode --op 'add rne 8 23' --to dot -o"
if [[ $EUID -ne 0 ]]; then
  mkdir "$dir/closed"
  chmod 555 "$dir/closed"
  check 'no permission' 1 '^$' 'cannot write the proof to .*: Permission denied$' "$vorn" "$chain" --proof "$dir/closed/f"
  echo old >"$files/f"
  chmod 444 "$files/f"
  check 'a file that is protected' 1 '^$' 'cannot write the proof to .*: Permission denied$' "$vorn" "$chain" --proof "$files/f"
  rm -f "$files/f"
elif mkdir "$dir/small" && mount -t tmpfs -o size=8k vorn_test "$dir/small" 2>"$dir/err"; then
  check 'small disk' 1 '^$' 'cannot write the proof to .*: No space left on device$' "$vorn" "$chain" --proof "$dir/small/f"
  check 'small disk, encode' 1 '^$' 'cannot write the formula to .*: No space left on device$' \
    "$vorn" encode "$chain" --to dimacs -o "$dir/small/f"
  check 'small disk is empty again' 0 '^$' '^$' ls -A "$dir/small"
  umount "$dir/small"
fi

# Targets of any kind.
"$vorn" "$chain" --proof "$files/proof" --cnf "$files/cnf" >"$dir/answer"
check 'the files alone' 0 $'^cnf\nproof$' '^$' contents
check 'proof of an answer' 0 '^0$' '^$' tail -n 1 "$files/proof"
check 'permissions' 0 '^640$' '^$' bash -c "umask 027; '$vorn' '$chain' --proof '$files/p' >'$dir/answer'; stat -c %a '$files/p'"
check 'permissions stay' 0 '^600$' '^$' bash -c "chmod 600 '$files/p'; '$vorn' '$chain' --proof '$files/p' >'$dir/answer'; stat -c %a '$files/p'"
ln -s p "$files/link"
check 'a link' 0 '^unsat$' '^$' "$vorn" "$chain" --proof "$files/link"
check 'a link leads to the proof' 0 '^$' '^$' bash -c "[[ -L '$files/link' ]] && cmp '$files/p' '$files/proof'"
check 'no file' 0 '^unsat$' '^$' "$vorn" "$chain" --proof /dev/null
check 'standard output, a pipe' 0 '^0$' '^$' bash -c "'$vorn' '$chain' --proof /dev/stdout | tail -n 2 | head -n 1"
check 'standard output, a file' 0 '^unsat$' '^$' bash -c "'$vorn' '$chain' --proof /dev/stdout >'$dir/mixed'; tail -n 1 '$dir/mixed'"
check 'standard output holds the proof' 0 '^$' '^$' bash -c "head -n -1 '$dir/mixed' | cmp - '$files/proof'"
mkfifo "$dir/pipe"
check 'a named pipe' 0 '^0.unsat$' '^$' bash -c "{ tail -n 1 '$dir/pipe'; } & '$vorn' '$chain' --proof '$dir/pipe' >'$dir/answer'; wait; cat '$dir/answer'"
for n in 0 1 2; do
  rm "$files/p"
  bash -c "'$vorn' '$chain' --proof '$files/p' $n>&-" >"$dir/answer" 2>&1 </dev/null
  check "descriptor $n closed: the proof is just that" 0 '^$' '^$' cmp "$files/p" "$files/proof"
done
check 'input closed' 2 '^$' 'no file given' bash -c "'$vorn' <&-"
check 'a session on closed input' 0 '^$' '^$' bash -c "'$vorn' - <&-"
check 'a proof after sat' 0 '^sat$' '^$' "$vorn" "$dir/sat.smt2" --proof "$files/sat"
check 'is there' 0 '^$' '^$' test -e "$files/sat"

# Input is not overwritten.
cp "$chain" "$dir/copy"
ln "$chain" "$dir/hard"
ln -s chain.smt2 "$dir/soft"
for other in "$chain" "$dir/./chain.smt2" "$dir/hard" "$dir/soft"; do
  check "proof over $other" 2 '^$' "--proof would overwrite the script $chain"$'\n' "$vorn" --proof "$other" "$chain"
  check "clauses over $other" 2 '^$' "--cnf would overwrite the script $chain"$'\n' "$vorn" solve --cnf "$other" "$chain"
  check "encode over $other" 2 '^$' "--out would overwrite the script $chain"$'\n' "$vorn" encode --to smt2 "$chain" -o "$other"
  check "encode standard input over $other" 2 '^$' '--out would overwrite the script <stdin>' \
    bash -c "'$vorn' encode --to smt2 - -o '$other' <'$chain'"
  check "one file twice, $other" 2 '^$' 'name the same file' "$vorn" --cnf "$dir/chain.smt2" --proof "$other" "$dir/copy"
done
check 'one new file twice' 2 '^$' 'name the same file' "$vorn" --cnf "$dir/new" --proof "$dir/./new" "$chain"
check 'the script has stayed' 0 '^$' '^$' cmp "$chain" "$dir/copy"

summary
