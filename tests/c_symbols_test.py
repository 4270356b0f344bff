#!/usr/bin/env python3
"""The symbols of the C interface are those that it declares, and all of them are tested.

    c_symbols_test.py SOURCE_DIR LIBRARY

Compared are what the shared library shows, what the headers declare, and tests/c/symbols.txt. The
list is part of what other programs are built against: a name that leaves it breaks them. Every name
in it has to occur in a test written in C.
"""
import pathlib
import re
import subprocess
import sys


def find_declared(headers):
    """The functions that headers declare."""
    return set(re.findall(r"^VORN_EXPORT [^;({]*?\*?(vorn_\w+)\(", headers, re.MULTILINE))


def main():
    root = pathlib.Path(sys.argv[1])
    listing = subprocess.run(["nm", "-D", "--defined-only", sys.argv[2]], check=True,
                             stdout=subprocess.PIPE, text=True).stdout
    shown = set(re.findall(r" [A-Z] (vorn_\w+)$", listing, re.MULTILINE))
    declared = find_declared("".join(p.read_text() for p in (root / "vorn" / "c").glob("*.h")))
    listed = set((root / "tests" / "c" / "symbols.txt").read_text().split())
    tests = "".join(p.read_text() for p in (root / "tests" / "c").glob("*.c"))
    tested = set(re.findall(r"\bvorn_\w+", tests))
    # It is for a whole process, and tested where allocations fail.
    tested |= {"vorn_catch_gmp_memory"}
    errors = [f"{name}: {what}" for what, names in [
        ("declared, not shown", declared - shown),
        ("shown, not declared", shown - declared),
        ("new, not in tests/c/symbols.txt", shown - listed),
        ("in tests/c/symbols.txt, but gone", listed - shown),
        ("not tested", listed - tested),
    ] for name in sorted(names)]
    print("\n".join(errors + [f"{len(listed)} symbols, {len(errors)} errors"]))
    sys.exit(1 if errors or not listed else 0)


if __name__ == "__main__":
    main()
