#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What vexacm batch prints and takes has the form that docs/*.schema.json tell.

    schema_test.py VEXACM FAKE_PLUGIN

Exits with 77 where a package is missing.
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    import jsonschema
except ImportError:
    print("skipped: needs python3-jsonschema")
    sys.exit(77)

FAKE_PLUGIN = sys.argv.pop()
TOOL = sys.argv.pop()
TREE = pathlib.Path(__file__).parents[2]

STEERING = """\
record 1
pair compiler_type openglessl
pair flexible_version 1.0.0
pair openglessl_version 320
pair openglessl_extensions GL_ONE
core k46x r0p0_00rel0
outputs ERROR
a 1:2:%20wrong
b 3:4:%20odd
list
item cell
outputs BOOM
say before
do signal 6
outputs LEAVE
do exit 3
outputs WAIT
do hang
outputs FAIL
result 9
outputs BINARY
binary 00
"""
SOURCES = {"a.frag": "", "b.frag": "ERROR", "c.frag": "BOOM", "d.frag": "LEAVE",
           "e.frag": "WAIT", "f.frag": "FAIL", "g.frag": "BINARY", "h\udcff.frag": "BINARY",
           "i.frag": "BOOM", "j.frag": "BINARY"}


def validator(name):
    schema = json.loads((TREE / "docs" / name).read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


class Schemas(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        plugins = self.folder / "plugins" / "openglessl"
        plugins.mkdir(parents=True)
        (plugins.parent / "opencl").mkdir()
        name = "libVexa-K300_r5p0-06rel0"
        shutil.copy(FAKE_PLUGIN, plugins / f"{name}.so")
        (plugins / f"{name}-so.steer").write_text(STEERING)
        for source, text in SOURCES.items():
            (self.folder / source).write_text(text)

    def batch(self, *arguments):
        return subprocess.run([TOOL, "--plugins", "plugins", "batch", *arguments],
                              cwd=self.folder, capture_output=True, check=False)

    def test_every_line(self):
        lines = validator("batch.schema.json")
        ended = self.batch("--json", "--ordered", "--timeout", "1", "--outputs", "out",
                           "--give-up-after", "4", *SOURCES, "missing.frag", "-D", "A")
        results = [json.loads(line) for line in ended.stdout.splitlines()]
        for result in results:
            lines.validate(result)
        self.assertEqual([result["outcome"] for result in results],
                         ["no_binary", "errors", "crashed", "exited", "timed_out", "refused",
                          "compiled", "compiled", "crashed", "given_up", "given_up"])
        self.assertEqual(results[7]["source_bytes"], b"h\xff.frag".hex())
        self.assertEqual(ended.returncode, 4)

    def test_every_line_of_shards(self):
        lines = validator("batch.schema.json")
        printed = [self.batch("--json", "--shard", f"{number}/2", *SOURCES, "--timeout", "1").stdout
                   for number in (1, 2)]
        for line in b"".join(printed).splitlines():
            lines.validate(json.loads(line))
            self.assertIn("shard", json.loads(line))
        merged = subprocess.run([TOOL, "merge", "--json", "-"], input=b"".join(printed),
                                capture_output=True, check=False)
        for line in merged.stdout.splitlines():
            lines.validate(json.loads(line))
            self.assertNotIn("shard", json.loads(line))
        self.assertEqual(len(merged.stdout.splitlines()), len(SOURCES))

    def test_outcomes_are_all_of_them(self):
        source = (TREE / "tools/vexacm/batch/result.hpp").read_text()
        body = re.search(r"enum class Outcome \{(.*?)\};", source, re.DOTALL)[1]
        outcomes = re.findall(r"^ *(\w+)\b", body, re.MULTILINE)
        schema = validator("batch.schema.json").schema["properties"]["outcome"]
        self.assertEqual([choice["const"] for choice in schema["oneOf"]], outcomes)
        page = (TREE / "docs/batch.md").read_text()
        self.assertEqual(re.findall(r"^\| `(\w+)` \|", page, re.MULTILINE)[:len(outcomes)],
                         outcomes)

    def test_manifests(self):
        manifests = validator("manifest.schema.json")
        manifests.validate(json.loads((TREE / "examples/shaders/manifest.json").read_text()))
        for manifest, status in [
            ({"sources": [{"source": "a.frag"}]}, 0),
            ({"sources": [{"source": "a.frag", "stage": "vertex", "defines": ["A"]}]}, 0),
            ({"sources": [{"source": "a.frag", "stage": "mesh"}]}, 2),
            ({"sources": [{"source": "a.frag", "defines": "A"}]}, 2),
            ({"sources": [{"source": "a.frag", "defines": [1]}]}, 2),
            ({"sources": [{"source": ""}]}, 2),
            ({"sources": [{"stage": "vertex"}]}, 2),
            ({"sources": [{"source": "a.frag", "stagee": "vertex"}]}, 2),
            ({"sources": {}}, 2),
            ({"source": []}, 2),
            ([], 2),
        ]:
            (self.folder / "m.json").write_text(json.dumps(manifest))
            self.assertEqual(self.batch("--manifest", "m.json").returncode, status, manifest)
            self.assertEqual(manifests.is_valid(manifest), status == 0, manifest)


if __name__ == "__main__":
    unittest.main()
