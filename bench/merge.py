#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures what it takes to join the shards of a batch, and to start one.

    bench/merge.py BUILD [JOBS]

BUILD is a build folder with VEXACM_BENCH=ON. Runs two shards of JOBS small shaders and
merges them into each report; prints seconds and memory. Then what each source of a run
costs at its start, when its text is read for the run's digest.
"""
import pathlib
import subprocess
import sys
import tempfile
import time

import batch

JOBS = int(sys.argv[2]) if len(sys.argv) > 2 else 100_000
ROUNDS = 3
REPORTS = [[], ["--json"], ["--sarif", "report"], ["--junit", "report"], ["--html", "report"]]


def measured(command, folder, output):
    """Seconds, and the most kilobytes that it was seen to have in memory."""
    most = 0
    with (folder / output).open("wb") as out:
        began = time.perf_counter()
        process = subprocess.Popen(command, cwd=folder, stdout=out)
        while process.poll() is None:
            most = max(most, batch.resident(process.pid))
            time.sleep(0.01)
        took = time.perf_counter() - began
    if process.returncode:
        sys.exit(f"{command}: exit status {process.returncode}")
    return took, most


def show(what, results):
    times = sorted(took for took, _ in results)
    print(f"{what:20} {times[len(times) // 2]:6.2f} s ({times[0]:.2f} to {times[-1]:.2f})"
          f" {max(memory for _, memory in results):8} KB", flush=True)


def merge(folder):
    lists = ["@list"] * (JOBS // batch.SHADERS)
    for number in (1, 2):
        shard = ["--json", "--shard", f"{number}/2", *lists]
        show(f"shard {number} of 2", [measured([*batch.TOOL, *shard], folder, f"{number}.jsonl")])
    for report in REPORTS:
        command = [batch.TOOL[0], "merge", *report, "2.jsonl", "1.jsonl"]
        show(" ".join(["merge", *report[:1]]),
             [measured(command, folder, "output") for _ in range(ROUNDS)])


def start(folder, names):
    # A shard without jobs does nothing else.
    nothing = ["--json", "--shard", "1000000000/1000000000"]
    times = {}
    for sources in (names[:1], names):
        results = [measured([*batch.TOOL, *nothing, *sources], folder, "output")
                   for _ in range(ROUNDS)]
        times[len(sources)] = sorted(took for took, _ in results)[ROUNDS // 2]
    print(f"a source of a run    {(times[len(names)] - times[1]) / (len(names) - 1) * 1e6:6.1f} us")


def main():
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        names = batch.write_shaders(folder)
        merge(folder)
        start(folder, names)


if __name__ == "__main__":
    main()
