#!/usr/bin/env python3
"""Completes command lines in real shells, and reads the man pages.

usage: shells_test.py COLORIO [UNITTEST_ARGUMENT...]

The words that a shell makes of a completed line are printed by a program in place of colorio. Shells that are not
installed are skipped, but for bash.
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "manual"
COLORIO = None
PATIENCE_S = 60

CONFIG = """ocio_profile_version: 1
strictparsing: true
roles: {scene_linear: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: lin, looks: warm}
  The wall:
    - !<View> {name: Print look, colorspace: Film log}
looks:
  - !<Look> {name: warm, process_space: lin}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: Film log}
  - !<ColorSpace> {name: "Artist's \\"best\\" $1"}
"""


class Shells(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="qb_shells_"))
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "show.ocio").write_text(CONFIG)
        (self.folder / "an image.exr").write_text("")
        (self.folder / "folder").mkdir()
        program = self.folder / "colorio"
        program.write_text(f"""#!/bin/sh
[ "$1" != __complete ] || exec "{COLORIO}" "$@"
printf '<%s>' "$@"; echo end of words
""")
        program.chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}", "HOME": str(self.folder),
                            "OCIO": str(self.folder / "show.ocio"), "TERM": "dumb", "PS1": "", "LC_ALL": "C.UTF-8",
                            "XDG_CACHE_HOME": str(self.folder / "cache"), "XDG_CONFIG_HOME": str(self.folder / "config")}

    def type(self, shell, keys):
        """The words of the line after the keys were typed in an interactive shell."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(self.folder)
            os.execvpe(shell[0], shell, self.environment)
        self.addCleanup(os.waitpid, process, 0)
        self.addCleanup(os.close, terminal)
        text = ""
        sent = False
        while "end of words" not in text:
            if not select.select([terminal], [], [], PATIENCE_S)[0]:
                self.fail(f"{shell[0]} does not answer: {text}")
            text += os.read(terminal, 4096).decode()
            if "ready" in text and not sent:
                os.write(terminal, keys.encode() + b"\r")
                sent = True
        os.write(terminal, b"\x03\x04exit\r")
        return re.findall("<([^<>]*)>", text[:text.index("end of words")].replace("\r", ""))

    def type_in_bash(self, keys):
        setup = self.folder / "setup.bash"
        setup.write_text(f"source '{SCRIPTS}/completion.bash'\nPS1=ready\nbind 'set bell-style none'\n")
        return self.type(["bash", "--noprofile", "--rcfile", str(setup), "-i"], keys)

    def reply(self, line):
        """COMPREPLY of the completion function."""
        script = (f"source '{SCRIPTS}/completion.bash'; COMP_LINE=$1 COMP_POINT=${{#1}}; _colorio colorio 2>/dev/null; "
                  "printf '%s\\n' \"${COMPREPLY[@]}\"")
        done = subprocess.run(["bash", "--norc", "-c", script, "bash", line], env=self.environment, check=True,
                              capture_output=True, text=True)
        return done.stdout.splitlines()

    def test_the_function_of_bash_offers_commands_options_and_names(self):
        self.assertEqual(self.reply("colorio co"), ["convert"])
        self.assertEqual(self.reply("colorio cdl "), ["list", "show", "write", "add", "remove"])
        self.assertEqual(self.reply("colorio list --in"), ["--inactive"])
        self.assertEqual(self.reply("colorio convert a b -d u"), ["uint8", "uint10", "uint12", "uint16"])
        self.assertEqual(self.reply("colorio explain Film"), ["Film\\ log"])
        self.assertEqual(self.reply("colorio explain 'Film"), ["Film log"])
        self.assertEqual(self.reply("colorio explain Art"), ["Artist\\'s\\ \\\"best\\\"\\ \\$1"])
        self.assertEqual(self.reply("colorio convert --from=Fi"), ["Film\\ log"])
        self.assertEqual(self.reply("colorio explain sc"), ["scene_linear"])
        self.assertEqual(self.reply("colorio convert --display The\\ wall --view "), ["Print\\ look"])
        self.assertEqual(self.reply("colorio convert --view The"), ["The\\ wall.Print\\ look"])
        self.assertEqual(self.reply("colorio convert --look -"), ["-warm"])
        self.assertEqual(self.reply("colorio explain --config /none Fi"), [""])
        self.assertEqual(self.reply("colorio prefs set cdl"), ["cdl_library_file_path"])

    def test_lines_completed_in_bash_have_the_names_as_words(self):
        self.assertEqual(self.type_in_bash("colorio explain Fil\t lin"), ["explain", "Film log", "lin"])
        self.assertEqual(self.type_in_bash("colorio explain 'Art\t"), ["explain", "Artist's \"best\" $1"])
        self.assertEqual(self.type_in_bash('colorio explain "Art\t'), ["explain", "Artist's \"best\" $1"])
        self.assertEqual(self.type_in_bash("colorio convert --from=Fil\t"), ["convert", "--from=Film log"])
        self.assertEqual(self.type_in_bash("colorio explain Film\\ l\t"), ["explain", "Film log"])

    def test_bash_completes_files_itself(self):
        self.assertEqual(self.type_in_bash("colorio convert an\t fo\t"), ["convert", "an image.exr", "folder/"])
        self.assertEqual(self.type_in_bash("colorio shader -o \t"), ["shader", "-o", "folder/"])

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_lines_completed_in_zsh_have_the_names_as_words(self):
        functions = self.folder / "functions"
        functions.mkdir()
        shutil.copy(SCRIPTS / "completion.zsh", functions / "_colorio")
        (self.folder / ".zshrc").write_text(
            f"fpath=({functions} $fpath)\nautoload -Uz compinit\ncompinit -u -d {self.folder}/dump\n"
            "unset zle_bracketed_paste\nPS1=ready\n")
        self.environment["ZDOTDIR"] = str(self.folder)
        for keys, words in (("colorio explain Fil\tlin", ["explain", "Film log", "lin"]),
                            ("colorio explain Art\t", ["explain", "Artist's \"best\" $1"]),
                            ("colorio explain 'Art\t", ["explain", "Artist's \"best\" $1"]),
                            ("colorio convert --from=Fil\t", ["convert", "--from=Film log"]),
                            ("colorio convert an\tb", ["convert", "an image.exr", "b"])):
            with self.subTest(keys):
                self.assertEqual(self.type(["zsh", "-i"], keys), words)

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish_offers_names_with_descriptions(self):
        def offer(line):
            done = subprocess.run(["fish", "--no-config", "-c",
                                   f"source '{SCRIPTS}/completion.fish'; complete -C (string join ' ' -- $argv)", line],
                                  env=self.environment, cwd=self.folder, check=True, capture_output=True, text=True)
            return done.stdout.splitlines()

        self.assertIn("convert\tConvert images between color spaces, or to a view", offer("colorio con"))
        self.assertEqual([line.split("\t")[0] for line in offer("colorio explain Film")], ["Film log"])
        self.assertEqual([line.split("\t")[0] for line in offer("colorio explain --view 'The wall.Pr")],
                         ["The wall.Print look"])
        self.assertIn("scene_linear\trole: lin", offer("colorio explain sc"))
        self.assertEqual([line.split("\t")[0] for line in offer("colorio convert an")], ["an image.exr"])


class ManPages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="qb_man_"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        subprocess.run([COLORIO, "__man", cls.folder], check=True)

    def help_of(self, command):
        return subprocess.run([COLORIO, *command, "--help"], check=True, capture_output=True, text=True).stdout

    def commands(self, parent=()):
        yield parent
        _, _, listed = self.help_of(parent).partition("\nCommands:\n")
        for name in re.findall(r"^  (\w+) ", listed.partition("\n\n")[0], re.MULTILINE):
            yield from self.commands((*parent, name))

    def test_every_command_and_option_is_in_its_page(self):
        pages = set()
        for command in self.commands():
            page = "-".join(("colorio", *command)) + ".1"
            pages.add(page)
            text = (self.folder / page).read_text().replace("\\-", "-").replace("\\fB", "").replace("\\fR", "")
            listed = re.sub(r"\nExamples:\n.*", "", self.help_of(command), flags=re.DOTALL)
            options = re.findall(r"^ +(-[^ ,]+(?:, *-[^ ,]+)*)", listed, re.MULTILINE)
            self.assertIn("-h,--help", [option.replace(" ", "") for option in options], page)
            for option in options:
                for name in option.replace(" ", "").split(","):
                    self.assertRegex(text, rf"(?m)^(.*, )?{re.escape(name)}\b", page)
        self.assertGreater(len(pages), 25)
        self.assertEqual(pages, {path.name for path in self.folder.iterdir()})

    @unittest.skipUnless(shutil.which("man"), "man-db is not installed")
    def test_man_has_no_warnings(self):
        for page in sorted(self.folder.iterdir()):
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page], capture_output=True, text=True,
                                  check=False, env={**os.environ, "MANPAGER": "cat", "MANWIDTH": "80"})
            self.assertEqual((done.returncode, done.stderr), (0, ""), page.name)
            self.assertIn("NAME", done.stdout)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    COLORIO = sys.argv.pop(1)
    unittest.main()
