#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures `vexacm batch` with a cache beside itself without one.

    bench/cache.py BUILD [JOBS]

BUILD is a build folder with the GLSL plug-in. Compiles so many small shaders, or
100,000, each once: without a cache, with a new one, and with that again. Prints what
each took, and what the cache takes. Fails where the results differ.
"""
import pathlib
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1]).resolve()
JOBS = int(sys.argv[2]) if len(sys.argv) > 2 else 100_000
TOOL = str(BUILD / "vexacm")
CORE = "Vexa-K460"

SHADER = """#version 320 es
precision mediump float;
in vec4 colour;
uniform sampler2D image;
out vec4 result;
void main() {{ result = texture(image, colour.xy) * {number}.0; }}
"""


def write_shaders(folder):
    with (folder / "list").open("w") as names:
        for number in range(JOBS):
            file = folder / f"{number}.frag"
            file.write_text(SHADER.format(number=number))
            names.write(f"{file}\n")


def run(folder, name, *options):
    """The seconds of a run, whose results go to a file of this name."""
    with (folder / name).open("wb") as results:
        began = time.perf_counter()
        subprocess.run([TOOL, "--plugins", str(BUILD / "plugins"), "batch", "--core", CORE,
                        "--json", "--ordered", "--cache-size", "4096", *options,
                        f"@{folder / 'list'}"], stdout=results, check=True)
        return time.perf_counter() - began


def main():
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        write_shaders(folder)
        cached = ["--cache", str(folder / "cache")]
        seconds = {"without": run(folder, "without"),
                   "new cache": run(folder, "first", *cached),
                   "same again": run(folder, "again", *cached)}
        for name, taken in seconds.items():
            print(f"{name:12} {taken:8.2f} s   {JOBS / taken:8.0f} jobs a second   "
                  f"{1e6 * taken / JOBS:8.1f} us a job")
        expected = (folder / "without").read_bytes()
        for name in ("first", "again"):
            if (folder / name).read_bytes() != expected:
                sys.exit(f"{name}: other results")
        for action in (["info"], ["trim", "--cache-size", "1"]):
            began = time.perf_counter()
            shown = subprocess.run([TOOL, "cache", *action, str(folder / "cache")],
                                   capture_output=True, text=True, check=True).stdout
            print(f"{action[0]}: {time.perf_counter() - began:.2f} s,", shown.replace("\n", " "))


if __name__ == "__main__":
    main()
