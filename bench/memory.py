#!/usr/bin/env python3
"""CPU seconds of reads from memory that was written byte by byte, as symbolic execution has it.

Memory is an array of bytes over 32 bits. Values of 4 and 8 bytes are written to slots, some of them
more than once, and read back as Float32 and Float64. A slot is

    by hand     none: reads are replaced by what was written last
    constant    a constant address
    apart       a base pointer and a constant, where each base begins pages of its own
    free        the same without anything known of the bases

A `sat` script compares what was read in an order that some values have. An `unsat` script says of
some read that it is not what was written last; with free bases, though no other base is near.
"""

import argparse
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile

KINDS = ["by hand", "constant", "apart", "free"]
SLOT = 8  # bytes
PROLOGUE = ["(set-logic ALL)", "(define-sort Address () (_ BitVec 32))"]
MEMORY = "(Array Address (_ BitVec 8))"


class Program:
    """The slots of a program, and what it does with them, as lines of a script."""

    def __init__(self, kind, writes, bases, seed):
        self.kind = kind
        self.choice = random.Random(seed)
        self.bases = bases
        self.lines = list(PROLOGUE)
        self.last = {}  # slot to the name of what was written last
        self.size = SLOT * -(-writes // bases)  # of what belongs to one base
        if kind in ("apart", "free"):
            self.lines += [f"(declare-const p{base} Address)" for base in range(bases)]
        if kind == "apart":
            self.lines += [f"(assert {fact})" for fact in self.separate_bases()]
        if kind != "by hand":
            self.lines.append(f"(declare-const m0 {MEMORY})")
        for number in range(writes):
            self.write(number, self.choice.randrange(writes))

    def separate_bases(self):
        """That bases are those of objects on pages of their own."""
        for base in range(self.bases):
            yield f"(= ((_ extract 15 0) p{base}) #x0000)"
        pages = [f"((_ extract 31 16) p{base})" for base in range(self.bases)]
        yield f"(distinct {' '.join(pages)})"

    def base_is_alone(self, slot):
        """That what belongs to the base of a slot meets nothing of another base."""
        own = slot % self.bases
        far = [
            f"(bvule #x{self.size:08x} (bvsub p{a} p{b}))"
            for other in range(self.bases) if other != own
            for a, b in ((own, other), (other, own))
        ]
        return f"(and {' '.join(far)})"

    def address(self, slot, byte):
        if self.kind == "constant":
            return f"#x{0x1000 + SLOT * slot + byte:08x}"
        offset = SLOT * (slot // self.bases)
        return f"(bvadd (bvadd p{slot % self.bases} #x{offset:08x}) #x{byte:08x})"

    @staticmethod
    def width(slot):
        """Bytes of the value in a slot."""
        return 4 if slot % 3 else 8

    def write(self, number, slot):
        value = f"v{number}"
        width = self.width(slot)
        self.last[slot] = value
        self.lines.append(f"(declare-const {value} (_ BitVec {8 * width}))")
        if self.kind == "by hand":
            return
        memory = f"m{number}"
        for byte in range(width):
            part = f"((_ extract {8 * byte + 7} {8 * byte}) {value})"
            memory = f"(store {memory} {self.address(slot, byte)} {part})"
        self.lines.append(f"(define-fun m{number + 1} () {MEMORY} {memory})")

    def read(self, number, memory):
        """Reads some slot; returns it."""
        slot = self.choice.choice(sorted(self.last))
        width = self.width(slot)
        if self.kind == "by hand":
            bits = self.last[slot]
        else:
            parts = [f"(select {memory} {self.address(slot, byte)})" for byte in range(width)]
            bits = f"(concat {' '.join(reversed(parts))})"
        sort, sizes = ("Float32", "8 24") if width == 4 else ("Float64", "11 53")
        self.lines.append(f"(define-fun b{number} () (_ BitVec {8 * width}) {bits})")
        self.lines.append(f"(define-fun r{number} () {sort} ((_ to_fp {sizes}) b{number}))")
        return slot


def generate(kind, status, writes, reads, bases, seed):
    """A script with that many values written and read."""
    program = Program(kind, writes, bases, seed)
    slots = [program.read(number, f"m{writes}") for number in range(reads)]
    lines = program.lines
    wide = [
        f"((_ to_fp 11 53) RNE r{number})" if program.width(slot) == 4 else f"r{number}"
        for number, slot in enumerate(slots)
    ]
    if status == "sat":
        for a in range(reads - 1):
            if slots[a] == slots[a + 1]:
                continue
            low, high = (a, a + 1) if slots[a] < slots[a + 1] else (a + 1, a)
            one = "((_ to_fp 11 53) RNE 1.0)"
            lines.append(f"(assert (fp.lt (fp.add RNE {wide[low]} {one}) {wide[high]}))")
    else:
        wrong = [f"(distinct b{number} {program.last[slot]})" for number, slot in enumerate(slots)]
        if kind == "free":
            wrong = [
                f"(and {different} {program.base_is_alone(slot)})"
                for different, slot in zip(wrong, slots)
            ]
        lines.append(f"(assert (or false {' '.join(wrong)}))")
    return "\n".join(lines + [f"(set-info :status {status})", "(check-sat)"]) + "\n"


def measure(command, limit):
    """CPU seconds of a run, as text, and its answer."""
    def limit_time():
        resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))

    with tempfile.TemporaryFile() as out:
        process = subprocess.Popen(
            command, stdout=out, stderr=subprocess.STDOUT, preexec_fn=limit_time
        )
        _, status, usage = os.wait4(process.pid, 0)
        out.seek(0)
        answer = out.read().decode("ascii", "replace").strip()
    if os.waitstatus_to_exitcode(status) in (-signal.SIGKILL, -signal.SIGXCPU):
        return "timeout", answer
    return f"{usage.ru_utime + usage.ru_stime:.2f}", answer


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("vorn", help="the command to measure")
    parser.add_argument("--beside", nargs="+", default=[], metavar="SOLVER", help="others to run")
    parser.add_argument("--writes", type=int, nargs="+", default=[10, 100, 1_000])
    parser.add_argument("--reads", type=int, default=100)
    parser.add_argument("--bases", type=int, default=8)
    parser.add_argument("--kinds", nargs="+", choices=KINDS, default=KINDS)
    parser.add_argument("--limit", type=int, default=60, metavar="SECONDS")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    solvers = {"vorn": [options.vorn]}
    solvers.update({name: [name] for name in options.beside})
    print("slots     status  writes" + "".join(f"{name:>10}" for name in solvers))
    failed = False
    with tempfile.TemporaryDirectory() as folder:
        script = os.path.join(folder, "memory.smt2")
        for kind in options.kinds:
            for status in ("sat", "unsat"):
                for writes in options.writes:
                    text = generate(
                        kind, status, writes, options.reads, options.bases, options.seed
                    )
                    with open(script, "w", encoding="ascii") as out:
                        out.write(text)
                    print(f"{kind:9} {status:6} {writes:7}", end="", flush=True)
                    for command in solvers.values():
                        seconds, answer = measure([*command, script], options.limit)
                        if seconds != "timeout" and answer != status:
                            failed = True
                            seconds = "wrong"
                        print(f"{seconds:>10}", end="", flush=True)
                    print(flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
