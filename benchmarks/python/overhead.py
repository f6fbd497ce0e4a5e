#!/usr/bin/env python3
"""Measures what the Python package takes beyond C++: a 4K array, and single pixels.

usage: PYTHONPATH=build/release/python benchmarks/python/overhead.py build/release/benchmarks/python/libpython_reference.so

Prints medians of processor time. Both convert the same memory, in turn.
"""

import ctypes
import statistics
import sys
import tempfile
import time
import timeit

import numpy

import qb_colorio

WIDTH, HEIGHT = 4096, 2160
ROUNDS = 60
# Arithmetic only: what a LUT costs depends on where in memory each converter has it, by more than is measured here.
CONFIG = """ocio_profile_version: 2
roles: {scene_linear: lin, default: lin}
file_rules: [!<Rule> {name: Default, colorspace: default}]
displays: {Monitor: [!<View> {name: Film, colorspace: lin}]}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: curved, from_scene_reference: !<ExponentTransform> {value: [0.4, 0.5, 0.6, 1]}}
"""


def measure(convert, array):
    array.fill(0.5)
    start = time.thread_time()
    convert(array)
    return time.thread_time() - start


def compare_arrays(reference, converter, channels):
    array = numpy.empty((HEIGHT, WIDTH, channels), numpy.float32)
    address = array.ctypes.data_as(ctypes.c_void_p)
    python, cpp = [], []
    for _ in range(ROUNDS):
        cpp.append(measure(lambda _: reference.reference_apply(address, WIDTH * HEIGHT, channels, 1), array))
        python.append(measure(converter.apply, array))
    ratios = statistics.median(one / other for one, other in zip(python, cpp))
    print(f"{WIDTH} x {HEIGHT}, {channels} channels of float32: {statistics.median(python) * 1e3:.2f} ms in Python, "
          f"{statistics.median(cpp) * 1e3:.2f} ms in C++, {(ratios - 1) * 100:+.2f} %")


def compare_pixel(name, call, reference):
    calls = 10000
    pixel = numpy.full(4, 0.5, numpy.float32)
    address = pixel.ctypes.data_as(ctypes.c_void_p)
    python = min(timeit.repeat(call, number=calls, repeat=30)) / calls
    cpp = min(timeit.repeat(lambda: reference.reference_apply(address, 1, 4, calls), number=1, repeat=30)) / calls
    print(f"{name}: {python * 1e6:.2f} us in Python, {cpp * 1e6:.2f} us in C++")


def main(library):
    reference = ctypes.CDLL(library)
    with tempfile.NamedTemporaryFile("w", suffix=".ocio") as config:
        config.write(CONFIG)
        config.flush()
        reference.reference_prepare(config.name.encode())
        with qb_colorio.Session(config.name, preferences=False) as session:
            converter = session.converter("lin", "curved")
    for channels in (4, 3):
        compare_arrays(reference, converter, channels)
    pixel, out = numpy.full(4, 0.5, numpy.float32), numpy.empty(4, numpy.float32)
    compare_pixel("one pixel in place", lambda: converter.apply(pixel), reference)
    compare_pixel("one pixel to another array", lambda: converter(pixel, out), reference)
    compare_pixel("one pixel to a new array", lambda: converter(pixel), reference)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
