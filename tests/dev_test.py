#!/usr/bin/env python3
"""Tests of what ./dev makes of its arguments, in a project where nothing is built: other programs stand in for those
that would do the work, and report how they were called.
"""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[1]
STAND_IN = '#!/bin/sh\necho "called: $(basename "$0") $*"\n'


class DevTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.project = self.folder / "project"
        self.project.mkdir()
        shutil.copy(PROJECT / "dev", self.project)
        shutil.copytree(PROJECT / "scripts", self.project / "scripts")
        self.stand_in(self.project / "scripts" / "debian_root")
        (self.folder / "bin").mkdir()
        for name in ("cmake", "ctest", "curl", "apt-get"):
            self.stand_in(self.folder / "bin" / name)
        self.stand_in(self.folder / "bin" / "dpkg-query", "#!/bin/sh\nprintf 'install ok installed'\n")

    def stand_in(self, path, text=STAND_IN):
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)

    def run_dev(self, *arguments, **variables):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("QB_")}
        environment.update(variables, PATH=f"{self.folder / 'bin'}:{os.environ['PATH']}")
        return subprocess.run([self.project / "dev", *arguments], env=environment, capture_output=True, text=True,
                              check=False)

    def make_fuzz_target(self, name, runs, ending):
        folder = self.project / "build" / "fuzz" / "fuzz" / "room"
        folder.mkdir(parents=True, exist_ok=True)
        noise = "echo a message of the library >&2; " * 20
        self.stand_in(folder / name, f"#!/bin/sh\necho \"options: $*\"; {noise}\n"
                                     f"echo 'stat::number_of_executed_units: {runs}' >&2\n"
                                     f"echo 'stat::average_exec_per_sec:     {runs // 2}' >&2\n{noise}\n{ending}\n")

    def make_configs(self, *path):
        folder = self.folder.joinpath(*path)
        folder.mkdir(parents=True)
        (folder / "show.ocio").write_text(path[0], encoding="utf-8")
        return folder

    def test_a_wrong_library_to_leave_out_is_refused_before_anything_is_built(self):
        for arguments in (("--without", "2.6"), ("--without",)):
            with self.subTest(arguments):
                done = self.run_dev("parity", *arguments)
                self.assertNotEqual(done.returncode, 0)
                self.assertIn("--without takes 2.5", done.stderr)
                self.assertNotIn("called: ", done.stdout + done.stderr)

    def test_faults_take_no_further_arguments(self):
        done = self.run_dev("test", "--faults", "Preferences")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("--faults takes no other arguments", done.stderr)
        self.assertNotIn("called: ", done.stdout + done.stderr)

    def test_a_failure_to_configure_is_told_in_full(self):
        self.stand_in(self.folder / "bin" / "cmake", "#!/bin/sh\necho some words\necho more >&2\nexit 1\n")
        done = self.run_dev("build")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("some words\nmore\n", done.stderr)
        self.assertIn("configuring release failed", done.stderr)

    def test_folders_are_copied_to_where_a_system_of_its_own_sees_them(self):
        folders = [self.make_configs("one"), self.make_configs("two", "deeper")]
        options = [part for folder in folders for part in ("--configs", str(folder))]
        done = self.run_dev("test", "--ocio", "2.5", *options, "pixel")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("./dev test --configs build/test_configs pixel\n", done.stdout)
        for name, text in (("one", "one"), ("deeper", "two")):
            self.assertEqual((self.project / "build/test_configs" / name / "show.ocio").read_text(), text)

    def test_the_test_of_several_threads_is_built_and_run_by_itself(self):
        done = self.run_dev("test", "--threads")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("called: cmake --build --preset threads --target test_threads\n", done.stdout)
        self.assertIn("called: ctest --test-dir build/threads --output-on-failure -R ^test_threads$\n", done.stdout)
        self.assertNotEqual(self.run_dev("test", "--threads", "--ocio").returncode, 0)

    def test_documents_are_those_of_the_built_tool_and_python_package(self):
        self.stand_in(self.project / "scripts" / "build_docs", "#!/bin/sh\necho called: build_docs $*\n")
        done = self.run_dev("docs")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("called: cmake --build --preset release --target colorio qb_python\n"
                      "called: build_docs build/release build/docs\n", done.stdout)
        self.assertIn("docs takes no arguments", self.run_dev("docs", "html").stderr)

    def test_another_processor_is_arm64_and_for_pixel_alone(self):
        fetched = self.project / "scripts" / "fetch_arm64"
        self.stand_in(fetched, "#!/bin/sh\necho called: fetch_arm64 $1\n")
        done = self.run_dev("test", "--arch", "arm64", "pixel")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("called: fetch_arm64 build/arm64-packages\n", done.stdout)
        self.assertIn("called: cmake --build build/arm64\n", done.stdout)
        self.assertIn("called: ctest --test-dir build/arm64 --output-on-failure -j", done.stdout)
        self.assertIn(" -R pixel\n", done.stdout)
        for wrong in (["--arch"], ["--arch", "riscv"], ["--arch", "arm64", "a", "b"]):
            self.assertIn("--arch takes arm64", self.run_dev("test", *wrong).stderr)

    def test_benchmarks_run_with_another_version_in_its_system(self):
        done = self.run_dev("bench", "--ocio", "2.5", "pixel")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("./dev bench pixel\n", done.stdout)
        self.assertIn("bench --ocio takes 2.5, not '1.1'", self.run_dev("bench", "--ocio", "1.1").stderr)

    def test_packages_are_built_and_tried(self):
        for script in ("package", "fresh", "fresh_packages"):
            self.stand_in(self.project / "scripts" / script)
        for arguments, called in ((["package"], "package"), (["fresh"], "fresh"),
                                  (["fresh", "--packages"], "package fresh_packages")):
            with self.subTest(arguments):
                done = self.run_dev(*arguments)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual(done.stdout.split(), [word for name in called.split() for word in ("called:", name)])
        for wrong in (["package", "--fast"], ["fresh", "--package"], ["fresh", "--packages", "all"]):
            with self.subTest(wrong):
                done = self.run_dev(*wrong)
                self.assertNotEqual(done.returncode, 0)
                self.assertIn(f"dev: {wrong[0]} takes ", done.stderr)
                self.assertEqual(done.stdout, "")

    def make_packages(self, *tags, lintian=STAND_IN):
        """Runs scripts/package on a commit with these tags; returns its result and the changelog of the packages."""
        (self.project / "CMakeLists.txt").write_text("project(qb_colorio VERSION 3.2.1 LANGUAGES CXX)\n", encoding="utf-8")
        (self.project / ".gitignore").write_text("build/\n", encoding="utf-8")
        shutil.copytree(PROJECT / "packaging" / "debian", self.project / "packaging" / "debian", dirs_exist_ok=True)
        (self.project / "not_committed.txt").write_text("text", encoding="utf-8")
        self.stand_in(self.folder / "bin" / "dpkg-buildpackage")
        self.stand_in(self.folder / "bin" / "lintian", lintian)
        date = "2026-03-04T05:06:07+01:00"
        environment = {**os.environ, "GIT_AUTHOR_DATE": date, "GIT_COMMITTER_DATE": date}
        identity = ["-c", "user.name=a", "-c", "user.email=a@b.example"]
        for command in (["init", "-q"], ["add", "dev", "scripts", "CMakeLists.txt", ".gitignore", "packaging"],
                        ["commit", "-q", "-m", "a"], *(["tag", tag] for tag in tags)):
            subprocess.run(["git", *identity, *command], cwd=self.project, env=environment, check=True)
        done = self.run_dev("package")
        return done, (self.project / "build/packages/source/debian/changelog").read_text(encoding="utf-8")

    def test_packages_between_versions_are_ordered_by_the_time_of_the_commit(self):
        done, changelog = self.make_packages("v3.2.0")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("called: lintian ", done.stdout)
        self.assertRegex(changelog, r"^qb-colorio \(3\.2\.1~git202603040406\.[0-9a-f]{7}\) ")
        self.assertIn("Wed, 4 Mar 2026 04:06:07 +0000\n", changelog)
        source = self.project / "build/packages/source"
        self.assertTrue((source / "not_committed.txt").exists() and (source / "debian/rules").exists())
        self.assertFalse((source / "build").exists())

    def test_the_package_of_a_version_has_its_number(self):
        changelog = self.make_packages("v3.2.1")[1]
        self.assertTrue(changelog.startswith("qb-colorio (3.2.1) "), changelog)

    def test_an_error_of_a_package_fails(self):
        done = self.make_packages(lintian="#!/bin/sh\necho 'E: a: b'\nexit 2\n")[0]
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("E: a: b\n", done.stdout)

    def test_the_interface_is_compared_and_updated(self):
        self.stand_in(self.project / "scripts" / "abi")
        self.stand_in(self.folder / "bin" / "python3")
        library = "build/release/colorio/interface/libqb_colorio.so.0"
        for arguments, options in ((["abi"], ""), (["abi", "--update"], " --update"), (["build", "--check"], ""),
                                   (["abi", "--base", "HEAD~3"], " --base HEAD~3")):
            with self.subTest(arguments):
                done = self.run_dev(*arguments)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertIn("called: cmake --build --preset release --target qb_colorio_interface\n"
                              f"called: abi {library}{options}\n", done.stdout)
        for wrong in (["--base"], ["--update", "HEAD"], ["HEAD"]):
            self.assertIn("abi takes --update or --base COMMIT", self.run_dev("abi", *wrong).stderr)

    def test_two_folders_of_one_name_are_refused(self):
        options = [part for top in ("a", "b") for part in ("--configs", str(self.make_configs(top, "same")))]
        done = self.run_dev("test", "--ocio", "2.5", *options)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("two folders are named same", done.stderr)
        self.assertNotIn("called: debian_root", done.stdout)

    def test_the_tests_find_the_folders_in_a_variable(self):
        self.stand_in(self.folder / "bin" / "ctest", '#!/bin/sh\necho "folders: $QB_TEST_CONFIGS"\n')
        one, two = self.make_configs("one"), self.make_configs("two")
        done = self.run_dev("test", "--configs", str(one), "--configs", str(two))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(f"folders: {one.resolve()}:{two.resolve()}\n", done.stdout)

    def test_fuzzing_shows_the_runs_and_findings_of_every_target(self):
        self.make_fuzz_target("fuzz_calm", 2000, "exit 0")
        self.make_fuzz_target("fuzz_broken", 30, "echo 'SUMMARY: AddressSanitizer: overflow in f' >&2\n"
                              "echo 'artifact; Test unit written to build/corpus/fuzz_broken-crash-1' >&2; exit 77")
        done = self.run_dev("fuzz", "5")
        self.assertNotEqual(done.returncode, 0)
        self.assertRegex(done.stdout, r"fuzz_calm +2000 runs +1000/s +0 findings\n")
        self.assertRegex(done.stdout, r"fuzz_broken +30 runs +15/s +1 finding\n")
        self.assertIn("    AddressSanitizer: overflow in f\n", done.stdout)
        self.assertIn("    input: build/corpus/fuzz_broken-crash-1\n", done.stdout)
        self.assertNotIn("a message of the library", done.stdout + done.stderr)
        log = (self.project / "build/corpus/fuzz_calm.log").read_text()
        self.assertIn("a message of the library", log)
        self.assertIn("-max_total_time=5 ", log)

    def test_fuzzing_may_be_limited_to_some_targets(self):
        self.make_fuzz_target("fuzz_calm", 2000, "exit 0")
        self.make_fuzz_target("fuzz_other", 30, "exit 1")
        done = self.run_dev("fuzz", "5", "calm")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("fuzz_calm", done.stdout)
        self.assertNotIn("fuzz_other", done.stdout)
        self.assertIn("no fuzz target matches 'nothing'", self.run_dev("fuzz", "5", "nothing").stderr)
        self.assertIn("invalid number of seconds 'calm'", self.run_dev("fuzz", "calm").stderr)


if __name__ == "__main__":
    unittest.main()
