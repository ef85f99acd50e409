# SPDX-License-Identifier: MIT
"""docs/messages.md has each text of the sources, and no other.

A text of the sources is what stands in the calls that tell something, with <> for
what is put in; one of the page is a code span in the first column of a table.
"""
import re
import unittest

import pages

LIBRARY = sorted((pages.TREE / "src").glob("*.[ch]pp"))
TOOL = sorted((pages.TREE / "tools" / "vexacm").rglob("*.[ch]pp"))

LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
CONSTANT = re.compile(r'constexpr std::string_view (\w+) =\s*((?:"(?:[^"\\]|\\.)*"\s*)+);')

# What tells a text: the pattern in front of its arguments, and what it makes of them.
LIBRARY_CALLS = [
    (r"\breport_line\(", "{}"),
    (r"\brefuse\(", "Compiler Manager Error: {}"),
    (r"throw std::\w+\(", "{}"),
]
TOOL_CALLS = [
    (r"Failure\{Exit_status::\w+,", "{}"),
    (r"\btell\((?=\")", "{}"),
    (r"\brequire\([^\n]*?,\s*(?=\")", "{}"),
    (r"ValidationError\(name,", "{}"),
    (r"\bfail\((?=\"[^\"]*\", \w+\))", "{}: <>"),
    (r"\bstd::string reason =\s[^;\"]*(?=\")", "{}"),
]
# std::string error = "..."; error.append(...).append(...);
APPENDED = re.compile(r"std::string error = (\".*?\");\s*error((?:\.append\(.*?\))+);")
# Functions whose result is a reason.
REASONS = r"std::string (?:why_none|why_none_for|last_straw|two_results)\(.*?^}"


def literals(text):
    joined = "".join(LITERAL.findall(text))
    return joined.replace('\\"', '"').replace("\\n", "\n")


def without_comments(text):
    return re.sub(r"^\s*//.*$", "", text, flags=re.MULTILINE)


def arguments(text, start):
    """The text from `start` to the bracket that closes it, or to a semicolon."""
    depth, position = 0, start
    while True:
        literal = LITERAL.match(text, position)
        if literal:
            position = literal.end()
            continue
        character = text[position]
        if character in "([{":
            depth += 1
        elif character in ")]}":
            depth -= 1
        if depth < 0 or (character == ";" and depth == 0):
            return text[start:position]
        position += 1


def parts(expression, separator):
    """The expression, taken apart at each separator outside of brackets and quotes."""
    found, depth, position, start = [], 0, 0, 0
    while position < len(expression):
        literal = LITERAL.match(expression, position)
        if literal:
            position = literal.end()
            continue
        character = expression[position]
        depth += (character in "([{") - (character in ")]}")
        if character == separator and depth == 0:
            found.append(expression[start:position])
            start = position + 1
        position += 1
    return [part.strip() for part in found + [expression[start:]]]


def normal(text):
    """<> for what is put in, versions in a row too."""
    return re.sub(r"<\w*>(\.?<\w*>)*", "<>", text)


def told(expression, constants):
    """The text that an expression makes, <> for each part that is no literal."""
    text = ""
    for argument in parts(expression, ","):
        for part in parts(argument, "+"):
            inner = re.fullmatch(r"\((.*)\)", part, re.DOTALL)
            if inner:
                text += told(inner[1], constants)
            elif re.fullmatch(r'(?:"(?:[^"\\]|\\.)*"\s*)+', part):
                text += literals(part)
            else:
                text += constants.get(part, "<>")
    return normal(text)


def texts_of(files, calls):
    found = set()
    for file in files:
        source = without_comments(file.read_text())
        constants = {name: literals(text) for name, text in CONSTANT.findall(source)}
        found |= {text for name, text in constants.items() if name.lower().endswith("_error")}
        for pattern, made in calls:
            for call in re.finditer(pattern, source):
                found.add(made.format(told(arguments(source, call.end()), constants)))
        for first, rest in APPENDED.findall(source):
            pieces = re.findall(r"\.append\((.*?)\)(?=\.append|$)", rest)
            found.add(told(" + ".join([first, *pieces]), constants))
        for function in re.findall(REASONS, source, re.MULTILINE | re.DOTALL):
            for result in re.findall(r"\breturn\s+([^;]*\"[^;]*);", function):
                found.add(told(result, constants))
    # Those without a word only pass a text on.
    return {text for text in found if re.search(r"\w{2}", text.rpartition("Error: ")[2])}


def page_texts(headings):
    page = (pages.TREE / "docs" / "messages.md").read_text()
    found = set()
    for section in re.split(r"^## ", page, flags=re.MULTILINE)[1:]:
        if not section.startswith(headings):
            continue
        for cell in re.findall(r"^\| `([^`]*)` \|", section, re.MULTILINE):
            found.add(normal(cell))
    return found


class Messages(unittest.TestCase):
    maxDiff = None

    def test_of_the_library(self):
        sources = texts_of(LIBRARY, LIBRARY_CALLS)
        self.assertGreater(len(sources), 30)
        self.assertEqual(sorted(page_texts(("While", "About"))), sorted(sources))

    def test_of_the_tool(self):
        sources = texts_of(TOOL, TOOL_CALLS)
        self.assertGreater(len(sources), 20)
        self.assertEqual(sorted(page_texts("vexacm")), sorted(sources))

    def test_nothing_is_written_past_the_calls_that_are_read(self):
        written = re.compile(r"std::c(err|log|out)\b|\b(f?printf|f?puts|perror|write)\(")
        for files, writers in [
            (LIBRARY, {"report.hpp": 2}),
            (TOOL, {"main.cpp": 2, "compile_report.cpp": 1, "cached_compile.cpp": 2,
                    "capture.cpp": 3, "folder.cpp": 1, "streams.cpp": 6, "report_files.cpp": 1,
                    "guard.cpp": 2, "interrupt.cpp": 1, "memory.cpp": 1, "outputs.cpp": 1,
                    "progress.cpp": 2, "run.cpp": 1, "summary.cpp": 5, "worker.cpp": 1}),
        ]:
            for file in files:
                source = without_comments(file.read_text())
                self.assertEqual(len(written.findall(source)), writers.get(file.name, 0), file)


if __name__ == "__main__":
    unittest.main()
