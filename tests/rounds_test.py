#!/usr/bin/env python3
"""A long session does not grow: rounds of arrays, functions and sorts that the next one forgets.

    rounds_test.py VORN ROUNDS

Each round opens a level, declares a sort, a function, arrays and floats, writes and reads, asks a
question whose answer is known, and closes the level. What the process holds after the first fifth
of the rounds has to be enough for all of them. Terms are collected once there is half a million, so
a round also has an unused definition, so large that this comes about within the first fifth.
"""
import subprocess
import sys

TERMS_BEFORE_COLLECTION = 500_000
SLACK = 1.25  # allocators and tables grow in steps


WRITES = 4  # of a round


def make_round(number, unused):
    """The commands of a round and its answers. Every other one is refuted, by all with a name."""
    written = "a"
    for i in range(WRITES):
        address = f"#x{number * WRITES + i:08x}"
        written = f"(store {written} (bvadd p {address}) (bvxor v {address}))"
    # Two terms a step, a number that no other round has and a sum.
    steps = "".join(f"(bvmul #x{number * unused + i:08x} " for i in range(unused))
    commands = f"""
(push 1)
(declare-sort S 0)
(declare-sort Pair 2)
(declare-const s S)
(declare-const t S)
(declare-const both (Pair S Bool))
(declare-fun f (S (Array (_ BitVec 32) (_ BitVec 32)) (Pair S Bool)) S)
(declare-const a (Array (_ BitVec 32) (_ BitVec 32)))
(declare-const b (Array (_ BitVec 32) (_ BitVec 32)))
(declare-const p (_ BitVec 32))
(declare-const v (_ BitVec 32))
(define-const unused (_ BitVec 32) {steps}v{")" * unused})
(assert (! (= b {written}) :named written))
(assert (! (distinct (f s {written} both) (f t b both)) :named different))
(assert (fp.leq ((_ to_fp 8 24) (select b (bvadd p #x{number * WRITES:08x})))
                ((_ to_fp 8 24) RNE {number}.5)))
"""
    if number % 2 == 0:
        return commands + "(check-sat)(pop 1)\n", ["sat"]
    question = "(assert (! (= s t) :named same))(check-sat)(get-unsat-core)(pop 1)\n"
    return commands + question, ["unsat", "(written different same)"]


def get_resident(process):
    """Kilobytes that a process holds."""
    with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))


def main():
    vorn, rounds = sys.argv[1], int(sys.argv[2])
    early = rounds // 5
    unused = TERMS_BEFORE_COLLECTION // (2 * early) + 1
    most = {"early": 0, "late": 0}
    with subprocess.Popen([vorn, "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          text=True) as process:
        process.stdin.write("(set-option :produce-unsat-cores true)\n")
        for number in range(rounds):
            commands, expected = make_round(number, unused)
            process.stdin.write(commands)
            process.stdin.flush()
            answer = [process.stdout.readline().rstrip("\n") for _ in expected]
            if answer != expected:
                process.kill()
                sys.exit(f"FAILED round {number}: {answer} instead of {expected}")
            part = "early" if number < early else "late"
            most[part] = max(most[part], get_resident(process))
        process.stdin.close()
        status = process.wait()
    print(f"{most['early']} kB in the first {early} rounds, {most['late']} kB in all others")
    sys.exit(0 if status == 0 and most["late"] <= SLACK * most["early"] else 1)


if __name__ == "__main__":
    main()
