"""Checks what no compiler checks: which folder may use which, and a few habits of the code.

The arrows are those of docs/architecture.md. A folder stands for its subfolders too, unless they have a row of their
own. Run by ctest, or by hand: python3 tests/conventions_test.py [REPOSITORY]
"""

import collections
import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-")
                    else pathlib.Path(__file__).parent.parent).resolve()

# Folder: the folders that its files may include.
ARROWS = {
    "diagnostics": [],
    "host": [],
    "conformance": ["host"],
    "files": ["diagnostics"],
    "xml": ["files", "diagnostics"],
    "pixel": [],
    "standalone": ["host", "files", "diagnostics"],
    "colorio/ocio": ["pixel", "diagnostics"],
    "colorio": ["colorio/ocio", "host", "xml", "files", "diagnostics"],
    "gl": ["diagnostics"],
    "image": ["files", "diagnostics"],
    "workflow": ["colorio", "standalone", "host", "xml", "image", "gl", "files", "diagnostics"],
    "python": ["workflow", "colorio", "standalone", "host", "image", "gl", "files", "diagnostics"],
    "viewer": ["workflow", "colorio", "standalone", "host", "image", "gl", "files", "diagnostics"],
    "manual": ["workflow", "standalone"],
    "tool": ["manual", "viewer", "workflow", "colorio", "standalone", "host", "image", "gl", "files", "diagnostics"],
    "programs": ["tool", "workflow", "image", "files", "diagnostics"],
}


# Units that include each other both ways, as find_unit_cycles lists them, and why that cannot be helped.
UNAVOIDABLE_CYCLES = {}

# Code beyond those folders that uses the module as others do. (Tests may also include its private headers.)
OTHER_USERS = ["examples", "samples"]

# What stands for a habit, where it is forbidden, and why.
FORBIDDEN = [
    (r"\bOCIO_VERSION", "everywhere but colorio/ocio", "library versions are distinguished in one folder"),
    (r"#include [<\"]OpenColorIO/", "gl image workflow viewer tool files xml pixel standalone host diagnostics",
     "OpenColorIO is seen only as the module's public headers show it"),
    (r"\b(OCIO|OCIO_NAMESPACE|library)::(Config|ColorSpace|CDLTransform|FileTransform|GroupTransform|Processor|"
     r"CPUProcessor)::", "everywhere but colorio/ocio tests benchmarks fuzz", "OpenColorIO is called in one folder"),
    (r"\b(std::)?(exit|abort|_exit|quick_exit)\(",
     "diagnostics files host xml pixel colorio standalone gl workflow viewer", "a library does not end the process"),
    # parse_file_or_report prints by its contract.
    (r"\bstd::c(out|err)\b|\bf?printf\(", "diagnostics files pixel colorio image gl workflow viewer xml but "
     "xml/printed_report.cpp", "a library does not print"),
    (r"\"(?:[^\"\\]|\\.)*(?<![-!<])--[a-z][^\"]*\"", "diagnostics files xml pixel colorio standalone gl image workflow",
     "a library does not know the options of a program"),
    (r"#include \"[^\"]*\.cpp\"", "tests", "no test includes a source file"),
    (r"#include [<\"]CLI/", "everywhere but tool/options.cpp tool/options_description.cpp tool/parse_errors.cpp", "the argument parser is slow to compile"),
    (r"#include [<\"]nlohmann/json.hpp", "everywhere but tool/json.cpp tests", "the JSON library is slow to compile"),
]

MAX_LINES = 300

# Source files that are longer, and why. A file that got shorter has no place here.
LONG_FILES = {
    "colorio/color_io_manager.h": "a public class whose members the hosts know",
    "tests/data/golden_1x.h": "recorded numbers",
}

INCLUDE = re.compile(r'^\s*#include "([^"]+)"', re.MULTILINE)


def list_sources(folders):
    for folder in folders:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                yield path.relative_to(ROOT).as_posix()


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def read_includes(path):
    """The files of the repository that a source file includes, by their paths or beside it."""
    for include in INCLUDE.findall(read(path)):
        for place in (include, path.rsplit("/", 1)[0] + "/" + include):
            if (ROOT / place).exists():
                yield place
                break


def is_listed(path):
    """Whether the nearest CMakeLists.txt above a source file names it."""
    folder, name = (ROOT / path).parent, pathlib.Path(path).name
    while not (folder / "CMakeLists.txt").exists():
        folder, name = folder.parent, folder.name + "/" + name
    listed = re.split(r"[\s()\"]+", (folder / "CMakeLists.txt").read_text(encoding="utf-8"))
    return name in listed


def get_unit(path):
    """A header and the source file of its name are one unit: their path without the extension."""
    return path.rsplit(".", 1)[0]


def find_unit_cycles(paths):
    edges = collections.defaultdict(set)
    for path in paths:
        edges[get_unit(path)].update(get_unit(target) for target in read_includes(path))
    return find_cycles(edges)


def list_installed_headers():
    """The headers of workflow/ and of the folders below it that packaging/ installs one by one."""
    lists = re.findall(r"qb_install_headers\((workflow|image|gl|files)\b([^)]*)\)", read("packaging/CMakeLists.txt"))
    return {f"{folder}/{name}" for folder, names in lists for name in names.split() or ["*"]}


def get_layer(path):
    """The row of ARROWS that a path belongs to, the longest that fits; None for other folders."""
    fitting = [layer for layer in ARROWS if path.startswith(layer + "/")]
    return max(fitting, key=len, default=None)


def find_cycles(edges):
    """Groups of nodes that reach each other (Tarjan, 1972)."""
    order, low, stack, groups = {}, {}, [], []

    def visit(node):
        order[node] = low[node] = len(order)
        stack.append(node)
        for target in sorted(edges.get(node, ())):
            if target not in order:
                visit(target)
                low[node] = min(low[node], low[target])
            elif target in stack:
                low[node] = min(low[node], order[target])
        if low[node] == order[node]:
            group = []
            while not group or group[-1] != node:
                group.append(stack.pop())
            if len(group) > 1:
                groups.append(sorted(group))

    for node in sorted(edges):
        if node not in order:
            visit(node)
    return groups


class Conventions(unittest.TestCase):
    def test_includes_follow_the_arrows(self):
        broken = []
        for path in list_sources(layer for layer in ARROWS if "/" not in layer):
            layer = get_layer(path)
            for include in INCLUDE.findall(read(path)):
                target = get_layer(include)
                if target is None or target == layer or target in ARROWS[layer]:
                    continue
                broken.append(f"{path} includes {include}")
        self.assertEqual(broken, [])

    def test_product_code_includes_only_its_own_folders(self):
        folders = {layer.split("/")[0] for layer in ARROWS}
        unknown = [f"{path} includes {include}" for path in list_sources(sorted(folders))
                   for include in INCLUDE.findall(read(path)) if include.split("/")[0] not in folders]
        self.assertEqual(unknown, [])

    def test_the_module_is_used_through_its_public_headers(self):
        users = [layer for layer in ARROWS if layer.split("/")[0] != "colorio"] + list(OTHER_USERS)
        private = [f"{path} includes {include}" for path in list_sources(users)
                   for include in INCLUDE.findall(read(path))
                   if include.startswith("colorio/") and include.count("/") > 1]
        self.assertEqual(private, [])

    def test_folders_form_no_cycle(self):
        edges = collections.defaultdict(set)
        for path in list_sources(layer for layer in ARROWS if "/" not in layer):
            folder = path.rsplit("/", 1)[0]
            for include in INCLUDE.findall(read(path)):
                target = include.rsplit("/", 1)[0]
                if target != folder and (ROOT / include).exists():
                    edges[folder].add(target)
        self.assertEqual(find_cycles(edges), [])

    def test_units_form_no_cycle(self):
        folders = [layer for layer in ARROWS if "/" not in layer] + ["tests", "benchmarks", "fuzz", "samples"]
        cycles = [cycle for cycle in find_unit_cycles(list_sources(folders)) if tuple(cycle) not in UNAVOIDABLE_CYCLES]
        self.assertEqual(cycles, [])

    def test_a_cycle_would_be_found(self):
        self.assertEqual(find_cycles({"a": {"b"}, "b": {"c"}, "c": {"a"}, "d": {"a"}}), [["a", "b", "c"]])

    def test_sources_are_listed(self):
        """A pattern in place of a list would miss removed files, and compile what was left lying about."""
        broken = []
        for top in [layer for layer in ARROWS if "/" not in layer] + ["tests", "benchmarks", "fuzz"]:
            for path in sorted((ROOT / top).rglob("CMakeLists.txt")):
                if re.search(r"\bfile\(GLOB", path.read_text(encoding="utf-8")):
                    broken.append(f"{path.relative_to(ROOT)} has a GLOB")
        for path in list_sources(["tests", "benchmarks"]):
            if path.endswith(".cpp") and not is_listed(path):
                broken.append(f"{path} is in no list")
        self.assertEqual(broken, [])

    def test_documented_headers_are_installed_with_what_they_include_and_no_others(self):
        wanted = set()
        waiting = re.findall(r"^\| `([^`]+\.h)` \|", read("docs/workflow.md"), re.MULTILINE)
        self.assertGreater(len(waiting), 20)
        while waiting:
            header = waiting.pop()
            if header not in wanted:
                wanted.add(header)
                waiting.extend(read_includes(header))
        self.assertEqual(list_installed_headers(),
                         {header for header in wanted if header.split("/")[0] in ("workflow", "image", "gl", "files")})

    def test_source_files_are_short(self):
        everything = [folder for folder in ARROWS if "/" not in folder] + ["tests", "benchmarks", "fuzz", "samples"]
        long = {path for path in list_sources(everything) if len(read(path).splitlines()) > MAX_LINES}
        self.assertEqual(sorted(long - LONG_FILES.keys()), [], "longer than the limit without a reason")
        self.assertEqual(sorted(LONG_FILES.keys() - long), [], "listed, but not longer than the limit")

    def test_habits(self):
        everything = [folder for folder in ARROWS if "/" not in folder] + ["tests", "benchmarks", "fuzz", "samples"]
        broken = []
        for pattern, where, why in FORBIDDEN:
            named, _, exceptions = where.partition(" but ")
            spared = exceptions.split()
            folders = everything if named == "everywhere" else named.split()
            for path in list_sources(folders):
                if any(path == place or path.startswith(place + "/") for place in spared):
                    continue
                for number, line in enumerate(read(path).splitlines(), 1):
                    if re.search(pattern, line):
                        broken.append(f"{path}:{number}: {why}: {line.strip()}")
        self.assertEqual(broken, [])


if __name__ == "__main__":
    unittest.main()
