#!/usr/bin/env python3
"""Converts an image sequence to a view for a review, and says how far it is.

usage: review.py CONFIG SPACE VIEW INPUT OUTPUT
"""

import sys

import qb_colorio


def convert(config, space, view, inputs, outputs):
    with qb_colorio.Session(config, preferences=False) as session:
        converter = session.converter(space, view=view)
        plan = converter.convert_sequence(inputs, outputs, dry_run=True)
        done = 0

        def show(frame):
            nonlocal done
            done += 1
            print(f"{done} of {plan.planned}: {frame.output}, {frame.status}")

        report = converter.convert_sequence(inputs, outputs, progress=show, depth="uint8")
    for failure in report.failures:
        print(failure, file=sys.stderr)
    return 1 if report.failures else 0


def main(arguments):
    if len(arguments) != 5:
        sys.exit(__doc__)
    try:
        return convert(*arguments)
    except qb_colorio.Error as error:
        print(f"{error.code}: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
