"""Runs the programs below examples/ as their users would. usage: examples_test.py EXAMPLE_WORKFLOW MAKE_SAMPLES"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

MAKE_SAMPLES = sys.argv.pop()
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


if __name__ == "__main__":
    unittest.main()
