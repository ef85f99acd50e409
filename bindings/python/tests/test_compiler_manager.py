# SPDX-License-Identifier: MIT
"""Tests against a fake plug-in; LIBRARY and FAKE_PLUGIN in the environment say where
the library and the plug-in of the build are."""
import ctypes
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import compiler_manager
from compiler_manager import Library, Outputs, Refused

LIBRARY = os.environ["LIBRARY"]
FAKE_PLUGIN = os.environ["FAKE_PLUGIN"]
TREE = pathlib.Path(__file__).parents[3]

OUTCOMES = """outputs ERROR
a 3:4:%20error
a -
a 5:6:%20an%20odd%20%ff
b 1:2:%20warning
outputs TABLE
list
item name
item count
list
item -
item 12
binary 000a41ff
outputs FAIL
result 9
"""

NEW_DRIVER = """record 1
binary 1
core k46x r0p1_00rel0
core k58x r0p0_00rel0
pair compiler_type openglessl
pair flexible_version 1.0.0
pair openglessl_version 320
pair openglessl_extensions GL_ONE
pair openglessl_extensions GL_TWO
pair prerotate true
""" + OUTCOMES

KERNEL_DRIVER = """record 1
core odd%ffcore r0p0_00rel0
pair compiler_type opencl
pair flexible_version 1.0.0
pair opencl_version 200
pair opencl_extensions cl_khr_fp16
""" + OUTCOMES


class Test(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.plugins = pathlib.Path(folder.name)
        self.log = self.plugins / "log"
        self.add_driver("openglessl", NEW_DRIVER)
        self.add_driver("opencl", KERNEL_DRIVER)

    def add_driver(self, api, steering, driver="Vexa-K300_r5p0-06rel0"):
        (self.plugins / api).mkdir(exist_ok=True)
        shutil.copy(FAKE_PLUGIN, self.plugins / api / f"lib{driver}.so")
        steer = self.plugins / api / f"lib{driver}-so.steer"
        steer.write_text(f"log {self.log}\n{steering}")

    def opened(self):
        library = Library(self.plugins, library=LIBRARY)
        self.addCleanup(library.close)
        return library

    def requests(self):
        lines = self.log.read_text().splitlines()
        return [line.partition(" options=")[2] for line in lines if " compile " in line]


class Layout(unittest.TestCase):
    """The records as the C interface has them on 64-bit Linux."""

    def test_sizes_and_offsets(self):
        # Each field's offset and size.
        layouts = {
            compiler_manager._Version: (12, {"major": (0, 4), "minor": (4, 4), "patch": (8, 4)}),
            compiler_manager._String_list: (16, {"num_strings": (0, 4), "strings": (8, 8)}),
            compiler_manager._Outputs: (
                64,
                {
                    "num_string_lists": (0, 4), "string_lists": (8, 8),
                    "binary_size": (16, 4), "binary": (24, 8),
                    "num_strings_a": (32, 4), "strings_a": (40, 8),
                    "num_strings_b": (48, 4), "strings_b": (56, 8),
                },
            ),
        }
        for record, (size, fields) in layouts.items():
            self.assertEqual(ctypes.sizeof(record), size)
            found = [(name, getattr(record, name)) for name, _ in record._fields_]
            self.assertEqual({name: (at.offset, at.size) for name, at in found}, fields)

    def test_every_exported_function_has_a_prototype(self):
        exported = (TREE / "src" / "libcompiler_manager.map").read_text()
        names = {line.strip(" ;") for line in exported.splitlines() if "vexacm_" in line}
        self.assertEqual(set(compiler_manager._PROTOTYPES), names)


class Catalogue(Test):
    def test_compilers_and_their_properties(self):
        found = self.opened().compilers()
        self.assertEqual(
            [(c.id, c.driver, c.core, c.revision, c.api, c.version, c.binary_output, c.prerotate)
             for c in found],
            [(0, "Vexa-K300_r5p0-06rel0", "odd\udcffcore", "r0p0_00rel0", "opencl", 200,
              False, False),
             (1, "Vexa-K300_r5p0-06rel0", "Vexa-K580", "r0p0_00rel0", "openglessl", 320,
              True, True),
             (2, "Vexa-K300_r5p0-06rel0", "Vexa-K460", "r0p1_00rel0", "openglessl", 320,
              True, True)])

    def test_each_filter_counts(self):
        library = self.opened()
        for filters, ids in [
            ({"driver": "Vexa-K300_r5p0-06rel0"}, [0, 1, 2]),
            ({"driver": "Vexa"}, []),
            ({"core": "Vexa-K460"}, [2]),
            ({"core": "odd\udcffcore"}, [0]),
            ({"core": b"odd\xffcore"}, [0]),
            ({"revision": "r0p0_00rel0"}, [0, 1]),
            ({"api": "opencl"}, [0]),
            ({"binary_output": True}, [1, 2]),
            ({"binary_output": False}, [0]),
            ({"min_version": 201}, [1, 2]),
            ({"min_version": 321}, []),
        ]:
            found = [compiler.id for compiler in library.compilers(**filters)]
            self.assertEqual(found, ids, filters)

    def test_min_version_out_of_range(self):
        library = self.opened()
        for value in -1, 2**32:
            with self.assertRaisesRegex(ValueError, "negative or too large"):
                library.compilers(min_version=value)

    def test_extensions(self):
        kernels, shaders, _ = self.opened().compilers()
        self.assertEqual(kernels.extensions, ("cl_khr_fp16",))
        self.assertEqual(shaders.extensions, ("GL_ONE", "GL_TWO"))

    def test_version(self):
        header = (TREE / "include" / "vexacm.h").read_text()
        number = tuple(
            int(header.partition(f"#define VEXACM_VERSION_{part} ")[2].split()[0])
            for part in ("MAJOR", "MINOR", "PATCH")
        )
        self.assertEqual(self.opened().version, number)
        self.assertEqual(compiler_manager.__version__, "%d.%d.%d" % number)
        self.assertEqual(compiler_manager.LIBRARY, "libcompiler_manager.so.%d" % number[0])


class Compile(Test):
    def test_nothing_to_say(self):
        outputs = self.opened().compilers(api="openglessl")[0].compile("void main() {}", "vertex")
        self.assertEqual(outputs, Outputs())
        self.assertTrue(outputs.compiled)

    def test_errors_and_warnings_without_null_texts(self):
        outputs = self.opened().compilers(api="openglessl")[0].compile("ERROR", "vertex")
        self.assertEqual(outputs.errors, ("3:4: error", "5:6: an odd \udcff"))
        self.assertEqual(outputs.warnings, ("1:2: warning",))
        self.assertFalse(outputs.compiled)

    def test_tables_and_binary(self):
        outputs = self.opened().compilers(api="openglessl")[0].compile(b"TABLE", "vertex")
        self.assertEqual(outputs.tables, (("name", "count"), ("", "12")))
        self.assertEqual(outputs.binary, b"\x00\nA\xff")

    def test_results_outlive_the_library(self):
        with self.opened() as library:
            outputs = library.compilers()[1].compile("TABLE", "vertex")
        self.assertEqual(outputs.binary, b"\x00\nA\xff")

    def test_everything_is_passed_on(self):
        kernels, shaders, _ = self.opened().compilers()
        kernels.compile("x", "kernel", kernels=["one", "two"], defines=["A", "B=1 2"])
        shaders.compile("\u00e9", "fragment", binary_output=True, prerotate=True)
        self.assertEqual(self.requests(), [
            "12 shader_type kernel kernel_name one kernel_name two compiler_type opencl "
            "define A define B=1%202 source=x",
            "6 shader_type fragment prerotate true compiler_type openglessl source=%C3%A9",
        ])
        self.assertIn("revision=r0p0_00rel0 binary=1 ", self.log.read_text())

    def test_refused(self):
        compiler = self.opened().compilers(api="openglessl")[0]
        with self.assertRaises(Refused):
            compiler.compile("FAIL", "vertex")
        self.assertEqual(compiler.compile("x", "vertex"), Outputs())

    def test_all_that_is_handed_out_is_handed_back(self):
        library = self.opened()
        released = []
        for name in ("vexacm_release_compilers", "vexacm_release_compiler_outputs"):
            function = getattr(library._functions, name)
            setattr(library._functions, name,
                    lambda *given, name=name, function=function: (
                        released.append(name), function(*given)))
        compiler = library.compilers(api="openglessl")[0]
        compiler.compile("TABLE", "vertex")
        with self.assertRaises(Refused):
            compiler.compile("FAIL", "vertex")
        self.assertEqual(released, ["vexacm_release_compilers"]
                         + ["vexacm_release_compiler_outputs"] * 2)

    def test_nul_characters(self):
        compiler = self.opened().compilers(api="openglessl")[0]
        for source, options in [("a\0b", {}), ("a", {"defines": ["\0"]})]:
            with self.assertRaisesRegex(ValueError, "NUL"):
                compiler.compile(source, "vertex", **options)
        self.assertEqual(self.requests(), [])

    def test_one_call_at_a_time(self):
        library = self.opened()
        called, held = set(), []
        for name in compiler_manager._PROTOTYPES:
            def checked(*given, name=name, function=getattr(library._functions, name)):
                called.add(name)
                held.append(compiler_manager._lock.locked())
                return function(*given)
            setattr(library._functions, name, checked)
        library.version
        compiler = library.compilers()[1]
        compiler.extensions
        compiler.compile("TABLE", "vertex")
        library.close()
        self.assertEqual(set(compiler_manager._PROTOTYPES) - called,
                         {"vexacm_initialize_libraries"})
        self.assertTrue(all(held))


class Life(Test):
    def test_closed_then_plug_ins_are_too(self):
        with self.opened() as library:
            library.compilers()
        calls = [line.split()[-1] for line in self.log.read_text().splitlines()]
        self.assertEqual(calls.count("load"), 2)
        self.assertEqual(calls.count("unload"), 2)
        library.close()

    def test_closed_then_not_usable(self):
        with self.opened() as library:
            compiler = library.compilers()[0]
        with self.opened():
            for use in (library.compilers, lambda: library.version, lambda: compiler.extensions,
                        lambda: compiler.compile("x", "kernel", kernels=["k"])):
                with self.assertRaisesRegex(ValueError, "closed"):
                    use()

    def test_second_one_then_refused(self):
        first = self.opened()
        with self.assertRaisesRegex(RuntimeError, "another"):
            Library(self.plugins, library=LIBRARY)
        self.assertEqual(len(first.compilers()), 3)

    def test_no_such_library(self):
        with self.assertRaises(OSError):
            Library(self.plugins, library="libno_such_library.so.4")
        self.opened()


class Programs(Test):
    def run_python(self, *arguments):
        environment = dict(os.environ, PYTHONPATH=os.pathsep.join(sys.path),
                           LD_LIBRARY_PATH=os.path.dirname(LIBRARY))
        return subprocess.run([sys.executable, *map(str, arguments)],
                              env=environment, capture_output=True, text=True)

    def run_code(self, code):
        return self.run_python("-c", code, self.plugins, LIBRARY)

    def test_example(self):
        source = self.plugins / "a.frag"
        for text, kernels, status, err in [
            ("x", ["fragment"], 0, ""),
            ("x", ["kernel", "k"], 0, ""),
            ("ERROR", ["fragment"], 1, "Compiler Manager Error: NULL inputs to string_copy.\n"
             f"{source}: 3:4: error\n{source}: 5:6: an odd \\udcff\n{source}: 1:2: warning\n"),
        ]:
            source.write_text(text)
            ended = self.run_python(TREE / "examples" / "compile.py", self.plugins, source,
                                    *kernels)
            self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (status, "", err))

    def test_the_library_s_lines_are_left_alone(self):
        shutil.rmtree(self.plugins / "opencl")
        ended = self.run_code(
            "import sys, compiler_manager\n"
            "with compiler_manager.Library(sys.argv[1], library=sys.argv[2]) as library:\n"
            "    try:\n"
            "        library.compilers()[0].compile('x', 'mesh')\n"
            "    except compiler_manager.Refused as refused:\n"
            "        print(refused)\n")
        self.assertEqual(ended.stdout, "the compiler did not carry out the request\n")
        self.assertEqual(ended.stderr,
                         f"Unable to open library directory {self.plugins}/opencl\n"
                         "Compiler Manager Error: Unknown shader type: mesh.\n")
        self.assertEqual(ended.returncode, 0)

    def test_exception_in_initialisation_then_found_out_beforehand(self):
        code = ("import sys, compiler_manager\n"
                "print(compiler_manager.can_open(sys.argv[1], library=sys.argv[2]))")
        self.assertEqual(self.run_code(code).stdout, "True\n")
        self.add_driver("opencl", KERNEL_DRIVER.replace("version 200", "version new"))
        ended = self.run_code(code)
        self.assertEqual(ended.stdout, "False\n")
        self.assertIn("stoi", ended.stderr)


if __name__ == "__main__":
    unittest.main()
