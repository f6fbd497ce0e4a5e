#!/usr/bin/env python3
"""Tests of the CMake files: options and presets against docs/building.md, and a build for another host."""
import json
import pathlib
import re
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[1]
DECLARED = re.compile(r"^\s*(?:option\((QB_\w+)|set\((QB_\w+) [^)]*\bCACHE (?!INTERNAL))", re.MULTILINE)


def cmake_files():
    yield PROJECT / "CMakeLists.txt"
    yield from (PROJECT / "cmake").glob("*.cmake")


def declared_options():
    return {first or second for file in cmake_files() for first, second in DECLARED.findall(file.read_text())}


def documented_options():
    return set(re.findall(r"^\| `(QB_\w+)` \|", (PROJECT / "docs" / "building.md").read_text(), re.MULTILINE))


class Building(unittest.TestCase):
    def test_every_option_is_documented_and_every_documented_option_exists(self):
        self.assertGreater(len(declared_options()), 5)
        self.assertEqual(documented_options(), declared_options())

    def test_presets_set_nothing_but_documented_options(self):
        presets = json.loads((PROJECT / "CMakePresets.json").read_text())
        used = {name for preset in presets["configurePresets"] for name in preset.get("cacheVariables", {})
                if name.startswith("QB_")}
        self.assertEqual(used - documented_options(), set())
        built = {preset["configurePreset"] for preset in presets["buildPresets"]}
        shown = {preset["name"] for preset in presets["configurePresets"] if not preset.get("hidden")}
        self.assertEqual(built, shown - {"clang"})

    def test_every_preset_belongs_to_a_verb_of_dev(self):
        dev = (PROJECT / "dev").read_text()
        presets = json.loads((PROJECT / "CMakePresets.json").read_text())
        unused = [preset["name"] for preset in presets["configurePresets"] if not preset.get("hidden")
                  and not re.search(rf"preset( in|=|) ?(\w+ )*{preset['name']}\b|:-{preset['name']}\b", dev)]
        self.assertEqual(unused, [])

    def test_packages_are_built_from_what_dev_installs_for_a_release(self):
        control = (PROJECT / "packaging" / "debian" / "control").read_text()
        needed = re.search(r"^Build-Depends: (.*?)^\S", control, re.MULTILINE | re.DOTALL)[1]
        names = {entry.split()[0] for entry in needed.split(",")}
        dev = (PROJECT / "dev").read_text()
        installed = set(re.search(r"^BUILD_PACKAGES=\((.*?)\)", dev, re.MULTILINE | re.DOTALL)[1].split())
        self.assertGreater(len(installed), 10)
        self.assertEqual(names - {"debhelper-compat", "dh-python"}, installed - {"g++"}, "g++ is part of build-essential")

    def test_packages_take_every_component(self):
        components = set(re.findall(r"\bCOMPONENT (\w+)", (PROJECT / "packaging" / "CMakeLists.txt").read_text()))
        rules = (PROJECT / "packaging" / "debian" / "rules").read_text()
        self.assertEqual(set(re.findall(r"call install_component,[\w-]+,(\w+)\)", rules)), components)

    def test_another_host_is_configured_by_its_libraries_alone(self):
        with tempfile.TemporaryDirectory() as folder:
            host = pathlib.Path(folder, "libapp_host.so")
            host.touch()
            subprocess.run(["cmake", "-G", "Ninja", "-S", PROJECT, "-B", folder, f"-DQB_HOST_LIBRARIES={host}"],
                           check=True, capture_output=True)
            rules = pathlib.Path(folder, "build.ninja").read_text()
        libraries = set(re.findall(r"^build \S*?(lib\w+\.so)\S*:", rules, re.MULTILINE))
        self.assertEqual(libraries, {"libqb_colorio.so"})
        for absent in ("EXECUTABLE_LINKER", "qb_standalone"):
            self.assertFalse(absent in rules, absent)
        self.assertTrue(host.name in rules, "the host is not linked")

    def test_the_example_of_a_host_is_a_separate_project_too(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["cmake", "-G", "Ninja", "-S", PROJECT / "examples" / "host", "-B", folder],
                           check=True, capture_output=True)
            rules = pathlib.Path(folder, "build.ninja").read_text()
        libraries = set(re.findall(r"^build \S*?(lib\w+\.so):", rules, re.MULTILINE))
        self.assertEqual(libraries, {"libqb_colorio.so", "libexample_host_framework.so"})
        programs = set(re.findall(r"^build (\w+): CXX_EXECUTABLE_LINKER", rules, re.MULTILINE))
        self.assertEqual({name.split("_linker")[0] for name in programs}, {"example_host", "example_host_conformance"})


if __name__ == "__main__":
    unittest.main()
