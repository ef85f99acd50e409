# SPDX-License-Identifier: MIT
"""What the tests of the documents share: the tree, and the fenced blocks of a page.

A block is preceded by a comment that says what it is:

    <!-- FILE -->              the whole file, without the comment at its top
    <!-- FILE: NAME, NAME -->  these functions of it
    <!-- run in FOLDER -->     commands and what they print, run in a copy of it
    <!-- not run: REASON -->   the same, taken on trust

A console block without one is run in a copy of the tree. Blocks without a language
are pictures.
"""
import pathlib
import re
import subprocess

TREE = pathlib.Path(__file__).parents[2]
CODE = {"c", "cpp", "cmake", "python"}
FENCE = re.compile(
    r"(?:^<!-- (?P<comment>[^\n]*) -->\n)?^```(?P<language>\w*)\n(?P<text>.*?)^```$",
    re.MULTILINE | re.DOTALL,
)


def pages():
    """Every page of the tree that is not built or ignored."""
    names = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"],
        cwd=TREE, capture_output=True, text=True, check=False,
    ).stdout.split()
    found = [TREE / name for name in names] or TREE.glob("**/*.md")
    return sorted(page for page in found if page.exists() and TREE / "build" not in page.parents)


def blocks(page):
    """(comment, language, text) of each fenced block."""
    return [
        (block["comment"] or "", block["language"], block["text"])
        for block in FENCE.finditer(page.read_text())
    ]


def whole_file(text):
    """A file without its licence line and the comment behind it."""
    lines = text.splitlines(keepends=True)
    while lines and re.match(r"(/\*|//|#( |$)| \*)", lines[0]):
        lines.pop(0)
    return "".join(lines).lstrip("\n")


def function(text, name):
    """A function with the comment in front of it, up to the brace in column one."""
    lines = text.splitlines(keepends=True)
    pattern = re.compile(rf"[a-z][\w :<>*&]*\b{name}\([^;]*$")
    first = next(i for i, line in enumerate(lines) if pattern.match(line))
    last = next(i for i in range(first, len(lines)) if lines[i] == "}\n")
    while first > 0 and re.match(r"(/\*|//| \*)", lines[first - 1]):
        first -= 1
    return "".join(lines[first : last + 1])


def quoted(comment):
    """What a code block with this comment has to be."""
    name, _, functions = comment.partition(": ")
    text = (TREE / name).read_text()
    if functions:
        return "\n".join(function(text, part) for part in functions.split(", "))
    return whole_file(text)
