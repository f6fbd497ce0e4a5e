"""Runs the code blocks of the documents, in a folder with the files that they name.

usage: documents_test.py TOOL MAKE_SAMPLES CXX

Every fenced block has a language, which decides what is done with it:
    sh        run by bash, which stops at the first failure
    console   the commands after "$ " are run, and print the text below them; "..." stands for anything
    cpp       compiled
    cmake     configured, in one project
    python    an example with ">>>", run by tests/python/test_documents.py
    text      a script of the viewer, or listed below
    yaml, xml files that a command of the same document reads
What cannot be run is in NOT_RUN, by its line or, for a block of text, by its first line.
"""

import collections
import concurrent.futures
import functools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

CXX = sys.argv.pop()
MAKE_SAMPLES = pathlib.Path(sys.argv.pop()).resolve()
TOOL = pathlib.Path(sys.argv.pop()).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[1]

NOT_RUN = {
    "builds, tests or measures the project, which takes minutes": [
        "./dev run", "./dev test", "./dev build", "./dev lint", "./dev format", "./dev help", "./dev docs",
        "./dev test 'test_xml'", "./dev fresh --packages", "BENCH_REPETITIONS=5 ./dev bench 'pixel|sequence'",
        "BENCH_REPETITIONS=3 ./dev bench --ocio 2.5 pixel",
        "scripts/plot_performance build/release/benchmarks docs/performance.md",
        "scripts/plot_performance build/ocio-2.5-release/benchmarks docs/performance-2.5.md"],
    "needs a finished build of the project; tests/install does the same": [
        "cmake --install build/release --prefix /opt/qb_colorio",
        "find_package(qb_colorio 0.1 CONFIG REQUIRED COMPONENTS standalone OPTIONAL_COMPONENTS workflow)"],
    "builds the module for another host; tests/building_test.py configures that": [
        "cmake -S . -B build/module -DQB_HOST_LIBRARIES=/opt/app/lib/libapp_host.so",
        "cmake -S qb_colorio -B build/module -DQB_HOST_LIBRARIES=/opt/app/lib/libapp_host.so",
        "cmake --build build/module",
        "cmake --install build/module --prefix /opt/app"],
    "goes to the folder of the build, in place of which this test has its own": [
        "export PATH=$PWD/build/release/tool:$PATH", "cd build/demo"],
    "for an interactive shell; tests/manual/shells_test.py uses it in one": ["source manual/completion.bash"],
    "starts an interactive interpreter": ["PYTHONPATH=build/release/python python3"],
    "opens a window": [
        "colorio view render.exr", "colorio view chart_half.exr",
        'colorio view a.exr b.png --config show.ocio --view "sRGB.Film"',
        'colorio view graded.png --config show.ocio --inverse-view "sRGB.Film" --view "P3.Film"'],
    "output of an example; tests/examples_test.py compares it": ["color spaces: lin film"],
    "the conformance kit; tests/conformance runs it with these options": [
        "app_conformance                     run all checks",
        "FAILED  enumerations.nested-sleep: only the last awake ends a sleep that was begun several times"],
}

# Documents whose commands use the built-in config; those of the others find show.ocio by the variable OCIO.
WITH_BUILT_IN_CONFIG = ["README.md", "docs/tutorial.md"]

# Documents whose blocks of text are scripts of the viewer.
WITH_VIEWER_SCRIPTS = ["docs/viewer.md"]

# What blocks of these languages are written to.
FILES = {"yaml": "mapping.yaml", "xml": "shot_010.cc"}

# What the C++ of a document finds declared.
DECLARATIONS = {
    "README.md": "extern float* pixels; extern unsigned int width, height;",
    "docs/host.md": '#include "examples/host/app.h"\n#include "host/parser/parser_entry.h"\n'
                    "struct App : ExampleApp { App(); };\nextern ParserEntry* entry;",
}

CONFIG = """ocio_profile_version: 2
environment: {SHOT: sq010}
search_path: luts
roles: {scene_linear: ACEScg, color_timing: ACEScct, default: Raw}
file_rules:
  - !<Rule> {name: Scans, pattern: "*", extension: dpx, colorspace: ACEScct}
  - !<Rule> {name: Renders, pattern: "*", extension: exr, colorspace: ACEScg}
  - !<Rule> {name: Default, colorspace: default}
displays:
  sRGB:
    - !<View> {name: Film, colorspace: sRGB}
    - !<View> {name: Raw, colorspace: Raw}
  P3:
    - !<View> {name: Film, colorspace: sRGB}
  Monitor:
    - !<View> {name: Film, colorspace: sRGB}
  Tavelion:
    - !<View> {name: sRGB, colorspace: sRGB}
    - !<View> {name: linear, colorspace: ACEScg}
looks:
  - !<Look> {name: film, process_space: ACEScct, transform: !<CDLTransform> {slope: [1.1, 1, 0.9]}}
  - !<Look> {name: warm, process_space: ACEScct, transform: !<CDLTransform> {offset: [0.01, 0, -0.01]}}
colorspaces:
  - !<ColorSpace> {name: ACEScg, aliases: [linear], encoding: scene-linear}
  - !<ColorSpace> {name: Raw, isdata: true}
  - !<ColorSpace>
    name: ACES2065-1
    encoding: scene-linear
    from_reference: !<MatrixTransform> {matrix: [0.5, 0.25, 0.25, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: ACEScct
    aliases: [Cineon]
    encoding: log
    from_reference: !<LogAffineTransform> {base: 2, lin_side_offset: [0.0078125, 0.0078125, 0.0078125], log_side_slope: [0.057, 0.057, 0.057], log_side_offset: [0.5548, 0.5548, 0.5548]}
  - !<ColorSpace>
    name: sRGB
    encoding: sdr-video
    from_reference: !<ExponentWithLinearTransform> {gamma: [2.4, 2.4, 2.4, 1], offset: [0.055, 0.055, 0.055, 0], direction: inverse}
  - !<ColorSpace>
    name: Shot
    from_reference: !<FileTransform> {src: $SHOT/grade.cc}
named_transforms:
  - !<NamedTransform> {name: Printing density, transform: !<ExponentTransform> {value: [2, 2, 2, 1]}}
"""

# A show whose LUT was not delivered.
BROKEN_CONFIG = CONFIG.replace("$SHOT/grade.cc", "film_print.cube")

CORRECTION = ("<ColorCorrection id='{}'><SOPNode><Slope>{}</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
              "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>\n")

Block = collections.namedtuple("Block", "document line language text")


def list_documents():
    paths = [PROJECT / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md")]
    return [path.relative_to(PROJECT).as_posix() for path in paths + sorted((PROJECT / "docs").rglob("*.md"))]


def read_blocks(document, text):
    """The fenced blocks of a document, without the indentation of the list that they are in."""
    blocks, opened = [], None
    for number, line in enumerate(text.splitlines(), 1):
        fence = re.match(r"^( *)(`{3,}|~{3,})\s*(\S*)", line)
        if opened is None and fence:
            opened, lines = (number, *fence.groups()), []
        elif opened and fence and fence.group(2) == opened[2] and not fence.group(3):
            blocks.append(Block(document, opened[0], opened[3], "\n".join(lines)))
            opened = None
        elif opened:
            lines.append(line.removeprefix(opened[1]))
    if opened:
        raise ValueError(f"{document}:{opened[0]}: a block without an end")
    return blocks


def read_all_blocks():
    return [block for document in list_documents()
            for block in read_blocks(document, (PROJECT / document).read_text(encoding="utf-8"))]


def read_prose(text):
    """A document without its fenced blocks."""
    return re.sub(r"^ *(`{3,}|~{3,}).*?^ *\1$", "", text, flags=re.MULTILINE | re.DOTALL)


def make_anchors(text):
    """What links call the headings of a document."""
    headings = re.findall(r"^#+ (.+)$", read_prose(text), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def find_broken_links(document, text):
    """Links to files or headings that do not exist."""
    broken = []
    for path, anchor in re.findall(r"\]\(([^)\s#]*)#?([^)\s]*)\)", read_prose(text)):
        if "://" in path:
            continue
        target = (PROJECT / document).parent / path
        if not target.exists():
            broken.append(f"{document}: {path}")
        elif anchor and anchor not in make_anchors(target.read_text(encoding="utf-8") if path else text):
            broken.append(f"{document}: {path}#{anchor}")
    return broken


def strip_comment(line):
    """A line of a shell without its comment."""
    return re.sub(r"(^|\s)#\s.*$", "", line).rstrip()


def list_not_run():
    return {line for lines in NOT_RUN.values() for line in lines}


def is_listed(block):
    """Whether no line of a block is to be run."""
    lines = [strip_comment(line) for line in block.text.splitlines()]
    if block.language in ("text", "cmake"):
        return lines[0] in list_not_run()
    return all(line in list_not_run() for line in lines if line)


def find_unknown(blocks):
    """The blocks with which this test does nothing, and which are not listed."""
    known = {"sh", "console", "cpp", "cmake", "python", *FILES}
    unknown = []
    for block in blocks:
        is_script = block.language == "text" and block.document in WITH_VIEWER_SCRIPTS
        if block.language not in known and not is_script and not is_listed(block):
            unknown.append(f"{block.document}:{block.line}")
        if block.language == "python" and not block.text.startswith(">>> "):
            unknown.append(f"{block.document}:{block.line}")
    return unknown


def make_images(folder):
    """A render with layers, and frames of two parts, in half floats; a scan and images for monitors."""
    color = "pattern constant:color={} 4x4 {}".format
    layers = ["--" + color("0.2,0.4,0.6,0.1,0.2,0.3,0.3,0.2,0.1,5", 10), "-d", "half", "--chnames",
              "R,G,B,diffuse.R,diffuse.G,diffuse.B,albedo.R,albedo.G,albedo.B,Z"]
    rgb = ["--" + color("0.2,0.4,0.6", 3)]

    def split(words):
        return [part for word in words for part in (word.split(" ") if word.startswith("--pattern") else [word])]

    def write(words, *names):
        outputs = [part for name in names for part in ("-o", str(folder / name))]
        subprocess.run(["oiiotool", *split(words), *outputs], check=True, capture_output=True)

    frames = range(1, 25)
    parts = [*rgb, "--attrib", "oiio:subimagename", "beauty", *rgb, "--attrib", "oiio:subimagename", "glow",
             "--siappend", "-d", "half"]
    write(layers, "render.exr", "layers.exr", "a.exr")
    write([*rgb, "-d", "half"], "plate.exr", "log.exr", "still.exr", "graded.exr")
    write(parts, *(f"shot.{frame:04}.exr" for frame in frames))
    write([*rgb, "-d", "uint10"], "scan.dpx", *(f"scan.{frame:04}.dpx" for frame in frames))
    write([*rgb, "-d", "uint8"], "graded.png", "texture.png", "b.png")
    write([*rgb, "-d", "half", "--attrib", "Color", "linear"], "shot.exr")


def make_show(folder):
    subprocess.run([MAKE_SAMPLES, folder], check=True, stdout=subprocess.DEVNULL)
    make_images(folder)
    files = {
        "show.ocio": CONFIG, "aces.ocio": CONFIG, "shows/studio.ocio": CONFIG, "broken.ocio": BROKEN_CONFIG,
        "grades.ccc": f"<ColorCorrectionCollection>{CORRECTION.format('shot_010', '1.5 1 1')}"
                      f"{CORRECTION.format('shot_020', '1 1 0.5')}</ColorCorrectionCollection>",
        "luts/sq010/grade.cc": CORRECTION.format("sq010", "1.5 1 1"),
        "luts/sq020/grade.cc": CORRECTION.format("sq020", "1 1.25 0.5"),
        "show.cube": "LUT_1D_SIZE 2\n0 0 0\n0.5 0.5 0.5\n",
    }
    for name, text in files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text, encoding="utf-8")


def is_like(expected, actual):
    """Whether a text is as expected, where "..." stands for any."""
    pattern = ".*".join(re.escape(part) for part in expected.strip().split("..."))
    return re.fullmatch(pattern, re.sub(r"[ \t]+$", "", actual.strip(), flags=re.MULTILINE), re.DOTALL) is not None


class Shell:
    """A user's folder, with a copy of the show and with the tool in the path."""

    def __init__(self, show, folder, document):
        self.folder = folder
        shutil.copytree(show, folder, dirs_exist_ok=True)
        (folder / "home").mkdir()
        (folder / "bin").mkdir()
        (folder / "bin" / "colorio").symlink_to(TOOL)
        self.environment = {name: value for name, value in os.environ.items()
                            if name not in ("OCIO", "DISPLAY", "WAYLAND_DISPLAY") and not name.startswith("XDG_")}
        self.environment.update(HOME=str(folder / "home"), PATH=f"{folder / 'bin'}:{os.environ['PATH']}")
        if document not in WITH_BUILT_IN_CONFIG:
            self.environment["OCIO"] = str(folder / "show.ocio")

    def run(self, script):
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=self.folder, env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def run_commands(self, block):
        """The failures of a block of the language sh."""
        script = "\n".join(line for line in block.text.splitlines() if strip_comment(line) not in list_not_run())
        code, output = self.run(script)
        if code != 0 or re.search(r"^colorio: error", output, re.MULTILINE):
            return [f"{block.document}:{block.line}: exit code {code}\n{script}\n{output}"]
        return []

    def run_session(self, block):
        """The commands of a block of the language console whose output differs."""
        failures = []
        for entry in re.split(r"^\$ ", block.text, flags=re.MULTILINE)[1:]:
            command, _, expected = entry.partition("\n")
            code, output = self.run(command)
            is_failure = re.search(r"colorio: error:|^  failed:", expected, re.MULTILINE) is not None
            if not is_like(expected, output) or (code != 0) != is_failure:
                failures.append(f"{block.document}:{block.line}: exit code {code}\n$ {command}\n{output}")
        return failures

    def run_viewer(self, block):
        (self.folder / "tour.txt").write_text(block.text + "\n", encoding="utf-8")
        code, output = self.run("colorio view chart_half.exr --script tour.txt --no-window")
        return [] if code == 0 else [f"{block.document}:{block.line}: exit code {code}\n{output}"]


def run_document(show, blocks):
    """The failures of the blocks of a document, in their order in one folder."""
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        shell = Shell(show, pathlib.Path(folder), blocks[0].document)
        scripts = [block for block in blocks if block.language == "text"]
        if scripts:
            (shell.folder / "tour.txt").write_text(scripts[0].text + "\n", encoding="utf-8")
        for block in blocks:
            if block.language in FILES:
                (shell.folder / FILES[block.language]).write_text(block.text + "\n", encoding="utf-8")
            elif block.language == "console":
                failures += shell.run_session(block)
            elif block in scripts:
                failures += shell.run_viewer(block)
            elif block.language == "sh":
                failures += shell.run_commands(block)
    return failures


def compile_block(block):
    """The errors of the compiler; statements become the body of a function."""
    includes = [line for line in block.text.splitlines() if line.startswith("#include")]
    statements = [line for line in block.text.splitlines() if not line.startswith("#include")]
    source = "\n".join([*includes, DECLARATIONS.get(block.document, ""), "void documented() {", *statements, "}\n"])
    done = subprocess.run([CXX, "-std=c++17", "-fsyntax-only", "-Wall", "-I", PROJECT, "-x", "c++", "-"], input=source,
                          capture_output=True, text=True, check=False)
    return [] if done.returncode == 0 else [f"{block.document}:{block.line}\n{done.stderr}"]


def configure_project(blocks):
    """The errors of CMake for a host's project that consists of the blocks."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "qb_colorio").symlink_to(PROJECT)
        for source in ("strings.cpp", "events.cpp", "main.cpp", "conformance.cpp"):
            (folder / source).touch()
        (folder / "CMakeLists.txt").write_text("cmake_minimum_required(VERSION 3.25)\nproject(app LANGUAGES CXX)\n" +
                                               "\n".join(block.text for block in blocks), encoding="utf-8")
        done = subprocess.run(["cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build"], capture_output=True,
                              text=True, check=False)
    return [] if done.returncode == 0 else [f"{blocks[0].document}\n{done.stderr}"]


def setUpModule():
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    global SHOW
    SHOW = pathlib.Path(folder.name)
    make_show(SHOW)


class Documents(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.blocks = read_all_blocks()

    def list_blocks(self, *languages):
        return [block for block in self.blocks if block.language in languages]

    def test_every_block_is_run_or_listed(self):
        self.assertGreater(len(self.blocks), 50)
        self.assertEqual(find_unknown(self.blocks), [])

    def test_everything_listed_is_in_a_document(self):
        lines = {strip_comment(line) for block in self.blocks for line in block.text.splitlines()}
        self.assertEqual(list_not_run() - lines, set())
        self.assertEqual({*WITH_BUILT_IN_CONFIG, *WITH_VIEWER_SCRIPTS, *DECLARATIONS} - set(list_documents()), set())

    def test_links_lead_somewhere(self):
        broken = [link for document in list_documents()
                  for link in find_broken_links(document, (PROJECT / document).read_text(encoding="utf-8"))]
        self.assertEqual(broken, [])

    def test_all_documents_are_in_the_index(self):
        """By a link of the start page, or beside one of the decisions."""
        index = (PROJECT / "docs" / "index.md").read_text(encoding="utf-8")
        linked = {os.path.normpath(os.path.join("docs", path)) for path in re.findall(r"\]\(([^)]+\.md)\)", index)}
        documents = {name for name in list_documents() if name.startswith("docs/") and "/decisions/0" not in name}
        self.assertEqual(documents - {"docs/index.md"} - linked, set())

    def test_verbs_of_dev_exist(self):
        used = {verb for block in self.list_blocks("sh") for verb in re.findall(r"\./dev (\w+)", block.text)}
        usage = subprocess.run([PROJECT / "dev", "help"], check=True, capture_output=True, text=True).stdout
        self.assertEqual(used - set(re.findall(r"^  (\w+)", usage, re.MULTILINE)) - {"help"}, set())

    def test_commands_work(self):
        documents = collections.defaultdict(list)
        for block in self.list_blocks("sh", "console", "text", *FILES):
            if not is_listed(block):
                documents[block.document].append(block)
        longest_first = sorted(documents.values(), key=lambda blocks: -sum(block.text.count("\n") for block in blocks))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as threads:
            failures = list(threads.map(functools.partial(run_document, SHOW), longest_first))
        self.assertEqual([failure for some in failures for failure in some], [])

    def test_files_are_used_by_commands(self):
        for block in self.list_blocks(*FILES):
            commands = [other.text for other in self.list_blocks("sh") if other.document == block.document]
            self.assertIn(FILES[block.language], "\n".join(commands), f"{block.document}:{block.line}")

    def test_cpp_compiles(self):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as threads:
            failures = list(threads.map(compile_block, self.list_blocks("cpp")))
        self.assertEqual([failure for some in failures for failure in some], [])

    def test_cmake_configures(self):
        blocks = [block for block in self.list_blocks("cmake") if not is_listed(block)]
        self.assertEqual({block.document for block in blocks}, {"docs/host.md"})
        self.assertEqual(configure_project(blocks), [])


class Failures(unittest.TestCase):
    """What is wrong in a document is found."""

    def run_text(self, text):
        blocks = read_blocks("docs/some.md", text)
        return find_unknown(blocks) or run_document(SHOW, blocks)

    def test_blocks_without_a_known_language(self):
        for language in ("", "text", "bash", "python"):
            self.assertEqual(find_unknown(read_blocks("a.md", f"Text\n```{language}\nls\n```\n")), ["a.md:2"], language)

    def test_blocks_without_an_end(self):
        with self.assertRaisesRegex(ValueError, "a.md:1: a block without an end"):
            read_blocks("a.md", "```sh\nls\n````\n")

    def test_links_that_lead_nowhere(self):
        text = "# Some heading\n[a](missing.md) [b](#some-heading) [c](#other) [d](guide.md#no-such)\n```sh\n[e](no.md)\n```\n"
        self.assertEqual(find_broken_links("docs/some.md", text),
                         ["docs/some.md: missing.md", "docs/some.md: #other", "docs/some.md: guide.md#no-such"])

    def test_commands_that_fail(self):
        self.assertEqual(self.run_text("```sh\ncolorio list spaces\n```\n"), [])
        self.assertIn("spcaes", "".join(self.run_text("```sh\ncolorio list spcaes\ncolorio list\n```\n")))

    def test_output_that_differs(self):
        self.assertEqual(self.run_text("```console\n$ colorio list roles\n...role...scene_linear...\n```\n"), [])
        self.assertEqual(len(self.run_text("```console\n$ colorio list roles\nscene_linear: ACEScg\n```\n")), 1)

    def test_cpp_that_does_not_compile(self):
        block = read_blocks("a.md", '```cpp\n#include "xml/xml_node.h"\nXmlNode::parse(1, 2);\n```')[0]
        self.assertEqual(len(compile_block(block)), 1)


if __name__ == "__main__":
    unittest.main()
