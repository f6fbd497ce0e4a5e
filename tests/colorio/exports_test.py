#!/usr/bin/env python3
"""Compares what the module's library exports with the list in the tree.

usage: exports_test.py LIBRARY LIST [--write]

LIST names every exported symbol, demangled and sorted. --write brings it up to date instead.
"""

import difflib
import re
import subprocess
import sys


def exported_symbols(library):
    """The symbols in the words of the list: the same for every release of OpenColorIO, one per constructor."""
    text = subprocess.run(["nm", "--dynamic", "--defined-only", "--demangle", library],
                          check=True, capture_output=True, text=True).stdout
    names = [line.split(maxsplit=2)[2] for line in text.splitlines()]
    names = [re.sub(r"OpenColorIO(_v\w+)?::(v\d+::)?", "OpenColorIO::", name) for name in names]
    return sorted({name.replace("std::tr1::", "std::") for name in names})


def main(library, listed, *options):
    exported = exported_symbols(library)
    if "--write" in options:
        with open(listed, "w", encoding="utf-8") as file:
            file.write("\n".join(exported) + "\n")
        return 0
    with open(listed, encoding="utf-8") as file:
        expected = file.read().splitlines()
    if len(expected) < 100:
        print(f"{listed} lists only {len(expected)} symbols")
        return 1
    if exported == expected:
        return 0
    print("\n".join(difflib.unified_diff(expected, exported, listed, library, lineterm="", n=0)))
    print(f"hosts link these symbols; when the change is meant: {sys.argv[0]} {library} {listed} --write")
    return 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
