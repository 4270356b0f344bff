#!/usr/bin/env python3
"""Time and memory of encoding, from the first byte of a script to its last clause.

Generates scripts of 1,000 to 100,000 operations, each on results of the operations before it, and
runs `vorn encode --to dimacs` on them. A table gives time and memory for each size, in all and for
one operation: where both columns for one operation stay level, the cost is linear.
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile
import time

# In the proportions of numeric code: sums and products, comparisons, few divisions.
OPERATIONS = (
    [("fp.add", 2, True)] * 6
    + [("fp.sub", 2, True)] * 4
    + [("fp.mul", 2, True)] * 5
    + [("fp.div", 2, True)]
    + [("fp.neg", 1, False)] * 2
    + [("fp.abs", 1, False)] * 2
)
COMPARISONS = ["fp.leq", "fp.lt", "fp.eq"]


def generate(count, exponent_bits, significand_bits, seed):
    """A script of `count` operations of one format, comparisons among them."""
    choice = random.Random(seed)
    sort = f"(_ FloatingPoint {exponent_bits} {significand_bits})"
    lines = ["(set-logic QF_FP)"]
    recent = []
    for number in range(count):
        if number % 10 == 0:
            name = f"x{number}"
            lines.append(f"(declare-const {name} {sort})")
            recent = recent[-7:] + [name]
        if number % 5 == 4:
            a, b = choice.sample(recent, 2) if len(recent) > 1 else recent * 2
            lines.append(f"(assert ({choice.choice(COMPARISONS)} {a} {b}))")
            continue
        operation, arity, rounds = choice.choice(OPERATIONS)
        arguments = [choice.choice(recent) for _ in range(arity)]
        mode = ["RNE"] if rounds else []
        name = f"r{number}"
        body = " ".join([operation] + mode + arguments)
        lines.append(f"(define-fun {name} () {sort} ({body}))")
        recent = recent[-7:] + [name]
    lines += [f"(assert (not (fp.isNaN {recent[-1]})))", "(check-sat)"]
    return "\n".join(lines) + "\n"


def measure(vorn, script):
    """Wall and CPU seconds, resident KiB and clauses of one run."""
    start = time.monotonic()
    process = subprocess.Popen(
        [vorn, "encode", script, "--to", "dimacs"], stdout=subprocess.PIPE
    )
    clauses = 0
    while chunk := process.stdout.read(1 << 20):
        clauses += chunk.count(b" 0\n")
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"throughput.py: {vorn} failed on {script}")
    return time.monotonic() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss, clauses


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("vorn", help="the command to measure")
    parser.add_argument("--sizes", type=int, nargs="+", default=[1_000, 10_000, 100_000])
    parser.add_argument("--format", type=int, nargs=2, default=[3, 4], metavar=("EB", "SB"))
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    print("operations  seconds  CPU s    us/op  peak MiB  KiB/op     clauses  clauses/op")
    with tempfile.TemporaryDirectory() as folder:
        for size in options.sizes:
            script = os.path.join(folder, f"{size}.smt2")
            with open(script, "w", encoding="ascii") as out:
                out.write(generate(size, *options.format, options.seed))
            seconds, cpu, kib, clauses = measure(options.vorn, script)
            print(
                f"{size:10} {seconds:8.2f} {cpu:6.2f} {1e6 * cpu / size:8.1f} "
                f"{kib / 1024:9.1f} {kib / size:7.2f} {clauses:11} {clauses / size:11.0f}",
                flush=True,
            )


if __name__ == "__main__":
    main()
