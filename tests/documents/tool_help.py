# SPDX-License-Identifier: MIT
"""What `vexacm --help` says, taken apart."""
import re
import subprocess

COMMANDS = ["list", "info", "compile", "batch", "merge", "cache"]


def help_text(tool, *command):
    return subprocess.run([tool, *command, "--help"], check=True, text=True,
                          capture_output=True).stdout


def options(tool, *command):
    """{names of an option: what follows it}, such as {("-h", "--help"): ""}."""
    found = {}
    for names, value in re.findall(r"^  (-\S+)( [^\s.]\S*)?(?: \.\.\.)?(?:\s\s|$)",
                                   help_text(tool, *command), re.MULTILINE):
        found[tuple(names.split(","))] = value.strip()
    # For want of room they are not told again.
    if command in (("batch",), ("compile",)):
        told_elsewhere = {**options(tool, "list"), **options(tool, "cache")}
        del told_elsewhere["--json",]
        found.update(told_elsewhere)
    if command == ("batch",):
        of_compile = options(tool, "compile")
        found.update((names, of_compile[names])
                     for names in [("-D",), ("--kernel",), ("--prerotate",), ("--cache",)])
    return found


def names(tool, *command):
    """All names of options that may follow, those of every place included."""
    own = {name for option in options(tool, *command) for name in option}
    return own | {"--plugins"}


def stages(tool):
    """The words that the tool takes for a stage."""
    ended = subprocess.run([tool, "compile", "x", "--stage", "-"], text=True, capture_output=True)
    return re.search(r"\{(.*)\}", ended.stderr)[1].split(",")
