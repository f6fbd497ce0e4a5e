#!/usr/bin/env python3
"""Installs a release, moves the installation, and builds other projects against it.

usage: install_test.py BUILD_FOLDER [UNITTEST_ARGUMENT...]

BUILD_FOLDER holds a release built with QB_INSTALL. The project in consumer/ is built by CMake's package with g++ and
clang, by pkg-config, and with this project as a part of it.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
CONSUMER = PROJECT / "tests" / "install" / "consumer"
COMPILERS = ("g++", "clang++")
BUILD_FOLDER = None


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} failed:\n{done.stdout}{done.stderr}")
    return done.stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="qb_install_"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        first = cls.folder / "first"
        run("cmake", "--install", BUILD_FOLDER, "--prefix", first)
        cls.prefix = cls.folder / "moved" / "prefix"
        cls.prefix.parent.mkdir()
        first.rename(cls.prefix)
        cls.libraries = next(cls.prefix.rglob("libqb_colorio.so.0")).parent

    def environment(self, **more):
        home = self.folder / "home"
        home.mkdir(exist_ok=True)
        return {"PATH": os.environ["PATH"], "HOME": str(home), "LANG": "C.UTF-8", **more}

    def check_programs(self, folder, **more):
        if (folder / "check_host").exists():
            self.assertIn("all 3 checks passed", run(folder / "check_host", "log", env=self.environment(**more)))
        spaces = run(folder / "list_spaces", env=self.environment(**more))
        self.assertEqual(spaces, "sRGB\nCineon\nlinear\n")
        if (folder / "convert_pixel").exists():
            self.assertEqual(run(folder / "convert_pixel", env=self.environment(**more)), "1 0 1 0.5\n")

    def build_consumer(self, name, *options):
        build = self.folder / name
        run("cmake", "-S", CONSUMER, "-B", build, "-G", "Ninja", *options)
        run("cmake", "--build", build)
        return build

    def test_a_cmake_project_finds_the_moved_package_with_each_compiler(self):
        for compiler in COMPILERS:
            with self.subTest(compiler):
                build = self.build_consumer(compiler, f"-DCMAKE_PREFIX_PATH={self.prefix}",
                                            f"-DCMAKE_CXX_COMPILER={compiler}")
                self.assertTrue((build / "check_host").exists(), "qb::conformance was not found")
                self.assertTrue((build / "convert_pixel").exists(), "qb::workflow was not found")
                self.check_programs(build)

    def test_a_makefile_finds_it_by_pkg_config(self):
        build = self.folder / "by_pkg_config"
        build.mkdir()
        environment = {**os.environ, "PKG_CONFIG_PATH": str(self.libraries / "pkgconfig")}
        for program, package in (("list_spaces", "qb_colorio"), ("convert_pixel", "qb_workflow")):
            flags = run("pkg-config", "--cflags", "--libs", package, env=environment).split()
            run("g++", CONSUMER / f"{program}.cpp", *flags, f"-Wl,-rpath,{self.libraries}", "-o", build / program)
        self.check_programs(build)

    def test_a_project_may_hold_this_one_as_a_part(self):
        build = self.build_consumer("subproject", f"-DQB_COLORIO_SOURCE={PROJECT}")
        self.check_programs(build)
        self.assertEqual(list(build.rglob("test_*")), [], "tests of a subproject are not built")

    def test_installed_headers_find_all_that_they_include(self):
        include = self.prefix / "include" / "qb_colorio"
        flags = run("pkg-config", "--cflags", "qb_workflow",
                    env={**os.environ, "PKG_CONFIG_PATH": str(self.libraries / "pkgconfig")}).split()
        headers = sorted(include.rglob("*.h"))
        self.assertGreater(len(headers), 90)
        names = {str(header.relative_to(include)) for header in headers}
        documented = re.findall(r"^\| `([^`]+\.h)` \|", (PROJECT / "docs" / "workflow.md").read_text(), re.MULTILINE)
        self.assertEqual([name for name in documented if name not in names], [])
        self.assertNotIn("workflow/text_file.h", names, "it is not documented")
        source = self.folder / "headers.cpp"
        source.write_text("".join(f'#include "{header.relative_to(include)}"\n' for header in headers))
        run("g++", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", source, *flags)

    def test_nothing_of_the_build_tree_is_inside(self):
        places = (str(BUILD_FOLDER.resolve()).encode(), str(PROJECT).encode(), str(self.folder / "first").encode())
        for file in self.prefix.rglob("*"):
            if file.is_file() and not file.is_symlink():
                content = file.read_bytes()
                for place in places:
                    self.assertFalse(place in content, f"{file} names {place.decode()}")

    def test_libraries_have_versioned_names(self):
        for name in ("libqb_colorio.so", "libqb_standalone.so"):
            dynamic = run("readelf", "--dynamic", self.libraries / name)
            self.assertRegex(dynamic, rf"SONAME.*\[{re.escape(name)}\.\d+\]")
            self.assertTrue((self.libraries / name).is_symlink())

    def test_the_tool_runs_from_where_it_was_moved(self):
        tool = self.prefix / "bin" / "colorio"
        self.assertRegex(run(tool, "--version", env=self.environment()), r"\d+\.\d+\.\d+")
        self.assertIn("Tavelion|sRGB", run(tool, "list", "spaces", env=self.environment()))

    def test_the_tool_is_installed_with_its_other_program_man_pages_and_completion(self):
        self.assertIn("destination:   Tavelion|linear", run(self.prefix / "bin" / "colorio", "explain", "sRGB", "linear",
                                                            env=self.environment()))
        for name in ("man/man1/colorio.1", "man/man1/colorio-cdl-write.1", "bash-completion/completions/colorio",
                     "zsh/site-functions/_colorio", "fish/vendor_completions.d/colorio.fish"):
            self.assertTrue((self.prefix / "share" / name).is_file(), name)

    def test_the_python_package_works_from_where_it_was_moved(self):
        package = next(self.prefix.rglob("qb_colorio/__init__.py")).parent
        self.assertTrue((package / "py.typed").exists() and (package / "__init__.pyi").exists())
        code = ("import numpy, qb_colorio\n"
                "qb_colorio.write_image('a.exr', numpy.ones((2, 3, 4), numpy.float16))\n"
                "with qb_colorio.Session('builtin', preferences=False) as session:\n"
                "    pixels = session.convert(qb_colorio.read_image('a.exr').pixels, 'sRGB', 'linear')\n"
                "print(pixels.shape, pixels.dtype, qb_colorio.__file__)\n")
        self.assertEqual(run("/usr/bin/python3", "-B", "-c", code, cwd=self.folder,
                             env=self.environment(PYTHONPATH=str(package.parent))),
                         f"(2, 3, 4) float16 {package / '__init__.py'}\n")

    def test_components_can_be_installed_alone(self):
        for component, holds, lacks in (("runtime", "libqb_colorio.so.0", "*.h"), ("tool", "colorio", "*.so*"),
                                        ("python", "_core.*.so", "libqb_*"),
                                        ("development", "qb_colorio-config.cmake", "libqb_colorio.so.0.*")):
            with self.subTest(component):
                prefix = self.folder / f"only_{component}"
                run("cmake", "--install", BUILD_FOLDER, "--prefix", prefix, "--component", component)
                self.assertNotEqual(list(prefix.rglob(holds)), [])
                self.assertEqual(list(prefix.rglob(lacks)), [])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BUILD_FOLDER = pathlib.Path(sys.argv.pop(1))
    unittest.main()
