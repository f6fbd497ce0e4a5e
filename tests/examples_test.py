"""Runs the programs below examples/ as their users would.

usage: examples_test.py EXAMPLE_WORKFLOW EXAMPLE_HOST MAKE_SAMPLES
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

MAKE_SAMPLES = sys.argv.pop()
EXAMPLE_HOST = sys.argv.pop()
EXAMPLE_WORKFLOW = sys.argv.pop()

CONFIG = """ocio_profile_version: 1
search_path: .
roles: {scene_linear: lin, default: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: film}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: film, from_reference: !<ExponentTransform> {value: [0.5, 0.5, 0.5, 1]}}
"""


class Workflow(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "show.ocio").write_text(CONFIG, encoding="utf-8")
        subprocess.run([MAKE_SAMPLES, self.folder], check=True, stdout=subprocess.DEVNULL)

    def run_example(self, *arguments):
        return subprocess.run([EXAMPLE_WORKFLOW, *arguments], capture_output=True, text=True, check=False)

    def test_converts_and_explains(self):
        output = self.folder / "out.png"
        result = self.run_example(self.folder / "show.ocio", "scene_linear", self.folder / "chart_half.exr", output)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertGreater(output.stat().st_size, 0)
        # 0.18 to the power of 0.5
        self.assertAlmostEqual(float(result.stdout.splitlines()[0].rsplit(" ", 1)[1]), 0.42426406871, places=5)

    def test_shows_the_diagnostic_of_a_failure(self):
        output = self.folder / "out.png"
        result = self.run_example(self.folder / "show.ocio", "scene_linaer", self.folder / "chart_half.exr", output)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "color-space-unknown: no color space 'scene_linaer' in show.ocio; "
                         "hint: did you mean 'scene_linear'?\n")
        self.assertFalse(output.exists())

    def test_says_how_it_is_used(self):
        self.assertEqual(self.run_example().returncode, 2)


class Host(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.config = self.folder / "show.ocio"
        self.config.write_text(CONFIG, encoding="utf-8")

    def run_example(self, *arguments):
        return subprocess.run([EXAMPLE_HOST, *arguments], capture_output=True, text=True, check=False,
                              env={**os.environ, "HOME": str(self.folder)})

    def test_publishes_a_config_and_converts_a_color(self):
        result = self.run_example(self.config, "lin", "film", "0.25", "0.5", "1")
        self.assertEqual(result.returncode, 0, result.stderr)
        # 0.5 to the power of 0.5
        self.assertEqual(result.stdout, "color spaces: lin film\n0.5 0.707107 1\n")

    def test_writes_the_built_in_luts(self):
        self.run_example(self.config, "lin", "film", "0.25", "0.5", "1")
        luts = sorted(path.name for path in self.folder.glob(".example_host/luts/*"))
        self.assertEqual(luts, ["cineon.spi1d", "srgb.spi1d"])

    def test_writes_messages_to_its_own_log(self):
        result = self.run_example(self.config, "lin", "flim", "0.25", "0.5", "1")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.splitlines()[-1], "example_host: warning: Color Management: failed to configure "
                         "the color converter. Destination color space 'flim' doesn't exist.")

    def test_says_how_it_is_used(self):
        self.assertEqual(self.run_example().returncode, 2)

    def test_needs_no_other_host(self):
        loaded = subprocess.run(["ldd", EXAMPLE_HOST], capture_output=True, text=True, check=True).stdout
        libraries = set(re.findall(r"^\s*(lib(?:qb|example)_\w+)", loaded, re.MULTILINE))
        self.assertEqual(libraries, {"libexample_host_framework", "libexample_host_module"})


if __name__ == "__main__":
    unittest.main()
