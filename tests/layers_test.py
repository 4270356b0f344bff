"""Layers point one way: each folder includes only itself and the folders below it.

    layers_test.py SOURCE_DIR
"""
import pathlib
import re
import sys

# What each layer may include besides itself. fp/ and bv/ do not know each other.
BELOW = {
    "utils": [],
    "terms": ["utils"],
    "fp": ["terms", "utils"],
    "bv": ["terms", "utils"],
    "smt2": ["terms", "utils"],
    "semantics": ["terms", "utils"],
    "ranges": ["semantics", "terms", "utils"],
    "rewrite": ["semantics", "terms", "utils"],
    "search": ["ranges", "rewrite", "semantics", "terms", "utils"],
    "theories": ["semantics", "terms", "utils"],
    "reals": ["ranges", "semantics", "terms", "utils"],
    "solver": ["theories", "search", "reals", "ranges", "rewrite", "semantics", "smt2", "bv", "fp", "terms", "utils"],
    "c": ["solver", "semantics", "smt2", "fp", "terms", "utils"],
}
INCLUDE = re.compile(r'^#include "vorn/([^"]+)"', re.MULTILINE)


def find_errors(root):
    """The includes that point up or sideways, and folders that no layer is."""
    errors = []
    read = 0
    for path in sorted((root / "vorn").rglob("*.*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        layer = path.relative_to(root / "vorn").parts[0]
        if layer not in BELOW:
            errors.append(f"{path.relative_to(root)}: {layer}/ is no layer")
            continue
        for included in INCLUDE.findall(path.read_text()):
            read += 1
            if "/" not in included:
                continue  # version.h, which is of no layer
            target = included.split("/")[0]
            if target != layer and target not in BELOW[layer]:
                errors.append(f"{path.relative_to(root)}: includes {included}, above or beside {layer}/")
    return errors, read


def main():
    root = pathlib.Path(sys.argv[1])
    errors, read = find_errors(root)
    for error in errors:
        print(error)
    if read == 0:
        sys.exit("no include was read")
    print(f"{read} includes read, {len(errors)} of them against the layers")
    sys.exit(1 if errors else 0)


if __name__ == "__main__":
    main()
