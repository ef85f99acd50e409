# SPDX-License-Identifier: MIT
"""Every console block in a document shows what its commands print.

    console_test.py BUILD      BUILD is a build folder, which is installed from

The commands run in a copy of examples/, with the installed tool, library and GLSL
plug-in in front of the machine's. [...] stands for any lines.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import pages

BUILD = sys.argv.pop(1)
SHOWN = re.compile(r"^\$ (?P<command>[^\n]*)\n(?P<output>(?:(?!\$ )[^\n]*\n)*)", re.MULTILINE)


def setUpModule():
    global folder, environment
    temporary = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(temporary.cleanup)
    folder = pathlib.Path(temporary.name)
    prefix = folder / "prefix"
    subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True,
                   stdout=subprocess.DEVNULL)
    (configuration,) = prefix.glob("lib/**/pkgconfig")
    libraries = configuration.parent
    for plugin in (libraries / "compiler_manager" / "opencl").glob("*.so"):
        plugin.unlink()
    environment = dict(
        os.environ,
        PATH=f"{prefix}/bin:{os.environ['PATH']}",
        LD_LIBRARY_PATH=str(libraries),
        PKG_CONFIG_PATH=str(configuration),
        CMAKE_PREFIX_PATH=str(prefix),
        LC_ALL="C",
    )


def tree():
    """A tree in which the tool was built, as the documents have it."""
    copy = pathlib.Path(tempfile.mkdtemp(dir=folder))
    shutil.copytree(pages.TREE / "examples", copy / "examples")
    (copy / "build" / "release").mkdir(parents=True)
    (copy / "build" / "release" / "vexacm").symlink_to(folder / "prefix" / "bin" / "vexacm")
    return copy


def printed(command, place):
    ended = subprocess.run(["sh", "-c", command], cwd=place, env=environment, text=True,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return ended.stdout + (f"(exit status {ended.returncode})\n" if ended.returncode else "")


def pattern(shown):
    return re.escape(shown).replace(re.escape("[...]\n"), r"(?:(?!\(exit status).*\n)*")


class Console(unittest.TestCase):
    def test_shows_what_the_commands_print(self):
        run = 0
        for page in pages.pages():
            for comment, language, text in pages.blocks(page):
                if language != "console" or comment.startswith("not run: "):
                    continue
                place = tree() / comment.partition("run in ")[2]
                self.assertEqual("".join(match[0] for match in SHOWN.finditer(text)),
                                 text, "a block begins with a command")
                for block in SHOWN.finditer(text):
                    shown = block["output"].rstrip("\n")
                    shown += "\n" if shown else ""
                    result = printed(block["command"], place)
                    with self.subTest(page=page.name, command=block["command"]):
                        if not re.fullmatch(pattern(shown), result):
                            self.assertEqual(result, shown)
                    run += 1
        self.assertGreater(run, 5)


if __name__ == "__main__":
    unittest.main()
