#!/usr/bin/env python3
"""Lets every system call that a save makes on files fail, or kills the program there, and checks what is left.

For each save, each fault and each call: the file holds its old content or its new one, whole; the new one when the
program reports success; a failure has a reason; nothing hangs or crashes; nothing else changes or is left behind, after
a kill once the next save is done. Prints the count of calls ("points") and of runs per save.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FAULTS = ("kill", "EIO", "ENOSPC", "EINTR", "EMFILE")
TIMEOUT_S = 60
TEMPORARY = re.compile(r"\.qb_colorio-[^/]*\.tmp[^/]*$")
# What images hold of the moment when they were written and of the path of their input: a fingerprint, in PNG with the
# checksum of its chunk. DPX holds its own path.
OF_THE_RUN = re.compile(rb"\d{4}:\d\d:\d\d[ :]\d\d:\d\d:\d\d|/?\.qb_colorio-[\w-]+\.tmp\.dpx\0*"
                        rb"|colorio(?::fingerprint\0(?:string\0.{4})?[0-9a-f]{32}.{4}| [0-9a-f]{32})", re.DOTALL)
LUT = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n"
# What an earlier version wrote, and what the program does not know.
PREFERENCES = """\
color_space_file_path: ""
cdl_library_file_path: ""
default_color_space_name: "linear"
color_space_by_extension_file_path: ""
use_color_space_file: 0
use_color_space_by_extension_file: 0
of_a_later_version: [1, 2]
"""
GRADE = "warm=1.1,1,0.9/0,0,0/1,1,1/1"
IMAGE = b"P6\n8 8\n255\n" + bytes(range(192))


TIFF_WIDTHS = {1: 1, 2: 1, 3: 2, 4: 4, 5: 8, 7: 1}
STRIP_OFFSETS, STRIP_LENGTHS = 273, 279


def read_tiff(content):
    """What a little-endian TIFF holds: the values of its tags and its strips, wherever they lie; a damaged file as it is.

    When a call fails that writes the directory, the writer can write it once more at another place.
    """
    def number(at, width):
        return int.from_bytes(content[at:at + width], "little")

    directory = number(4, 4)
    tags = {}
    for entry in range(directory + 2, directory + 2 + 12 * number(directory, 2), 12):
        width = TIFF_WIDTHS.get(number(entry + 2, 2), 0)
        length = width * number(entry + 4, 4)
        start = entry + 8 if length <= 4 else number(entry + 8, 4)
        if start + length > len(content):
            return content
        tags[number(entry, 2)] = [content[at:at + width] for at in range(start, start + length, width or 1)]
    if not {STRIP_OFFSETS, STRIP_LENGTHS} <= tags.keys() or [] in tags.values():
        return content
    offsets, lengths = ([int.from_bytes(value, "little") for value in tags.pop(tag)]
                        for tag in (STRIP_OFFSETS, STRIP_LENGTHS))
    strips = b"".join(content[at:at + length] for at, length in zip(offsets, lengths))
    texts = b"".join(b"\n%d: " % tag + b"".join(values) for tag, values in sorted(tags.items()))
    return strips + texts + b"\n%d" % number(directory + 2 + 12 * number(directory, 2), 4)


class Save:
    """One command that saves. `targets` are its files; `follow` is a later save that succeeds in either state.

    Calls on the files of the cache are points when `cold`: the command then makes its LUT files first.
    """

    def __init__(self, name, command, targets, *, old=None, follow=None, cold=False, is_mapping=False):
        self.name = name
        self.command = command
        self.targets = targets
        self.old = old or {}
        self.follow = follow or command
        self.cold = cold
        self.is_mapping = is_mapping

    def uses_cache(self):
        return not self.cold and not self.is_mapping


SET_FORMAT = ["formats", "set", "Targa", "--space", "Cineon"]
SAVES = [
    Save("preferences, the first", SET_FORMAT, ["config/qb_colorio/preferences.yaml"]),
    Save("preferences, a space more", ["space", "add", "half", "--lut", "half.spi1d"],
         ["config/qb_colorio/preferences.yaml"], old={"config/qb_colorio/preferences.yaml": PREFERENCES},
         follow=SET_FORMAT),
    Save("preferences behind a link", SET_FORMAT + ["--prefs", "link.yaml"], ["real/mine.yaml"],
         old={"real/mine.yaml": PREFERENCES, "link.yaml": pathlib.Path("real/mine.yaml")}),
    Save("mapping file", ["mapping.yaml", "linear"], ["mapping.yaml"], old={"mapping.yaml": "jpg: sRGB\n"},
         is_mapping=True),
    Save("CDL document", ["cdl", "write", "warm.cc", "--cdl", GRADE], ["warm.cc"], old={"warm.cc": "<old/>"}),
    Save("CDL document, exact", ["cdl", "write", "warm.cc", "--cdl", GRADE, "--exact"], ["warm.cc"],
         old={"warm.cc": "<old/>"}),
    Save("shader", ["shader", "--from", "sRGB", "--to", "linear", "-o", "gpu"],
         ["gpu/OCIODisplay.glsl", "gpu/OCIODisplay.spi3d", "gpu/OCIODisplay.cube"],
         old={"gpu/OCIODisplay.glsl": "old"}),
    Save("LUT files", ["explain", "sRGB", "linear"],
         ["cache/qb_colorio/luts/srgb.spi1d", "cache/qb_colorio/luts/cineon.spi1d"], cold=True),
] + [
    Save(f"image {extension}", ["convert", "in.ppm", f"out.{extension}", "--from", "sRGB", "--to", "linear",
                                "--threads", "1"], [f"out.{extension}"], old={f"out.{extension}": "old"})
    for extension in ("exr", "tif", "png", "dpx")
]
# Those of the short run, and every how many points.
FEW = {"mapping file": 2, "preferences, a space more": 11, "CDL document": 11, "image exr": 31}


class Run:
    """The state of a folder after a program ran in it."""

    def __init__(self, done, points, hit, files):
        self.code = done.returncode
        self.out = done.stdout
        self.errors = done.stderr
        self.points = points
        self.hit = hit
        self.files = files


class Place:
    """A folder with everything that a save reads and writes."""

    def __init__(self, options, save):
        self.options = options
        self.save = save
        self.holder = tempfile.TemporaryDirectory(prefix="qb_faults_")
        self.outside = pathlib.Path(self.holder.name).resolve()
        self.folder = self.outside / "files"
        self.folder.mkdir()
        (self.folder / "tmp").mkdir()
        self.write("half.spi1d", LUT)
        self.write("in.ppm", IMAGE)
        for name, content in save.old.items():
            self.write(name, content)
        if save.uses_cache():
            shutil.copytree(options.warm_cache, self.folder / "cache")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.holder.cleanup()

    def write(self, name, content):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        if isinstance(content, pathlib.Path):
            path.symlink_to(content)
        else:
            path.write_bytes(content.encode() if isinstance(content, str) else content)

    def read_files(self):
        """Contents by name, without what differs from run to run."""
        return {str(path.relative_to(self.folder)): self.read_file(path)
                for path in self.folder.rglob("*") if path.is_file() and not path.is_symlink()}

    def read_file(self, path):
        content = path.read_bytes()
        if path.suffix == ".tif" and content.startswith(b"II*\0") and not TEMPORARY.search(path.name):
            content = read_tiff(content)
        return OF_THE_RUN.sub(b"", content.replace(str(self.folder).encode(), b"FOLDER"))

    def run(self, command, fault="EIO", at=0):
        program = self.options.mapping if self.save.is_mapping else self.options.tool
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "TMPDIR": str(self.folder / "tmp"),
                       "XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_CACHE_HOME": str(self.folder / "cache"),
                       "MESA_SHADER_CACHE_DISABLE": "true",  # which keeps files in the cache folder too
                       # The sanitizer that looks for leaks steps the program itself.
                       "ASAN_OPTIONS": "detect_leaks=0"}
        report = self.outside / "report"
        done = subprocess.run([self.options.injector, "--at", str(at), "--fault", fault, "--below", self.folder,
                               "--report", report, "--", program, *command],
                              cwd=self.folder, env=environment, capture_output=True, text=True, errors="replace",
                              timeout=TIMEOUT_S, check=False)
        if done.returncode == 126:
            raise RuntimeError(done.stderr)
        points, hit = report.read_text(encoding="utf-8").splitlines()
        return Run(done, int(points), hit, self.read_files())


def find_leftovers(files):
    return [name for name in files if TEMPORARY.search(name) or name.startswith("tmp/")]


def check_run(save, run, before, after, fault):
    """What is wrong with the state that a fault left."""
    faults = []
    is_killed = fault == "kill"
    old_out = after.out
    targets = {name: run.files.get(name) for name in save.targets}
    for name, content in targets.items():
        if content not in (before.get(name), after.files[name]):
            faults.append(f"{name} is neither old nor new")
    if run.code == 0 and save.cold:
        if run.out != old_out:
            faults.append("success with another answer")
    elif run.code == 0 and any(targets[name] != after.files[name] for name in save.targets):
        faults.append("success without the new file")
    if not is_killed and not 0 <= run.code < 126:
        faults.append(f"ended by {run.code}: {run.errors[-300:]}")
    if not is_killed and run.code != 0 and not re.search(r"^\w+: .+: .+", run.errors, re.MULTILINE):
        faults.append(f"failure without a reason: {run.errors!r}")
    # A removal that fails itself leaves what it should have removed.
    may_leave = is_killed or run.hit.startswith("unlink")
    if find_leftovers(run.files) and not may_leave:
        faults.append(f"left behind: {find_leftovers(run.files)}")
    for name in set(before) | set(run.files):
        if name not in save.targets and not TEMPORARY.search(name) and not name.startswith("tmp/") and \
                run.files.get(name) != before.get(name):
            faults.append(f"{name} changed")
    return faults


def try_point(options, save, before, after, fault, at):
    """Runs the save with one failing call; returns what is wrong, or None if the save makes fewer calls."""
    with Place(options, save) as place:
        try:
            run = place.run(save.command, fault, at)
        except subprocess.TimeoutExpired:
            return [f"{save.name}: {fault} at {at}: hangs"]
        if not run.hit:
            return None
        wrong = check_run(save, run, before, after, fault)
        if find_leftovers(run.files):
            later = place.run(save.follow)
            if later.code != 0:
                wrong.append(f"the next save fails: {later.errors}")
            if find_leftovers(later.files):
                wrong.append(f"left behind after the next save: {find_leftovers(later.files)}")
        return [f"{save.name}: {fault} at {at}, {run.hit}: {words}" for words in wrong]


def try_save(options, pool, save, step):
    """Runs a save with every fault at every point; prints the counts, returns what is wrong."""
    with Place(options, save) as place:
        before = place.read_files()
        after = place.run(save.command)
    if after.code != 0:
        raise RuntimeError(f"{save.name} fails without a fault: {after.errors}")
    # A fault may lead to more calls than there are without one.
    runs = [pool.submit(try_point, options, save, before, after, fault, at)
            for at in range(1, after.points + 10, step) for fault in FAULTS]
    results = [result for result in (run.result() for run in runs) if result is not None]
    wrong = [words for result in results for words in result]
    broken = sum(bool(result) for result in results)
    print(f"{save.name:28} {after.points:5} points {len(results):6} runs {broken:5} broken", flush=True)
    return wrong


def make_warm_cache(options):
    save = Save("warm", ["explain", "sRGB", "linear"], [], cold=True)
    with Place(options, save) as place:
        done = place.run(save.command)
        if done.code != 0:
            raise RuntimeError(f"the program does not run: {done.errors}")
        shutil.copytree(place.folder / "cache", options.warm_cache)


def main():
    parser = argparse.ArgumentParser()
    for name in ("injector", "mapping", "tool"): # the tool for all but the mapping file
        parser.add_argument("--" + name, required=name != "tool", type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("--few", action="store_true", help="only a part of the saves and points")
    parser.add_argument("--save", help="only the save of this name")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as cache, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        options.warm_cache = pathlib.Path(cache) / "cache"
        saves = [save for save in SAVES
                 if options.save in (None, save.name) and (not options.few or save.name in FEW)]
        if any(save.uses_cache() for save in saves):
            make_warm_cache(options)
        wrong = []
        for save in saves:
            wrong += try_save(options, pool, save, FEW[save.name] if options.few else 1)
    print("\n".join(wrong))
    print(f"{len(wrong)} checks failed" if wrong else "nothing is broken")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
