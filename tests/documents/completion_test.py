# SPDX-License-Identifier: MIT
"""The completions offer what the tool takes: completion_test.py SHELL VEXACM
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import pages
import tool_help

SHELL, TOOL = sys.argv[1:]
del sys.argv[1:]
COMPLETION = pages.TREE / "tools" / "vexacm" / "completion"

LIST = """\
ID  driver  core       revision  API         version  binary  prerotate
0   Vexa-1  Vexa-K580  r0p0      opencl      200      yes     no
1   Vexa-2  Vexa-K460  r1p0      openglessl  320      yes     no
"""


# What completions the machine has, which zsh finds out once.
DUMPS = tempfile.TemporaryDirectory()


def run(code, path):
    environment = dict(os.environ, PATH=f"{path}:{os.environ['PATH']}", HOME=str(path))
    ended = subprocess.run([SHELL, *(["-f"] if SHELL.endswith("zsh") else []), "-c", code],
                           cwd=path, env=environment, text=True, capture_output=True)
    if ended.returncode or ended.stderr:
        raise AssertionError(f"{ended.returncode} {ended.stdout} {ended.stderr}")
    return ended.stdout.splitlines()


def bash(line, path):
    words = line.split(" ")
    listed = " ".join(f"'{word}'" for word in words)
    return run(f"source {COMPLETION}/vexacm.bash; COMP_WORDS=({listed}); "
               f"COMP_CWORD={len(words) - 1}; _vexacm; printf '%s\\n' \"${{COMPREPLY[@]}}\"", path)


def fish(line, path):
    shown = run(f"source {COMPLETION}/vexacm.fish; complete -C '{line}'", path)
    return [text.split("\t")[0] for text in shown]


ZSH = r"""
zmodload zsh/zpty
zpty shell zsh -f -i
send() { zpty -w shell "$1"; zpty -r shell heard "*${2}*" }
send 'PS1=; echo be""gun' begun
send "fpath=($COMPLETION \$fpath)
autoload -Uz compinit; compinit -u -C -d $DUMP; echo lo\"\"aded" loaded
send '
compadd() {
    local -a offered
    [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]] && { builtin compadd "$@"; return }
    builtin compadd -A offered "$@"
    print -rl -- $offered >>offered
}
complete_once() { zle complete-word; print -r "complet""ed"; exit }
zle -N complete_once
bindkey "^I" complete_once
echo def""ined' defined
zpty -w -n shell "$LINE"$'\t'
zpty -r shell heard '*completed*'
zpty -d shell
"""


def zsh(line, path):
    """A shell on a terminal of its own; what compadd gets is what it offers."""
    offered = path / "offered"
    offered.write_text("")
    run(f"COMPLETION='{COMPLETION}'; DUMP='{DUMPS.name}/dump'; LINE='{line}'; {ZSH}", path)
    return offered.read_text().splitlines()


COMPLETE = {"bash": bash, "fish": fish, "zsh": zsh}[pathlib.Path(SHELL).name]


class Completion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        tool = self.folder / "vexacm"
        tool.write_text(f"#!/bin/sh\necho \"$@\" >'{self.folder}/asked'\ncat <<'EOF'\n{LIST}EOF\n")
        tool.chmod(0o755)

    def offered(self, line):
        return sorted(set(COMPLETE(line, self.folder)))

    def options(self, line):
        """Long options and short ones: fish offers them for "--" and "-" apart."""
        return {word for dashes in ("-", "--") for word in self.offered(line + dashes)
                if word.startswith("-")}

    def test_options_are_those_of_the_help(self):
        for command in [[], *([name] for name in tool_help.COMMANDS)]:
            line = " ".join(["vexacm", *command, ""])
            self.assertEqual(self.options(line), tool_help.names(TOOL, *command), command)

    def test_words_are_those_of_the_tool(self):
        for line, words in [
            ("compile --stage ", tool_help.stages(TOOL)),
            ("list --api ", ["openglessl", "opencl"]),
            ("list --binary-output ", ["true", "false"]),
            ("list --driver ", ["Vexa-1", "Vexa-2"]),
            ("compile --core ", ["Vexa-K460", "Vexa-K580"]),
            ("list --revision ", ["r0p0", "r1p0"]),
            ("list --min-version ", []),
        ]:
            self.assertEqual([word for word in self.offered("vexacm " + line) if word],
                             sorted(words), line)

    def test_commands_ids_and_the_named_directory(self):
        self.assertEqual(self.offered("vexacm "), sorted(tool_help.COMMANDS))
        self.assertEqual(self.offered("vexacm info "), ["0", "1"])
        self.offered("vexacm --plugins here list --core ")
        self.assertEqual((self.folder / "asked").read_text(), "list --plugins here\n")

    def test_files_where_files_are_wanted(self):
        (self.folder / "blur.cl").touch()
        (self.folder / "plugins").mkdir()
        self.assertIn("blur.cl", self.offered("vexacm compile b"))
        self.assertIn("blur.cl", self.offered("vexacm compile blur.cl -o b"))
        self.assertEqual([word.rstrip("/") for word in self.offered("vexacm --plugins p")],
                         ["plugins"])


if __name__ == "__main__":
    unittest.main()
