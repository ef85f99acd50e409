#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures `vexacm batch` beside its alternatives, one after the other in rounds.

    bench/batch.py BUILD [ROUNDS [MANY]]

BUILD is a build folder with VEXACM_BENCH=ON. Prints, for small shaders of versions 310
and 320 and one compiler: jobs a second with one worker, with two, and with two runs of
one worker side by side; in one process without isolation; with one glslangValidator
process a job. Then the memory of the parent and its workers along MANY jobs.
"""
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1]).resolve()
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 5
MANY = int(sys.argv[3]) if len(sys.argv) > 3 else 100_000
SHADERS = 2000
PROCESSES = 100
CORE = "Vexa-K460"
TOOL = [str(BUILD / "vexacm"), "--plugins", str(BUILD / "plugins"), "batch", "--core", CORE]

VERTEX = """#version {version} es
layout(location = 0) in vec4 position;
uniform mat4 transform;
out vec4 colour;
void main() {{ colour = position * {number}.0; gl_Position = transform * position; }}
"""
FRAGMENT = """#version {version} es
precision mediump float;
in vec4 colour;
uniform sampler2D image;
out vec4 result;
void main() {{ result = texture(image, colour.xy) * {number}.0; }}
"""


def write_shaders(folder):
    names = []
    for number in range(SHADERS):
        text, ending = (VERTEX, "vert") if number % 2 else (FRAGMENT, "frag")
        file = folder / f"{number}.{ending}"
        file.write_text(text.format(version=310 if number % 4 < 2 else 320, number=number))
        names.append(str(file))
    (folder / "list").write_text("".join(f"{name}\n" for name in names))
    return names


def seconds(commands):
    """How long these take side by side."""
    began = time.perf_counter()
    running = [subprocess.Popen(command, stdout=subprocess.DEVNULL) for command in commands]
    statuses = [process.wait() for process in running]
    if any(statuses):
        sys.exit(f"{commands[0]}: exit status {statuses}")
    return time.perf_counter() - began


def validate(names):
    began = time.perf_counter()
    for name in names[:PROCESSES]:
        subprocess.run(["glslangValidator", name], stdout=subprocess.DEVNULL, check=True)
    return (time.perf_counter() - began) / PROCESSES


def resident(process):
    """Kilobytes of a process that are its own, or shared with those forked from it."""
    try:
        status = pathlib.Path(f"/proc/{process}/status").read_text()
    except OSError:
        return 0
    return next((int(line.split()[1]) for line in status.splitlines()
                 if line.startswith("VmRSS")), 0)


def compare(folder, names):
    batch = [*TOOL, "--json", f"@{folder / 'list'}"]
    direct = [str(BUILD / "bench" / "in_process"), str(BUILD / "plugins"), CORE,
              str(folder / "list")]
    measures = {
        "1 worker": lambda: SHADERS / seconds([[*batch, "-j1"]]),
        "2 workers": lambda: 2 * SHADERS / seconds([[*batch, "-j2", f"@{folder / 'list'}"]]),
        "2 runs of 1 worker": lambda: 2 * SHADERS / seconds([[*batch, "-j1"]] * 2),
        "in process": lambda: SHADERS / seconds([direct]),
        "a process a job": lambda: 1 / validate(names),
    }
    rates = {name: [] for name in measures}
    for turn in range(ROUNDS):
        # Whoever comes first finds another machine.
        for name in sorted(measures, reverse=turn % 2):
            rates[name].append(measures[name]())
    for name, found in rates.items():
        print(f"{name:20} {statistics.median(found):8.0f} jobs a second"
              f"   ({min(found):.0f} to {max(found):.0f})")
    pairs = zip(rates["2 workers"], rates["2 runs of 1 worker"])
    print(f"2 workers / 2 runs   {statistics.median(a / b for a, b in pairs):8.3f}")
    pairs = zip(rates["1 worker"], rates["a process a job"])
    print(f"1 worker / processes {statistics.median(a / b for a, b in pairs):8.1f}")
    pairs = zip(rates["1 worker"], rates["in process"])
    print(f"isolation a job      {statistics.median(1e6 / a - 1e6 / b for a, b in pairs):8.1f} us")


def watch(folder):
    lists = [f"@{folder / 'list'}"] * (MANY // SHADERS)
    counted = folder / "lines"
    with counted.open("wb") as out:
        run = subprocess.Popen([*TOOL, "--json", "-j2", *lists], stdout=out)
        while run.poll() is None:
            done = counted.read_bytes().count(b"\n") if counted.stat().st_size < 1 << 31 else 0
            children = pathlib.Path(f"/proc/{run.pid}/task/{run.pid}/children")
            try:
                workers = children.read_text().split()
            except OSError:
                break
            print(f"{done:8} jobs: parent {resident(run.pid)} KB, workers "
                  + ", ".join(f"{resident(worker)} KB" for worker in workers), flush=True)
            time.sleep(5)
        run.wait()
    print(f"{counted.read_bytes().count(10):8} jobs: exit status {run.returncode}")


def main():
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        names = write_shaders(folder)
        compare(folder, names)
        watch(folder)


if __name__ == "__main__":
    main()
