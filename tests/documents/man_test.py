# SPDX-License-Identifier: MIT
"""The man pages name what there is: man_test.py VEXACM"""
import re
import sys
import unittest

import pages
import tool_help

TOOL = sys.argv.pop(1)


def section(page, title):
    text = (pages.TREE / "man" / page).read_text()
    return re.search(rf"^#+ {title}\n(.*?)(?=^#+ |\Z)", text, re.MULTILINE | re.DOTALL)[1]


def options(title):
    found = {}
    for line in re.findall(r"^\*-.*$", section("vexacm.1.scd", title), re.MULTILINE):
        names = re.findall(r"\*(-[-\w]*)\*", line)
        found[tuple(names)] = line.rpartition("*")[2].replace("_", "").strip()
    return found


def spaced(declaration):
    return re.sub(r"\s+", " ", re.sub(r"\s*\*\s*", "*", declaration))


class Vexacm(unittest.TestCase):
    maxDiff = None

    def test_options_are_those_of_the_help(self):
        everywhere = {("-h", "--help"): ""}
        filters = options("FILTERS")
        self.assertEqual(options("OPTIONS"), tool_help.options(TOOL))
        self.assertEqual({**everywhere, **filters, **options("list")},
                         tool_help.options(TOOL, "list"))
        self.assertEqual({**everywhere, **options("info")}, tool_help.options(TOOL, "info"))
        self.assertEqual({**everywhere, **filters, **options("compile")},
                         tool_help.options(TOOL, "compile"))
        self.assertEqual({**everywhere, **filters, **options("batch")},
                         tool_help.options(TOOL, "batch"))
        self.assertEqual({**everywhere, **options("merge")}, tool_help.options(TOOL, "merge"))
        self.assertEqual({**everywhere, **options("cache")}, tool_help.options(TOOL, "cache"))

    def test_stages_are_those_of_the_tool(self):
        shown = re.search(r"\*--stage\*(.*?)\n\n", section("vexacm.1.scd", "compile"), re.DOTALL)[1]
        self.assertEqual(sorted(re.findall(r"\*(\w+)\*", shown)), sorted(tool_help.stages(TOOL)))

    def test_exit_statuses_are_those_of_the_tool(self):
        enumeration = (pages.TREE / "tools" / "vexacm" / "failure.hpp").read_text()
        shown = section("vexacm.1.scd", "EXIT STATUS")
        self.assertEqual(re.findall(r"^\*(\d+)\*$", shown, re.MULTILINE),
                         re.findall(r"= (\d+)", enumeration))

    def test_help_fits_a_screen(self):
        for command in [[], *([name] for name in tool_help.COMMANDS)]:
            lines = tool_help.help_text(TOOL, *command).splitlines()
            # One line is the next prompt's.
            self.assertLess(len(lines), 24, command)
            self.assertLessEqual(max(map(len, lines)), 80, command)


class Functions(unittest.TestCase):
    def test_synopses_are_the_headers(self):
        for page, header, prefix in [
            ("compiler_manager.3.scd", "vexacm.h", "VEXACM_API "),
            ("compiler_manager-plugin.7.scd", "vexaoc.h", "VEXAOC_API "),
        ]:
            declared = re.findall(rf"^{prefix}([^;]*;)",
                                  (pages.TREE / "include" / header).read_text(), re.MULTILINE)
            shown = re.findall(r"^(?:bool|void|const|unsigned|int) [^;]*;",
                               section(page, "SYNOPSIS"), re.MULTILINE)
            self.assertEqual(list(map(spaced, shown)), list(map(spaced, declared)))


if __name__ == "__main__":
    unittest.main()
