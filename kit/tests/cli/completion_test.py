"""Completion of sub-commands, options and values in bash, zsh and fish."""
import os
import pathlib
import shlex
import shutil
import subprocess
import unittest

from zorvela_tests import program

COMPLETIONS = program.SOURCE / "packaging" / "completions"
BASH = """. {file}; complete -p zorvela-kit >/dev/null
COMP_WORDS=({words}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); _zorvela_kit; printf '%s\\n' "${{COMPREPLY[@]}}" """
# Replaces what zsh gives to a completion function.
ZSH = """compadd() {{ shift; print -l -- ${{(M)@:#$PREFIX*}} }}; _files() {{ }}
answer() {{ local words=({words}) CURRENT PREFIX; CURRENT=$#words; PREFIX=$words[-1]; . {file} }}; answer"""
FISH = """source {file}; complete -C {line}"""


class Completion(unittest.TestCase):
    def complete(self, shell, *words):
        if shutil.which(shell) is None:
            self.skipTest(f"Skipped: needs {shell}")
        script = {"bash": BASH, "zsh": ZSH, "fish": FISH}[shell]
        line = shlex.join(["zorvela-kit", *words[:-1]]) + " " + words[-1]
        filled = script.format(file=COMPLETIONS / f"zorvela-kit.{shell}", words=shlex.join(["zorvela-kit", *words]),
                               line=shlex.quote(line))
        environment = {**os.environ, "PATH": f"{pathlib.Path(program.KIT).resolve().parent}:{os.environ['PATH']}"}
        plain = {"bash": ["--norc"], "zsh": ["-f"], "fish": ["--no-config"]}[shell]
        done = subprocess.run([shell, *plain, "-c", filled], capture_output=True, text=True, check=True, env=environment,
                              timeout=60)
        self.assertEqual(done.stderr, "")
        return [line.split("\t")[0] for line in done.stdout.splitlines() if line]

    def check(self, shell):
        self.assertEqual(sorted(self.complete(shell, "re")), ["restrain"])
        self.assertLessEqual({"demo", "run", "evaluate"}, set(self.complete(shell, "")))
        self.assertEqual(sorted(self.complete(shell, "run", "--fo")), ["--format"])
        self.assertEqual(sorted(self.complete(shell, "restrain", "--s")), ["--segid", "--structure"])
        self.assertEqual(sorted(self.complete(shell, "run", "--format", "")), ["csv", "html", "json", "table"])
        self.assertEqual(sorted(self.complete(shell, "restrain", "--for", "cy")), ["cyana", "cyana-aco"])

    def test_bash(self):
        self.check("bash")

    def test_zsh(self):
        self.check("zsh")

    def test_fish(self):
        self.check("fish")
