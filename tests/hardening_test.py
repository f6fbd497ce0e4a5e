#!/usr/bin/env python3
"""Shows that libraries and programs are linked and compiled with what hardens them.

usage: hardening_test.py [--fortified] FILE...

--fortified also asks for checked calls of the C library, which sanitized builds do without.
"""

import re
import subprocess
import sys

ENDBR64 = bytes((0xF3, 0x0F, 0x1E, 0xFA))


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def problems_of(file, fortified):
    headers = output_of("readelf", "--wide", "--file-header", "--program-headers", "--dynamic", file)
    symbols = output_of("nm", "--dynamic", "--undefined-only", file)
    if "GNU_RELRO" not in headers or not re.search(r"\(FLAGS(_1)?\).*\b(BIND_)?NOW\b", headers):
        yield "no full RELRO"
    stack = re.search(r"GNU_STACK\s+(?:0x\w+\s+){5}([RWE ]+)\s", headers)
    if not stack or "E" in stack.group(1):
        yield "an executable stack"
    if not re.search(r"Type:\s+DYN", headers):
        yield "a fixed address"
    if "__stack_chk_fail" not in symbols:
        yield "no stack protector"
    # Where functions may be entered is marked by an instruction. The note about it in the file needs the start-up
    # objects of the C library to have it too, and those of Debian 12 do not.
    with open(file, "rb") as content:
        if "X86-64" in headers and content.read().count(ENDBR64) < 100:
            yield "no control-flow enforcement"
    if fortified and not re.search(r"__\w+_chk\b", symbols.replace("__stack_chk_fail", "")):
        yield "no checked calls of the C library"


def main(*arguments):
    files = [argument for argument in arguments if argument not in ("", "--fortified")]
    if not files:
        sys.exit(__doc__)
    problems = [f"{file} has {problem}" for file in files for problem in problems_of(file, "--fortified" in arguments)]
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
