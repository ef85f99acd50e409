#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What --depfile writes is read by make and by Ninja as it is meant, or not written.

    depfile_test.py VEXACM FAKE_PLUGIN

Exits with 77 where make or Ninja is missing.
"""
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

if not shutil.which("make") or not shutil.which("ninja"):
    print("skipped: needs make and ninja-build")
    sys.exit(77)

FAKE_PLUGIN = sys.argv.pop()
TOOL = sys.argv.pop()
DRIVER = "libVexa-K300_r1p0-00rel0"

STEERING = """\
record 1
pair compiler_type openglessl
pair flexible_version 1.0.0
pair openglessl_version 320
pair openglessl_extensions GL_ONE
core k46x r0p0_00rel0
binary-output 1
outputs BINARY
binary 00
outputs ERROR
a wrong
"""
# All bytes of ASCII, and some beyond it.
BYTES = [bytes([code]) for code in [*range(1, 129), 0xc3, 0xff] if code != ord("/")]


class Depfile(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.fsencode(folder.name)
        plugins = pathlib.Path(folder.name) / "plugins"
        for api in ("openglessl", "opencl"):
            (plugins / api).mkdir(parents=True)
        self.plugin = plugins / "openglessl" / f"{DRIVER}.so"
        shutil.copyfile(FAKE_PLUGIN, self.plugin)
        self.plugin.with_name(f"{DRIVER}-so.steer").write_text(STEERING)

    def compile(self, source, output, text="BINARY"):
        # A name may look like an option.
        (pathlib.Path(os.fsdecode(self.folder)) / os.fsdecode(source)).write_text(text)
        return subprocess.run([TOOL, "--plugins", "plugins", "compile", "--stage=vertex",
                               b"-o" + output, "--depfile=d", "--", source],
                              cwd=self.folder, capture_output=True)

    def seen_by_make(self, source, output):
        """Whether make would make the output anew when the source is newer, or gone."""
        path = os.path.join(self.folder, source)
        # Made of its own rule, whatever the first target of a file is.
        goal = output.replace(b"$", b"$$").replace(b" ", b"\\ ").replace(b"#", b"\\#")
        with open(os.path.join(self.folder, b"m"), "wb") as makefile:
            makefile.write(b".DEFAULT_GOAL :=\n.PHONY: all\nall: " + goal + b"\ninclude d\n")

        def said():
            run = subprocess.run(["make", "-rR", "-f", "m", "--debug=b", "-n", "all"],
                                 cwd=self.folder, capture_output=True)
            return run.stdout if run.returncode == 0 else b""

        os.utime(os.path.join(self.folder, output), (2000, 2000))
        os.utime(self.plugin, (1000, 1000))
        os.utime(path, (1000, 1000))
        untouched = b"Must remake target '" + output + b"'" not in said()
        os.utime(path, (3000, 3000))
        newer = b"Prerequisite '" + source + b"' is newer than target '" + output + b"'" in said()
        os.unlink(path)
        gone = b"Must remake target '" + source + b"'" in said()
        return untouched and newer and gone

    def seen_by_ninja(self, source, output):
        """Whether Ninja takes the source and the plug-in, and nothing else, for what it
        depends on."""
        named = output.replace(b"$", b"$$").replace(b" ", b"$ ").replace(b":", b"$:")
        with open(os.path.join(self.folder, b"build.ninja"), "wb") as build:
            build.write(b"rule c\n  command = cp d e\n  depfile = e\n  deps = gcc\n"
                        b"build " + named + b": c\n")
        if subprocess.run(["ninja", "--quiet"], cwd=self.folder, capture_output=True).returncode:
            return False
        lines = subprocess.run(["ninja", "-t", "deps"], cwd=self.folder,
                               capture_output=True).stdout.split(b"\n")
        os.unlink(os.path.join(self.folder, b".ninja_deps"))
        os.unlink(os.path.join(self.folder, b".ninja_log"))
        return [line[4:] for line in lines if line.startswith(b"    ")] == [
            source, f"plugins/openglessl/{DRIVER}.so".encode()]

    def read_or_refused(self, source, output, name):
        """Whether it was written, which only names are that both read."""
        run = self.compile(source, output)
        if run.returncode == 2:
            self.assertEqual(run.stderr, b"vexacm: make and Ninja cannot both read '" + name +
                             b"' in a dependency file\n")
            self.assertEqual(run.stdout, b"")
            self.assertFalse(os.path.exists(os.path.join(self.folder, b"d")))
            self.assertFalse(os.path.exists(os.path.join(self.folder, output)))
            os.unlink(os.path.join(self.folder, source))
            return False
        self.assertEqual((run.returncode, run.stderr), (0, b""), name)
        self.assertTrue(self.seen_by_ninja(source, output), name)
        self.assertTrue(self.seen_by_make(source, output), name)
        os.unlink(os.path.join(self.folder, output))
        os.unlink(os.path.join(self.folder, b"d"))
        return True

    def test_each_byte_in_a_source(self):
        read = [byte for byte in BYTES if self.read_or_refused(b"a%sb" % byte, b"out",
                                                               b"a%sb" % byte)]
        self.assertEqual(b"".join(read),
                         b" !#$()+,-.0123456789@ABCDEFGHIJKLMNOPQRSTUVWXYZ]_"
                         b"abcdefghijklmnopqrstuvwxyz{}~\x80\xc3\xff")
        for form in (b"%sb", b"a%s"):
            for byte in BYTES:
                # That is the folder itself.
                if form % byte not in (b".", b".."):
                    self.read_or_refused(form % byte, b"out", form % byte)

    def test_each_byte_in_an_output(self):
        for form in (b"a%sb", b"%sb", b"a%s"):
            for byte in BYTES:
                self.read_or_refused(b"in", form % byte, form % byte)

    def test_names_of_several_that_mean_something(self):
        words = [b" ", b"#", b"$", b"$(", b"${", b")", b"(", b"~", b".", b"%", b"a", b"\\", b",",
                 b"include", b"export ", b".PHONY", b"-", b"@", b"..", b"`touch x`", b"(a)", b"$(shell "]
        random.seed(8)
        written = 0
        for _ in range(120):
            name = b"".join(random.choices(words, k=random.randint(1, 4)))
            if name in (b".", b"..", b"-"):  # folders, standard input
                continue
            written += self.read_or_refused(name, b"out", name)
            written += self.read_or_refused(b"in", name, name)
        self.assertGreater(written, 30)
        self.assertFalse(os.path.exists(os.path.join(self.folder, b"x")))

    def test_text(self):
        self.compile(b"a b.vert", b"o#1")
        with open(os.path.join(self.folder, b"d"), "rb") as depfile:
            self.assertEqual(depfile.read(), f"""\
o\\#1: \\
  a\\ b.vert \\
  plugins/openglessl/{DRIVER}.so
a\\ b.vert:
plugins/openglessl/{DRIVER}.so:
""".encode())

    def test_standard_input_then_the_plugin_alone(self):
        subprocess.run([TOOL, "--plugins", "plugins", "compile", "-", "--stage=vertex", "-oo",
                        "--depfile=d"], cwd=self.folder, input=b"BINARY", check=True,
                       stdout=subprocess.DEVNULL)
        with open(os.path.join(self.folder, b"d"), "rb") as depfile:
            self.assertEqual(depfile.read(), f"""\
o: \\
  plugins/openglessl/{DRIVER}.so
plugins/openglessl/{DRIVER}.so:
""".encode())

    def test_errors_then_none(self):
        run = self.compile(b"in", b"out", "ERROR")
        self.assertEqual((run.returncode, run.stderr), (1, b"in: wrong\n"))
        self.assertFalse(os.path.exists(os.path.join(self.folder, b"d")))

    def test_no_output_file_then_wrong_use(self):
        for output in ([], ["-o", "-"]):
            run = subprocess.run([TOOL, "compile", "in.vert", "--depfile=d", *output],
                                 cwd=self.folder, capture_output=True)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (
                2, b"", b"vexacm: --depfile tells what the file of -o depends on\n"))


if __name__ == "__main__":
    unittest.main()
