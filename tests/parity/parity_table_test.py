#!/usr/bin/env python3
"""Tests of scripts/parity_table and of the program whose values it compares.

usage: parity_table_test.py PARITY_VALUES
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
TABLE = PROJECT / "scripts" / "parity_table"
VALUES = PROJECT / "scripts" / "parity_values"
SAMPLES = PROJECT / "tests" / "configs"
PROGRAM = ""
ROW = "space\tgamma\tto scene-linear\tpixel"


def values(library, *lines):
    return "\n".join((f"library\t{library}", "grid\t0.5\t0.25\t2\t1", *lines)) + "\n"


class TableTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.set_reasons()

    def set_reasons(self, *lines):
        text = "".join(line + "\n" for line in ("# a comment", *lines))
        (self.folder / "reasons.tsv").write_text(text, encoding="utf-8")

    def run_table(self, older, newer):
        for name, text in (("older", older), ("newer", newer)):
            file = self.folder / name / "show" / "config.ocio.tsv"
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        arguments = [self.folder / name for name in ("reasons.tsv", "older", "newer")]
        return subprocess.run([sys.executable, "-B", TABLE, *arguments], capture_output=True, text=True, check=False)

    def expect(self, older, newer, status, *parts):
        done = self.run_table(older, newer)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, status, done.stdout)
        for part in parts:
            self.assertIn(part, done.stdout)

    def test_values_within_the_tolerance_need_no_reason(self):
        self.expect(values("1.1.1", f"{ROW}\t0\t1\t100\tnan"), values("2.1.2", f"{ROW}\t2e-6\t1.000012\t100.001\tnan"),
                    0, "show/config.ocio: OpenColorIO 1.1.1 and 2.1.2", "space gamma", "0.001   1.2e-05",
                    "1 rows, 0 beyond", "0 unexplained")

    def test_each_kind_of_difference_is_found(self):
        old = values("1.1.1", f"{ROW}\t0\t1\t100\t1")
        for numbers in ("2.1e-6\t1\t100\t1", "0\t1.000013\t100\t1", "0\t1\t100.0011\t1", "0\t1\t100\t0.9",
                        "nan\t1\t100\t1", "0\tinf\t100\t1"):
            with self.subTest(numbers):
                self.expect(old, values("2.1.2", f"{ROW}\t{numbers}"), 1, "UNEXPLAINED; channel ",
                            "1 beyond", "1 unexplained")

    def test_the_worst_color_is_told(self):
        self.expect(values("1.1.1", f"{ROW}\t0\t1\t100\t1"), values("2.1.2", f"{ROW}\t1e-5\t3\t100.1\t1"), 1,
                    "channel 1 of 0.5 0.25 2: 1 and 3")

    def test_images_count_too(self):
        lines = (f"{ROW}\t0\t1\t2\t1", ROW.replace("pixel", "image") + "\t0\t1\t{}\t1")
        old = values("1.1.1", *lines).format(2)
        self.expect(old, values("2.1.2", *lines).format(2), 0)
        self.expect(old, values("2.1.2", *lines).format(3), 1, "UNEXPLAINED")

    def test_a_reason_excuses_its_own_row_up_to_its_limit(self):
        old, new = values("1.1.1", f"{ROW}\t0\t1\t2\t1"), values("2.1.2", f"{ROW}\t0\t1\t2.5\t1")
        fitting = "1.*\t2.*\tshow/*\tspace gamma\tto *\tany\t0.6\tbecause so"
        self.set_reasons(fitting)
        self.expect(old, new, 0, "because so", "1 beyond", "0 unexplained")
        for change in (("0.6", "0.4"), ("gamma", "log"), ("to *", "from *"), ("show", "other"), ("2.*", "3.*")):
            with self.subTest(change):
                self.set_reasons(fitting.replace(*change))
                self.expect(old, new, 1, "UNEXPLAINED")

    def test_a_reason_excuses_its_own_values_only(self):
        old = values("1.1.1", f"{ROW}\t0\t1\t7e-7\t0.5")
        for kind, numbers, is_excused in (
                ("cut at 0", "-0.3\t1\t-0.2\t0.5", True), ("cut at 0", "0.3\t1\t7e-7\t0.5", False),
                ("cut at 0", "0\t1.2\t7e-7\t0.5", False), ("cut at 0", "0\t1\t7e-7\t-0.1", False),
                ("cut at 0", "0\t-0.1\t7e-7\t0.5", False), ("cut at 0", "nan\t1\t7e-7\t0.5", False),
                ("cut at 0 and 1", "-0.3\t1.2\t-0.2\t0.5", True), ("cut at 0 and 1", "0\t0.8\t7e-7\t0.5", False),
                ("cut at 0 and 1", "0\t1\t7e-7\t1.1", False), ("cut at 0 and 1", "1.1\t1\t7e-7\t0.5", False)):
            self.set_reasons(f"*\t*\t*\t*\t*\t{kind}\t0.6\tone does not cut")
            new = values("2.1.2", f"{ROW}\t{numbers}")
            with self.subTest(kind=kind, numbers=numbers):
                self.expect(old, new, 0 if is_excused else 1, "one does not cut" if is_excused else "UNEXPLAINED")
                # It does not matter which of the two cuts.
                self.expect(new.replace("2.1.2", "1.1.1"), old.replace("1.1.1", "2.1.2"), 0 if is_excused else 1)

    def test_what_no_reason_excuses_is_told_and_not_what_is_worse_and_excused(self):
        self.set_reasons("*\t*\t*\t*\t*\tcut at 0\t0.6\tone does not cut")
        self.expect(values("1.1.1", f"{ROW}\t0\t1\t0.2\t1"), values("2.1.2", f"{ROW}\t-0.5\t1\t0.3\t1"), 1,
                    "UNEXPLAINED; channel 2 of 0.5 0.25 2: 0.2 and 0.3")

    def test_two_reasons_may_excuse_a_row_together(self):
        self.set_reasons("*\t*\t*\t*\t*\tcut at 0\t0.6\tone does not cut", "*\t*\t*\t*\t*\tany\t0.1\tone is rough")
        self.expect(values("1.1.1", f"{ROW}\t0\t1\t0.2\t1"), values("2.1.2", f"{ROW}\t-0.5\t1\t0.25\t1"), 0,
                    "one does not cut; one is rough", "1 beyond", "0 unexplained")

    def test_a_reason_for_unknown_values_is_no_reason(self):
        self.set_reasons("*\t*\t*\t*\t*\tsome\t0.6\tbecause so")
        done = self.run_table(values("1.1.1", f"{ROW}\t0\t1\t2\t1"), values("2.1.2", f"{ROW}\t0\t1\t2\t1"))
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("unknown kind of values 'some'", done.stderr)

    def test_a_reason_that_nothing_needs_fails(self):
        same = f"{ROW}\t0\t1\t2\t1"
        reason = "1.*\t2.*\tshow/config.ocio\tspace gamma\tto *\tany\t0.6\tbecause so"
        self.set_reasons(reason)
        self.expect(values("1.1.1", same), values("2.1.2", same), 1, "reason without a difference")
        self.set_reasons(reason.replace("show/config.ocio", "*"))
        self.expect(values("1.1.1", same), values("2.1.2", same), 0)
        self.set_reasons(reason.replace("show", "other"))
        self.expect(values("1.1.1", same), values("2.1.2", same), 0)

    def test_a_conversion_that_one_library_refuses_needs_a_reason(self):
        converts = f"{ROW}\t0\t1\t2\t1"
        refused = ROW.replace("pixel", "refused\tfailed. OCIO exception: no cubes backwards")
        self.expect(values("1.1.1", refused), values("2.1.2", refused), 0, "refused by both: no cubes backwards")
        self.expect(values("1.1.1", converts), values("2.1.2", refused), 1,
                    "refused by 2.1.2: no cubes backwards; UNEXPLAINED")
        self.set_reasons("*\t*\t*\t*\t*\tany\trefused by 1.*: no cubes *\tcubes are hard")
        self.expect(values("1.1.1", refused), values("2.1.2", converts), 0, "cubes are hard")
        self.expect(values("1.1.1", converts), values("2.1.2", refused), 1, "UNEXPLAINED")

    def test_a_row_that_one_library_lacks_needs_a_reason(self):
        more = (f"{ROW}\t0\t1\t2\t1", f"{ROW}\t0\t1\t2\t1".replace("gamma", "log"))
        for old, new, library in ((more, more[:1], "1.1.1"), (more[:1], more, "2.1.2")):
            self.expect(values("1.1.1", *old), values("2.1.2", *new), 1, f"published by {library} only; UNEXPLAINED")

    def test_a_refused_configuration_is_a_row_of_its_own(self):
        converts = values("2.1.2", f"{ROW}\t0\t1\t2\t1")
        newer = "library\t1.1.1\nrefused\tOCIO exception: it needs a newer OpenColorIO than 1.1.1\n"
        self.expect(newer, converts, 0, "(configuration)", "refused by 1.1.1: it needs a newer", "1 rows, 0 beyond")
        self.expect(newer.replace("newer", "better"), converts, 1, "UNEXPLAINED")
        self.expect(newer.replace("newer", "better"), newer.replace("1.1.1", "2.1.2"), 0, "refused by 2.1.2")

    def test_a_program_that_did_not_come_to_its_end_has_no_excuse(self):
        self.set_reasons("*\t*\t*\t*\t*\tany\t*\tno matter what")
        died = "library\t{}\ncut short\tthe program ended with 139\n"
        converts = f"{ROW}\t0\t1\t2\t1"
        self.expect(died.format("1.1"), died.format("2.1"), 1, "1.1: the program ended with 139; 2.1: the program",
                    "UNEXPLAINED", "1 unexplained")
        self.expect(values("1.1.1", converts), died.format("2.1"), 1, "2.1: the program ended", "1 unexplained")
        self.expect(died.format("1.1"), values("2.1.2", converts), 1, "1.1: the program ended", "1 unexplained")

    def test_half_a_file_is_no_result(self):
        whole = values("1.1.1", f"{ROW}\t0\t1\t2\t1")
        for broken in ("", "library\t2.1.2\n", whole.replace("\t2\t1\n", "\n")):
            with self.subTest(broken):
                done = self.run_table(whole, broken)
                self.assertNotEqual(done.returncode, 0)
                self.assertNotIn("unexplained", done.stdout)


class ValuesTest(unittest.TestCase):
    """scripts/parity_values, in a project that holds nothing else."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = pathlib.Path(folder.name)
        (self.project / "scripts").mkdir()
        shutil.copy(VALUES, self.project / "scripts")
        (self.project / "build" / "parity" / "configurations").mkdir(parents=True)

    def write_values(self, *commands):
        program = self.project / "program"
        program.write_text("#!/bin/sh\n" + "\n".join(commands) + "\n", encoding="utf-8")
        program.chmod(0o755)
        subprocess.run([self.project / "scripts" / VALUES.name, "2.1", program], capture_output=True, check=True)
        return (self.project / "build/parity/values/2.1/built-in.tsv").read_text(encoding="utf-8")

    def test_what_the_program_wrote_is_kept(self):
        self.assertEqual(self.write_values("echo values"), "values\n")

    def test_a_program_that_dies_has_refused_nothing(self):
        for command, status in (("kill -SEGV $$", 139), ("exit 3", 3)):
            with self.subTest(command):
                self.assertEqual(self.write_values("echo values", command),
                                 f"library\t2.1\ncut short\tthe program ended with {status}\n")


class ProgramTest(unittest.TestCase):
    def rows_of(self, *arguments):
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return [line.split("\t") for line in done.stdout.splitlines()]

    def test_a_power_is_a_power_in_pixels_and_images(self):
        rows = self.rows_of(SAMPLES / "operations" / "config.ocio")
        self.assertEqual(rows[0][0], "library")
        self.assertEqual(rows[1][0], "grid")
        grid = [float(number) for number in rows[1][1:]]
        for size in ("pixel", "image"):
            row = next(row for row in rows if row[:4] == ["space", "gamma", "to scene-linear", size])
            self.assertEqual(len(row) - 4, len(grid))
            for at, (before, after) in enumerate(zip(grid, row[4:], strict=True)):
                expected = before if at % 4 == 3 else max(before, 0.0) ** 2.2
                self.assertAlmostEqual(float(after), expected, delta=1e-6 + 1e-5 * expected)

    def test_every_space_has_both_directions_and_every_view_one(self):
        rows = self.rows_of()[2:]
        self.assertEqual([tuple(row[:3]) for row in rows if row[3] == "pixel"], [
            ("space", "Tavelion|sRGB", "to scene-linear"), ("space", "Tavelion|sRGB", "from scene-linear"),
            ("space", "Tavelion|Cineon", "to scene-linear"), ("space", "Tavelion|Cineon", "from scene-linear"),
            ("view", "Tavelion.sRGB", "from scene-linear"), ("view", "Tavelion.Cineon", "from scene-linear"),
            ("view", "Tavelion.linear", "from scene-linear")])

    def test_names_with_full_stops_are_converted(self):
        with tempfile.TemporaryDirectory() as folder:
            config = pathlib.Path(folder) / "config.ocio"
            config.write_text("ocio_profile_version: 1\nroles: {scene_linear: lin}\n"
                              "displays:\n  Screen 2.2:\n    - !<View> {name: v. 1, colorspace: double}\n"
                              "colorspaces:\n  - !<ColorSpace>\n    name: lin\n  - !<ColorSpace>\n    name: double\n"
                              "    from_reference: !<MatrixTransform> {matrix: "
                              "[2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}\n", encoding="utf-8")
            rows = self.rows_of(config)
            row = next(row for row in rows if row[:4] == ["view", "Screen 2.2.v. 1", "from scene-linear", "pixel"])
            self.assertEqual(float(row[4]), 2 * float(rows[1][1]))

    def test_refusals_are_told(self):
        with tempfile.TemporaryDirectory() as folder:
            config = pathlib.Path(folder) / "config.ocio"
            config.write_text("ocio_profile_version: 99\n", encoding="utf-8")
            self.assertIn("needs a newer OpenColorIO", self.rows_of(config)[1][1])
            config.write_text("ocio_profile_version: 1\nroles: {scene_linear: lin}\n"
                              "displays:\n  d:\n    - !<View> {name: v, colorspace: lin}\n"
                              "colorspaces:\n  - !<ColorSpace>\n    name: lin\n  - !<ColorSpace>\n    name: lost\n"
                              "    to_reference: !<FileTransform> {src: nowhere.spi1d}\n", encoding="utf-8")
            row = self.rows_of(config)[2]
            self.assertEqual(row[:4], ["space", "lost", "to scene-linear", "refused"])
            self.assertIn("nowhere.spi1d", row[4])


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
