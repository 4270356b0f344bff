#!/usr/bin/env bash
# The comparison of solvers, with stubs in place of all of them.
#   compare_test.sh COMPARE
# A script has, for each solver, a comment "; NAME: COMMAND" with what the stub of that name does.
# Exits with 77 where there is no Python.
set -u
compare=$(realpath "$1")
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

# The interpreter itself: what is on PATH may be a script that needs more of it than the tests leave.
if ! python=$(python3 -c 'import sys; print(sys.executable)'); then
  echo "SKIPPED: python3 is not installed"
  exit 77
fi
gnuplot=$(command -v gnuplot) || gnuplot=

# Stubs write down their turns. No solver of this machine may be found, so PATH has stubs only.
mkdir "$dir/vorn-only" "$dir/with-z3" "$dir/s"
cat >"$dir/stub" <<END
#!$BASH
script=\${*: -1}
name=\${0##*/}
[[ "\$*" == *--encoder\ base* ]] && name=base
echo "\$name \${script##*/}" >>"$dir/turns"
while read -r line; do
  [[ \$line == "; \$name: "* ]] && eval "\${line#*: }"
done <"\$script"
exit 0
END
chmod +x "$dir/stub"
for stub in vorn-only/vorn with-z3/vorn with-z3/z3; do
  cp "$dir/stub" "$dir/$stub"
done

run() { # FOLDER-OF-SOLVERS ARGUMENT...
  local solvers=$1
  shift
  : >"$dir/turns"
  (cd "$dir" && env PATH="$dir/$solvers" "$python" "$compare" --vorn "$dir/$solvers/vorn" "$@")
}
# The files that the last run left, compared as check compares output.
file_has() { check "$1" 0 "$3" '^$' cat "$dir/$2"; }
ask() { script "s/$1" "$2\n(check-sat)\n"; }

# Without any other solver, and without vorn.
ask both.smt2 '; vorn: echo sat\n; z3: echo sat'
ask unsat.smt2 '; vorn: echo unsat\n; z3: echo unsat\n(set-info :status unsat)'
check alone 0 $'2 scripts, 60 s each, best of 1; solved by all: 2\n.*\nvorn +2 +1 +1 +0 +0 +0 +0 .*\n\ndisagreements: 0$' '^$' run vorn-only s
cp "$dir/out" "$dir/table"
check no_ratios_alone 1 '^$' '^$' grep 'time of vorn' "$dir/table"
check no_vorn 2 '^$' 'none: no such program' run vorn-only s --vorn "$dir/none"

# Agreement: counts, answers and times, each in turn.
check agreement 0 $'\nvorn +2 +1 +1 .*\nz3 +2 +1 +1 .*\ntime of vorn by +common +median +worst +script\nz3 +2 +[0-9.]+ +[0-9.]+ +s/(both|unsat).smt2\n\ndisagreements: 0$' \
  '^$' run with-z3 s --csv results.csv
cp "$dir/out" "$dir/table"
file_has csv results.csv $'^script,solver,answer,seconds,max_rss_kb\ns/both.smt2,vorn,sat,[0-9]+\.[0-9]{6},[0-9]+\ns/both.smt2,z3,sat,[0-9.]+,[0-9]+\ns/unsat.smt2,vorn,unsat,[0-9.]+,[0-9]+\ns/unsat.smt2,z3,unsat,[0-9.]+,[0-9]+$'
file_has in_turn turns $'^vorn both.smt2\nz3 both.smt2\nvorn unsat.smt2\nz3 unsat.smt2$'
# Of two scripts the median is the mean. Times in the file are rounded, so either may be the worst of a tie.
# shellcheck disable=SC2016 # fields of awk
check ratios 0 '^right$' '^$' awk '
  FNR == NR { split($0, cell, ","); time[cell[1], cell[2]] = cell[4]; next }
  function near(a, b) { return a - b < 0.01 + b / 100 && b - a < 0.01 + b / 100 }
  /^vorn / { right = near($(NF - 1), time["s/both.smt2", "vorn"] + time["s/unsat.smt2", "vorn"]) }
  /^z3 / && NF == 5 {
    a = time["s/both.smt2", "vorn"] / time["s/both.smt2", "z3"]
    b = time["s/unsat.smt2", "vorn"] / time["s/unsat.smt2", "z3"]
    worst = a > b ? "s/both.smt2" : "s/unsat.smt2"
    is_tie = a < 1.01 * b && b < 1.01 * a
    right = right && near($3, (a + b) / 2) && near($4, a > b ? a : b) && (is_tie || $5 == worst)
    print right ? "right" : "wrong: " $0 ", after " a " and " b
  }' "$dir/results.csv" "$dir/table"

# Disagreement: of solvers, with the script, with a list, and at one of several checks.
mkdir "$dir/d"
script d/solvers.smt2 '; vorn: echo sat\n; z3: echo unsat\n(check-sat)\n'
check disagreement 1 $'\ndisagreements: 1\n  d/solvers.smt2: sat: vorn; unsat: z3$' '^$' run with-z3 d
script d/solvers.smt2 '; vorn: echo sat\n; z3: echo sat; kill -SEGV $$\n(set-info :status unsat)\n(check-sat)\n'
check disagreement_with_status 1 $'\n  d/solvers.smt2: sat: vorn, z3; unsat: its status$' '^$' run with-z3 d
script d/solvers.smt2 '; vorn: echo sat\n; (set-info :status unsat)\n(set-info :source |(set-info :status unsat)|)\n(check-sat)\n'
check quoted_status 0 'disagreements: 0' '^$' run vorn-only d
script d/solvers.smt2 '; vorn: echo sat; echo unsat\n(set-info :status sat)\n(check-sat)\n(check-sat)\n'
check status_is_of_one_check 0 'disagreements: 0' '^$' run vorn-only d
script d/solvers.smt2 '; vorn: echo sat\n(check-sat)\n'
printf 'd/solvers.smt2\tunsat\nelsewhere.smt2\tsat\n' >"$dir/expected.tsv"
check disagreement_with_list 1 $'\n  d/solvers.smt2: sat: vorn; unsat: expected$' '^$' run vorn-only d --expected expected.tsv
printf 'd/solvers.smt2\tunknown\n' >"$dir/expected.tsv"
check unknown_expected 0 'disagreements: 0' '^$' run vorn-only d --expected expected.tsv
script d/solvers.smt2 '; vorn: echo sat; echo unsat; echo sat\n; z3: echo sat; echo unknown; echo unsat\n(check-sat)\n(check-sat)\n(check-sat-assuming (x))\n(exit)\n(check-sat)\n'
check disagreement_later 1 $'solved +sat +unsat +mixed.*\nvorn +1 +0 +0 +1 +0 .*\nz3 +0 +0 +0 +0 +1 .*\n  d/solvers.smt2, check 3: sat: vorn; unsat: z3$' '^$' run with-z3 d

# What is not an answer. The processes that a solver leaves behind end with it, killed or not.
sleep=$(command -v sleep)
mkdir "$dir/f"
script f/a-slow.smt2 "; vorn: '$sleep' 600 & echo \$! >$dir/pids; echo sat; wait\n(check-sat)\n(check-sat)\n"
script f/b-crash.smt2 '; vorn: echo unknown; kill -SEGV $$\n(check-sat)\n'
script f/c-error.smt2 '; vorn: echo sat; echo "(error \\"not known\\")"\n(check-sat)\n'
script f/d-status.smt2 '; vorn: echo unsat; echo "out of luck" >&2; exit 4\n(check-sat)\n'
script f/e-silent.smt2 "; vorn: '$sleep' 600 & echo \$! >>$dir/pids\n(check-sat)\n"
script f/f-unknown.smt2 '; vorn: echo unknown; exit 3\n(check-sat)\n'
script f/g-nothing.smt2 '; vorn: echo sat\n(echo "(check-sat)")\n'
check failures 0 $'^6 scripts, 2 s each.*\nvorn +0 +0 +0 +0 +1 +1 +4 +[2-9][.0-9]+ +0\.00\n\ndisagreements: 0$' \
  $'^left out, since it checks nothing: f/g-nothing.smt2\n.* s  vorn: timeout: f/a-slow.smt2\n.* s  vorn: error \\(exit status -11\\): f/b-crash.smt2\n.*\\(exit status 0: \\(error "not known"\\)\\): f/c-error.smt2\n.*\\(exit status 4: out of luck\\): f/d-status.smt2\n.*\\(exit status 0\\): f/e-silent.smt2\n.* s  vorn: unknown: f/f-unknown.smt2$' \
  run vorn-only f --limit 2 --verbose --csv failures.csv
# They may still be there as long as nobody has reaped them.
check groups_are_killed 0 '^(Z|gone) (Z|gone)$' '^$' bash -c "mapfile -t pids <'$dir/pids'
  state() { ps -o state= -p \"\$1\" || echo gone; }; echo \"\$(state \${pids[0]}) \$(state \${pids[1]})\""
file_has failures_csv failures.csv $'\nf/a-slow.smt2,vorn,timeout,[2-9][.0-9]+,[0-9]+\nf/b-crash.smt2,vorn,error,.*\nf/f-unknown.smt2,vorn,unknown,[0-9.]+,[0-9]+$'

# Configurations, repetition, memory.
# vorn solves it in its second run of three only.
ask both.smt2 "; vorn: mapfile -t turns <$dir/turns; ((\${#turns[@]} == 3)) && echo sat || echo unknown\n; base: echo sat\n; mine: echo sat"
check best_of_runs 0 $'best of 3; solved by all: 1\n.*\nvorn +1 +1 .*\nbase +1 +1 .*\nbase +1 +[0-9]' '^$' \
  run vorn-only s/both.smt2 --solver 'base=vorn --encoder base' --runs 3
file_has runs_in_turn turns $'^vorn both.smt2\nbase both.smt2\nvorn both.smt2\nbase both.smt2\nvorn both.smt2\nbase both.smt2$'
mkdir "$dir/mine"
cp "$dir/stub" "$dir/mine/mine"
check configuration_of_a_given_vorn 0 $'\nvorn +1 +1 .*\nbase +1 +1 ' '^$' \
  run nowhere s/both.smt2 --vorn "$dir/mine/mine" --solver 'base=vorn --encoder base'
# shellcheck disable=SC2016 # the stub's variables
script s/memory.smt2 '; vorn: [[ $(ulimit -v) == 524288 ]] && echo sat || echo unsat\n(check-sat)\n'
check memory 0 $'^1 scripts, 60 s, 512 MB each.*\nvorn +1 +1 +0 ' '^$' run vorn-only s/memory.smt2 --memory 512

# Usage.
check help 0 'usage: .*--vorn.*--solver.*--limit.*--memory.*--runs.*--csv.*--plot.*--expected.*1 a disagreement' '^$' run vorn-only --help
check no_folder 2 '^$' 'FOLDER' run vorn-only
check missing_folder 2 '^$' 'none: no such file' run vorn-only none
check no_scripts 2 '^$' 'no scripts to run' run vorn-only vorn-only
check wrong_limit 2 '^$' 'positive float.*0' run vorn-only s --limit 0
check wrong_runs 2 '^$' 'positive int' run vorn-only s --runs none
check wrong_solver 2 '^$' 'not NAME=COMMAND' run vorn-only s --solver base
check missing_solver 2 '^$' 'none: no such program' run vorn-only s --solver far=none
printf 'a.smt2\tsat\na.smt2 sat\n' >"$dir/wrong.tsv"
check wrong_list 2 '^$' 'wrong.tsv:2: not a path' run vorn-only s --expected wrong.tsv
printf 'a.smt2\tsat\n' >"$dir/wrong.tsv"
check useless_list 2 '^$' 'none of the scripts' run vorn-only s --expected wrong.tsv

# The plot: what gnuplot is told, and, where there is one, what it makes of that.
check no_gnuplot 2 '^$' 'takes gnuplot, which is not installed' run vorn-only s --plot plot.svg
check nothing_is_run_in_vain 0 '^$' '^$' cat "$dir/turns"
mkdir "$dir/with-gnuplot"
cp "$dir/stub" "$dir/with-gnuplot/vorn"
# shellcheck disable=SC2016 # the stub's variable
printf '#!%s\nwhile read -r line; do echo "$line"; done >"%s"\n' "$BASH" "$dir/told" >"$dir/with-gnuplot/gnuplot"
chmod +x "$dir/with-gnuplot/gnuplot"
check plot 0 'disagreements: 0' '^$' run with-gnuplot s --plot "it's.svg" --solver "a_b's \\n=vorn"
file_has plot_input told $'noenhanced\nset output \'it\'\'s.svg\'\n.*\n\\$times0 << END\n1 [0-9.]+\n2 [0-9.]+\nEND\n.*\nplot \\$times0 .* title \'vorn\', \\$times1 .* title \'a_b\'\'s \\\\n\'$'
printf '#!%s\necho "no terminal" >&2; exit 1\n' "$BASH" >"$dir/with-gnuplot/gnuplot"
check plot_fails 2 'disagreements: 0' 'gnuplot failed: no terminal' run with-gnuplot s --plot plot.svg
check plot_fails_after_disagreement 1 'disagreements: 1' 'gnuplot failed' run with-gnuplot s/unsat.smt2 --plot plot.svg \
  --solver "other=$BASH -c 'echo sat'"
if [[ -n $gnuplot ]]; then
  ln -sf "$gnuplot" "$dir/with-gnuplot/gnuplot"
  check real_plot 0 'disagreements: 0' '^$' run with-gnuplot s --plot plot.svg --solver "a_b's \\n=vorn"
  file_has svg plot.svg "<svg.*a_b(&#39;|')s .n.*</svg>"
else
  echo "SKIPPED real_plot: gnuplot is not installed"
fi

summary
