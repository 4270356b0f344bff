#!/usr/bin/env python3
"""Runs vorn and other solvers on a set of scripts, and compares their answers and times.

Bitwuzla, cvc5 and z3 take part if they are on PATH; further commands can be given, other
configurations of vorn among them. Runs follow one another, and all solvers take their turn on a
script before the next one, so that a machine which gets slower for a while does so for all of them.
The answers are worth more than the times: where one says sat and another one unsat, or the script
itself claims something else, the exit status is 1. See docs/benchmarks.md.
"""

import argparse
import csv
import os
import re
import resource
import shlex
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time
from dataclasses import dataclass
from pathlib import Path

OTHERS = ("bitwuzla", "cvc5", "z3")
SOLVED = ("sat", "unsat", "mixed")  # mixed: a script with several checks, and both answers
OUTCOMES = SOLVED + ("unknown", "timeout", "error")
DISAGREEMENT = 1
USAGE_ERROR = 2


class UsageError(Exception):
    """What is asked for cannot be done; says why."""


@dataclass(frozen=True)
class Script:
    path: Path
    claims: tuple  # (who, answers) before any solver was asked: its own status, the list of answers
    checks: int


@dataclass(frozen=True)
class Run:
    outcome: str
    answers: tuple  # those printed, also before a crash or the end of the time
    seconds: float
    rss: int  # kilobytes
    message: str = ""

    def is_solved(self):
        return self.outcome in SOLVED


# Scripts


def read_script(path, expected):
    """Finds out what a script asks, by its commands alone: comments and quotations are dropped."""
    text = path.read_text(encoding="latin-1")
    text = re.sub(r'"[^"]*"|\|[^|]*\||;[^\n]*', " ", text)
    status = "unknown"
    statuses = []
    command = r"\(\s*(?:set-info\s+:status\s+(\w+)|(check-sat)(?:-assuming)?\b|(exit)\b)"
    for match in re.finditer(command, text):
        if match[1]:
            status = match[1]
        elif match[2]:
            statuses.append(status)
            status = "unknown"
        else:
            break
    claims = [("its status", tuple(statuses))]
    if path.resolve() in expected:
        claims.append(("expected", expected[path.resolve()]))
    return Script(path, tuple(claims), len(statuses))


def read_expected(file):
    """Answers by path from lines PATH<TAB>ANSWER..., with paths as seen from the file's folder."""
    expected = {}
    for number, line in enumerate(file.read_text().splitlines(), 1):
        path, tab, answers = line.partition("\t")
        answers = tuple(answers.split())
        if not tab or not answers or not set(answers) <= {"sat", "unsat", "unknown"}:
            raise UsageError(f"{file}:{number}: not a path, a tab and answers: {line!r}")
        expected[(file.parent / path).resolve()] = answers
    return expected


def find_scripts(folders, expected):
    paths = []
    for folder in folders:
        if not folder.exists():
            raise UsageError(f"{folder}: no such file or folder")
        paths += sorted(folder.rglob("*.smt2")) if folder.is_dir() else [folder]
    scripts = [read_script(path, expected) for path in dict.fromkeys(paths)]
    for script in scripts:
        if script.checks == 0:
            print(f"left out, since it checks nothing: {script.path}", file=sys.stderr)
    scripts = [script for script in scripts if script.checks > 0]
    if not scripts:
        raise UsageError("no scripts to run")
    if expected and not any(script.path.resolve() in expected for script in scripts):
        raise UsageError("none of the scripts is in the list of expected answers")
    return scripts


# Solvers


def find_program(name):
    program = shutil.which(name)
    if program is None:
        raise UsageError(f"{name}: no such program")
    return program


def find_vorn(given):
    if given is not None:
        return find_program(given)
    built = Path(__file__).resolve().parent.parent / "build" / "release" / "vorn"
    return str(built) if built.exists() else find_program("vorn")


def find_solvers(options):
    """Commands by name, vorn first. A command that starts with `vorn` means the same program."""
    vorn = find_vorn(options.vorn)
    solvers = {"vorn": [vorn]}
    for name in OTHERS:
        if shutil.which(name) is not None:
            solvers[name] = [find_program(name)]
    for given in options.solver:
        name, _, command = given.partition("=")
        words = shlex.split(command)
        if not name.isprintable() or not name.strip() or not words:
            raise UsageError(f"--solver {given}: not NAME=COMMAND")
        program = vorn if words[0] == "vorn" else find_program(words[0])
        solvers[name] = [program] + words[1:]
    return solvers


# Runs


def get_outcome(status, output, answers, checks):
    """One of OUTCOMES for a run that came to its end. An unknown answer may go with an exit status of
    its own; any other failure means that not even the answers that are there can be relied on."""
    if status < 0 or re.search(r"^\(error\b", output, re.MULTILINE) or len(answers) != checks:
        return "error"
    if "unknown" in answers:
        return "unknown"
    if status != 0:
        return "error"
    return answers[0] if len(set(answers)) == 1 else "mixed"


def kill_group(pid):
    try:
        os.killpg(pid, signal.SIGKILL)
    except (ProcessLookupError, PermissionError):
        pass


def run_solver(command, checks, limit, memory):
    """Runs a command in a process group of its own, which does not outlive the run. The process is
    reaped last of all: until then its number cannot belong to anyone else."""

    def limit_memory():
        resource.setrlimit(resource.RLIMIT_AS, (memory << 20, memory << 20))

    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        start = time.perf_counter()
        process = subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=out,
            stderr=err,
            start_new_session=True,
            preexec_fn=limit_memory if memory else None,
        )
        timer = threading.Timer(limit, kill_group, [process.pid])
        try:
            timer.start()
            os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
            seconds = time.perf_counter() - start
        finally:
            timer.cancel()
            timer.join()
            kill_group(process.pid)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        output = out.read().decode("latin-1")
        complaint = err.read().decode("latin-1")
    answers = tuple(re.findall(r"^(sat|unsat|unknown)[ \r]*$", output, re.MULTILINE))
    if process.returncode == -signal.SIGKILL and seconds >= limit:
        return Run("timeout", answers, seconds, usage.ru_maxrss)
    outcome = get_outcome(process.returncode, output, answers, checks)
    message = ""
    if outcome == "error":
        lines = [line for line in (output + complaint).splitlines() if line not in answers]
        message = f"exit status {process.returncode}" + "".join(f": {line}" for line in lines[:1])
    return Run(outcome, answers, seconds, usage.ru_maxrss, message)


def find_disagreements(script, claims):
    """One line for each check on which some say sat and some unsat."""
    lines = []
    for i in range(max(len(answers) for _, answers in claims)):
        said = {"sat": [], "unsat": []}
        for who, answers in claims:
            if i < len(answers) and answers[i] in said and who not in said[answers[i]]:
                said[answers[i]].append(who)
        if said["sat"] and said["unsat"]:
            where = f"{script.path}, check {i + 1}" if script.checks > 1 else str(script.path)
            sides = "; ".join(f"{answer}: {', '.join(who)}" for answer, who in said.items())
            lines.append(f"{where}: {sides}")
    return lines


def run_script(script, solvers, options):
    """The best run of each solver, and what the solvers and the script do not agree upon."""
    best = {}
    claims = list(script.claims)
    for _ in range(options.runs):
        for name, command in solvers.items():
            if name in best and best[name].outcome == "timeout":
                continue  # it would most likely take as long again
            run = run_solver(
                command + [str(script.path)], script.checks, options.limit, options.memory
            )
            claims.append((name, run.answers))
            if options.verbose:
                message = f" ({run.message})" if run.message else ""
                line = f"{run.seconds:9.3f} s  {name}: {run.outcome}{message}: {script.path}"
                print(line, file=sys.stderr, flush=True)
            if name not in best or rank(run) < rank(best[name]):
                best[name] = run
    return best, find_disagreements(script, claims)


def rank(run):
    return (not run.is_solved(), run.seconds)


# Reports


def print_table(rows):
    """Rows of strings, the first of which are headings. Numbers go to the right."""
    widths = [max(len(cell) for cell in column) for column in zip(*rows)]
    for row in rows:
        cells = [
            cell.ljust(width) if i == 0 or rows[0][i] == "script" else cell.rjust(width)
            for i, (cell, width) in enumerate(zip(row, widths))
        ]
        print("  ".join(cells).rstrip())


def print_summary(results, solvers, options):
    """`results` has a dictionary of runs by solver for each script."""
    common = [runs for runs in results if all(run.is_solved() for run in runs.values())]
    memory = f", {options.memory} MB" if options.memory else ""
    print(
        f"{len(results)} scripts, {options.limit:g} s{memory} each, best of {options.runs}; "
        f"solved by all: {len(common)}\n"
    )
    rows = [("solver", "solved") + OUTCOMES + ("total s", "common s")]
    for name in solvers:
        runs = [result[name] for result in results]
        counts = [str(sum(run.outcome == outcome for run in runs)) for outcome in OUTCOMES]
        solved = sum(run.is_solved() for run in runs)
        total = sum(run.seconds for run in runs)
        shared = sum(result[name].seconds for result in common)
        rows.append((name, str(solved), *counts, f"{total:.2f}", f"{shared:.2f}"))
    print_table(rows)


def print_ratios(scripts, results, solvers):
    rows = [("time of vorn by", "common", "median", "worst", "script")]
    for name in solvers:
        if name == "vorn":
            continue
        ratios = [
            (runs["vorn"].seconds / runs[name].seconds, str(script.path))
            for script, runs in zip(scripts, results)
            if runs["vorn"].is_solved() and runs[name].is_solved()
        ]
        if ratios:
            median = statistics.median(ratio for ratio, _ in ratios)
            worst, path = max(ratios)
            rows.append((name, str(len(ratios)), f"{median:.2f}", f"{worst:.2f}", path))
        else:
            rows.append((name, "0", "-", "-", "-"))
    if len(rows) > 1:
        print()
        print_table(rows)


def write_rows(writer, script, runs):
    for name, run in runs.items():
        answer = " ".join(run.answers) if run.is_solved() else run.outcome
        writer.writerow((script.path, name, answer, f"{run.seconds:.6f}", run.rss))


def quote_for_gnuplot(text):
    """A string in single quotes, in which nothing but the quote itself is special."""
    return "'" + text.replace("'", "''") + "'"


def make_plot(results, solvers, options):
    """What gnuplot reads: for each solver its times in ascending order, one by one."""
    lines = ["set terminal svg size 800,600 noenhanced", f"set output {quote_for_gnuplot(options.plot)}"]
    lines += ["set xlabel 'scripts solved'", "set ylabel 'seconds for each of them'"]
    lines += ["set key left top", "set grid", "set logscale y", "set xrange [0:*]"]
    curves = []
    for i, name in enumerate(solvers):
        times = sorted(runs[name].seconds for runs in results if runs[name].is_solved())
        if times:
            points = [f"{n} {seconds:.6f}" for n, seconds in enumerate(times, 1)]
            lines += [f"$times{i} << END", *points, "END"]
            curves.append(f"$times{i} with linespoints title {quote_for_gnuplot(name)}")
    if not curves:
        raise UsageError("nothing to plot: no script was solved")
    return "\n".join(lines + ["plot " + ", ".join(curves)]) + "\n"


def draw_plot(results, solvers, options):
    plot = make_plot(results, solvers, options)
    done = subprocess.run(["gnuplot"], input=plot, text=True, capture_output=True, check=False)
    if done.returncode != 0:
        raise UsageError(f"gnuplot failed: {done.stderr.strip()}")


# The command


def parse_options():
    def positive(kind):
        def parse(text):
            value = kind(text)
            if not value > 0:
                raise ValueError
            return value

        parse.__name__ = f"positive {kind.__name__}"
        return parse

    parser = argparse.ArgumentParser(
        description="Runs vorn, and bitwuzla, cvc5 and z3 if they are on PATH, on SMT-LIB scripts, "
        "and compares their answers and times.",
        epilog="Exit status: 0 done, 1 a disagreement on an answer, 2 a usage error.",
    )
    add = parser.add_argument
    add("folders", metavar="FOLDER", nargs="+", type=Path,
        help="folders, searched for *.smt2 with all below them, or single scripts")
    add("--vorn", metavar="PATH",
        help="the vorn to run (default: build/release/vorn, or else the one on PATH)")
    add("--solver", metavar="NAME=COMMAND", action="append", default=[],
        help="one more solver, which gets the script as its last argument, or another command for "
        "one of those above; COMMAND may start with vorn, as in 'base=vorn --encoder base'")
    add("--limit", metavar="SECONDS", type=positive(float), default=60.0,
        help="wall-clock time after which a run is killed (default: 60)")
    add("--memory", metavar="MB", type=positive(int), help="address space of a run")
    add("--runs", metavar="N", type=positive(int), default=1,
        help="take the best of N runs (default: 1)")
    add("--expected", metavar="FILE", type=Path,
        help="known answers, in lines PATH<TAB>ANSWER with paths relative to FILE's folder")
    add("--csv", metavar="FILE", help="write each result to FILE as it comes")
    add("--plot", metavar="FILE.svg",
        help="draw how many scripts are solved in how much time; takes gnuplot")
    add("--verbose", action="store_true", help="print each run on standard error as it comes")
    return parser.parse_args()


def compare(options):
    # What may be missing is found out first: the runs can take hours.
    if options.plot and shutil.which("gnuplot") is None:
        raise UsageError("--plot takes gnuplot, which is not installed")
    solvers = find_solvers(options)
    expected = read_expected(options.expected) if options.expected else {}
    scripts = find_scripts(options.folders, expected)
    with open(options.csv or os.devnull, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(("script", "solver", "answer", "seconds", "max_rss_kb"))
        results = []
        disagreements = []
        for script in scripts:
            runs, lines = run_script(script, solvers, options)
            write_rows(writer, script, runs)
            file.flush()
            results.append(runs)
            disagreements += lines
    print_summary(results, solvers, options)
    print_ratios(scripts, results, solvers)
    print(f"\ndisagreements: {len(disagreements)}")
    for line in disagreements:
        print(f"  {line}")
    sys.stdout.flush()
    try:
        if options.plot:
            draw_plot(results, solvers, options)
    except UsageError as error:
        print(f"compare: error: {error}", file=sys.stderr)
        return DISAGREEMENT if disagreements else USAGE_ERROR
    return DISAGREEMENT if disagreements else 0


def main():
    # An end from outside unwinds as well, so that the solver that is running ends too.
    signal.signal(signal.SIGTERM, lambda number, _: sys.exit(128 + number))
    try:
        return compare(parse_options())
    except (UsageError, OSError, ValueError) as error:
        print(f"compare: error: {error}", file=sys.stderr)
        return USAGE_ERROR
    except KeyboardInterrupt:
        return 128 + signal.SIGINT


if __name__ == "__main__":
    sys.exit(main())
