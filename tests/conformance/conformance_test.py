"""Runs the conformance kit with hosts that keep the contract and with one that can break each part of it.

usage: conformance_test.py KIT_OF_STANDALONE_HOST KIT_OF_FAULTY_HOST MODULE [KIT_OF_EXAMPLE_HOST]
"""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import faults  # noqa: E402

ARGUMENTS = [sys.argv.pop(1) for _ in sys.argv[1:]]
STANDALONE, FAULTY, MODULE = ARGUMENTS[:3]
HOSTS = [STANDALONE, *ARGUMENTS[3:]]


def run(program, *arguments, **environment):
    return subprocess.run([program, *arguments], capture_output=True, text=True, check=False,
                          env={**os.environ, **environment})


def list_checks():
    return [line.split()[0] for line in run(STANDALONE, "--list").stdout.splitlines()]


def get_failed(output):
    return sorted(re.findall(r"^FAILED +(\S+):", output, re.MULTILINE))


class Hosts(unittest.TestCase):
    def test_pass_every_check(self):
        for host in HOSTS:
            with self.subTest(host):
                result = run(host)
                self.assertEqual((result.returncode, get_failed(result.stdout)), (0, []), result.stdout + result.stderr)
                self.assertEqual(result.stdout.splitlines()[-1], f"all {len(list_checks())} checks passed")

    def test_pass_every_check_in_one_process(self):
        for host in HOSTS:
            with self.subTest(host):
                result = run(host, "--here")
                self.assertEqual(result.returncode, 0, result.stdout + result.stderr)


class Faults(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.faults = faults.list_faults()
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = pool.map(lambda fault: run(FAULTY, HOST_FAULT=fault.name), cls.faults)
        cls.results = dict(zip([fault.name for fault in cls.faults], results))

    def test_are_found_by_the_checks_of_their_part_of_the_contract_and_no_others(self):
        for fault in self.faults:
            with self.subTest(fault.name):
                result = self.results[fault.name]
                self.assertEqual(get_failed(result.stdout), sorted(fault.found_by.split()), result.stdout)
                self.assertEqual(result.returncode, 1)
                last = result.stdout.splitlines()[-1]
                self.assertEqual(sorted(last.removeprefix("failed: ").split()), get_failed(result.stdout))

    def test_include_one_for_every_check(self):
        self.assertEqual(sorted({check for fault in self.faults for check in fault.found_by.split()}),
                         sorted(list_checks()))

    def test_are_absent_unless_they_are_chosen(self):
        self.assertEqual(run(FAULTY, HOST_FAULT="").returncode, 0)

    def test_are_reported_with_what_is_found_and_what_breaks(self):
        lines = self.results["only-blanks-split"].stdout.splitlines()
        first = next(i for i, line in enumerate(lines) if line.startswith("FAILED"))
        self.assertEqual(lines[first:first + 4], [
            "FAILED  strings.split-word: split_word takes any run of separators as one and returns no empty word",
            "        words between runs of blanks, tabs and line ends: "
            r"found '[\x091.0][0.5\x0D\x0A\x0A0.25\x0B\x0C]', "
            "expected '[1.0][0.5][0.25]'",
            r"        only blanks: found '[\x0A]', expected ''",
            "        in the module: the numbers of CDL documents are read into the wrong channels"])

    def test_that_end_the_process_are_a_finding_of_their_check(self):
        output = self.results["surplus-labels-added"].stdout
        self.assertRegex(output, r"FAILED  enumerations\.add-values: .*\n +the check (crashed: |ended the process)")
        self.assertIn("\nok      enumerations.remove-all:", output)


class Options(unittest.TestCase):
    def test_a_check_or_a_group_can_be_chosen(self):
        self.assertEqual(len(run(STANDALONE, "strings.split").stdout.splitlines()), 2)
        output = run(STANDALONE, "log", "strings.split").stdout
        self.assertEqual(re.findall(r"^ok +(\S+):", output, re.MULTILINE),
                         ["log.stream", "log.levels", "log.main-handler", "strings.split"])

    def test_a_fault_that_is_not_asked_about_is_not_reported(self):
        result = run(FAULTY, "log", HOST_FAULT="only-blanks-split")
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_list_shows_each_check_with_its_contract(self):
        result = run(STANDALONE, "--list", "strings.split")
        self.assertEqual((result.returncode, result.stdout.split(maxsplit=1)),
                         (0, ["strings.split", "split returns the pieces between separators, empty ones too\n"]))

    def test_help_is_shown(self):
        result = run(STANDALONE, "--help")
        self.assertEqual((result.returncode, result.stdout.split()[0]), (0, "usage:"))

    def test_an_unknown_check_cannot_be_run(self):
        for argument in ("strings.spilt", "--lst"):
            result = run(STANDALONE, "strings.split", argument)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertIn(f"error: no check '{argument}'; --list shows their names\n", result.stderr)

    def test_a_check_without_a_folder_for_temporary_files_cannot_be_run(self):
        with tempfile.TemporaryDirectory() as folder:
            result = run(STANDALONE, "files.write", TMPDIR=folder + "/missing")
        self.assertEqual(result.returncode, 2, result.stdout)
        self.assertIn("error: cannot run files.write: cannot create a folder", result.stderr)


class Coverage(unittest.TestCase):
    # What a host's own code calls so that the module can work: it makes its application, its log, the entry of its
    # preferences and receivers of events.
    CALLED_BY_HOSTS = {
        "CoreLogHandler::set_main_log_handler(CoreLogHandler*)", "CoreLogHandler::~CoreLogHandler()",
        "CoreLogStream::operator<<(char)", "EventObject::EventObject()", "EventObject::~EventObject()",
        "EventObject::disconnect(EventObject&)", "EventObject::get_class_info() const",
        "ParserEntry::ParserEntry(CoreString const&)", "ParserEntry::~ParserEntry()",
    }

    def list_host_calls(self, binary):
        """The functions of host/ that a binary needs from other libraries."""
        symbols = subprocess.run(["nm", "-DC", "--undefined-only", binary], capture_output=True, text=True, check=True)
        names = re.findall(r"^ +U (.*)$", symbols.stdout, re.MULTILINE)
        declared = re.compile(r"(operator\+\(Core|event_debug_collisions|sys_get_env|(Core|Event|Of|Parser|Sys)\w+::)")
        return {name for name in names if declared.match(name)}

    def test_the_kit_calls_every_function_of_a_host_that_the_module_calls(self):
        called = self.list_host_calls(MODULE)
        self.assertGreater(len(called), 50)
        self.assertEqual(sorted(called - self.list_host_calls(STANDALONE)), [])

    def test_the_kit_asks_for_no_more_of_a_host(self):
        known = self.list_host_calls(MODULE) | self.CALLED_BY_HOSTS
        self.assertEqual(sorted(self.list_host_calls(STANDALONE) - known), [])


if __name__ == "__main__":
    unittest.main()
