#!/usr/bin/env python3
"""Tests of scripts/abi with a small library and the real abidw and abidiff, in a repository with a copy of the script.
"""
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[1]
HEADER = """#pragma once
#include <string>
struct Size { int width; int height; };
class ColorIO {
public:
    virtual ~ColorIO();
    virtual int measure(const Size& size);
    Size shrink(const Size& size, const std::string& name);
private:
    struct State;
    State* state = nullptr;
};
"""
SOURCE = """#include "colorio/color_io.h"
struct ColorIO::State { int count; };
ColorIO::~ColorIO() { delete state; }
int ColorIO::measure(const Size& size) { return size.width * size.height + state->count; }
Size ColorIO::shrink(const Size& size, const std::string&) { return size; }
"""


class AbiTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copytree(PROJECT / "scripts", self.folder / "scripts")
        (self.folder / "packaging" / "abi").mkdir(parents=True)
        shutil.copy(PROJECT / "packaging" / "abi" / "dropped.ini", self.folder / "packaging" / "abi")
        for name in ("host", "diagnostics", "colorio"):
            (self.folder / name).mkdir()
        self.write("CHANGELOG.md", "# Changes\n")
        self.write(".gitignore", "*.so\n")
        self.compile()
        self.git("init", "-q")
        self.commit("First commit")

    def write(self, path, text):
        (self.folder / path).write_text(text, encoding="utf-8")

    def git(self, *command):
        subprocess.run(["git", "-c", "user.name=a", "-c", "user.email=a@b.example", *command], cwd=self.folder, check=True)

    def commit(self, subject):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", subject)

    def compile(self, header=HEADER, source=SOURCE, *flags):
        self.write("colorio/color_io.h", header)
        self.write("colorio/color_io.cpp", source)
        subprocess.run(["g++", *(flags or ["-g"]), "-shared", "-fPIC", "-I.", "colorio/color_io.cpp", "-o", "lib.so"],
                       cwd=self.folder, check=True)

    def run_abi(self, *options):
        return subprocess.run(["scripts/abi", "lib.so", *options], cwd=self.folder, capture_output=True, text=True, check=False)

    def record(self, subject="Record the interface", log="# Changes\n* An interface.\n"):
        self.assertEqual(self.run_abi("--update").stderr, "")
        self.write("CHANGELOG.md", log)
        self.commit(subject)

    def expect(self, message, *options):
        done = self.run_abi(*options)
        self.assertNotEqual(done.returncode, 0, done.stdout)
        self.assertIn(message, done.stderr)
        return done

    def expect_none(self):
        done = self.run_abi()
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)

    def test_an_unchanged_interface_passes(self):
        self.record()
        self.expect_none()

    def test_a_change_behind_the_interface_passes(self):
        self.record()
        self.compile(source=SOURCE.replace("{ int count; }", "{ int before; int count; }"))
        self.expect_none()

    def test_incompatible_changes_fail(self):
        self.record()
        for old, new, message in (("int height;", "int height; int depth;", "hosts must be compiled again, unless"),
                                  ("Size shrink", "virtual Size shrink", "incompatible change of the interface"),
                                  ("Size shrink", "static Size shrink", "abi: ")):
            with self.subTest(new):
                self.compile(HEADER.replace(old, new))
                self.expect(message)
        self.compile(HEADER.replace("const Size& size, const", "Size size, const"),
                     SOURCE.replace("const Size& size, const", "Size size, const"))
        self.assertIn("_ZN7ColorIO6shrinkERK4Size", self.expect("run ./dev abi --update").stdout + self.run_abi().stdout)

    def test_an_added_function_has_to_be_recorded(self):
        self.record()
        self.compile(HEADER.replace("public:", "public:\n    static int get_one();"),
                     SOURCE + "int ColorIO::get_one() { return 1; }\n")
        self.expect("abi: the interface changed")
        self.record(log="# Changes\n* An interface.\n* ColorIO::get_one\n")
        self.expect_none()

    def test_a_recorded_change_is_in_the_change_log(self):
        self.record()
        self.compile(HEADER.replace("int height;", "int height; int depth;"))
        self.assertEqual(self.run_abi("--update").returncode, 0)
        self.expect("without a line in CHANGELOG.md: \n  what is not committed")
        self.commit("Give sizes a depth")
        self.expect("Give sizes a depth")
        self.write("CHANGELOG.md", "# Changes\n* An interface.\n* Sizes have a depth.\n")
        self.git("commit", "-q", "-a", "--amend", "-m", "Give sizes a depth")
        self.expect_none()

    def test_commits_before_the_base_are_not_looked_at(self):
        self.record("Record nothing of it", log="# Changes\n")
        self.expect("Record nothing of it")
        self.assertEqual(self.run_abi("--base", "HEAD").returncode, 0)
        self.expect("no such commit: elsewhere", "--base", "elsewhere")

    def test_what_cannot_be_compared_fails(self):
        self.expect("libqb_colorio.abi.xz does not exist")
        self.record()
        self.compile(HEADER, SOURCE, "-g0")
        self.expect("lib.so has no debug information")


if __name__ == "__main__":
    unittest.main()
