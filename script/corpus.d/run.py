#!/usr/bin/env python3
"""Compiles what `fetch` unpacked and prints how much of it is clean.

    script/corpus.d/run.py VEXACM FOLDER
"""

import collections
import json
import os
import shlex
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from packages import Job, Package, packages

CLEAN, ERRORS, REFUSED, CRASHED = "clean", "with errors", "refused", "crashed"
OUTCOMES = {"compiled": CLEAN, "errors": ERRORS, "crashed": CRASHED, "exited": CRASHED,
            "timed_out": CRASHED, "out_of_memory": CRASHED}


@dataclass
class Result:
    outcome: str
    message: str
    command: list[str]
    valid: bool = False


def environment(job: Job, binary: Path) -> str:
    """Whose rules the binary has to follow."""
    if job.stage != "kernel":
        return "opengl4.5"
    # For OpenCL spirv-val knows these versions and no extensions; else the general rules hold.
    minor_version = binary.read_bytes()[5]
    known = {0: "opencl2.0", 2: "opencl2.2"}
    if minor_version in known and "cl_khr_int64" not in job.source:
        return known[minor_version]
    return f"spv1.{minor_version}"


def validate(job: Job, binary: Path) -> tuple[bool, str]:
    done = subprocess.run(["spirv-val", "--target-env", environment(job, binary), str(binary)],
                          text=True, errors="replace", capture_output=True, check=False)
    return done.returncode == 0, done.stderr.strip()


def result_of(vexacm: str, job: Job, line: dict) -> Result:
    command = [vexacm, "compile", line["source"], "--stage", job.stage]
    for define in job.defines:
        command += ["-D", define]
    for kernel in job.kernels:
        command += ["--kernel", kernel]
    texts = [*line["errors"], line["detail"], line["printed"], line["outcome"]]
    message = next(text for text in texts if text.strip())
    result = Result(OUTCOMES.get(line["outcome"], REFUSED), message.strip(), command)
    if result.outcome == CLEAN:
        result.valid, result.message = validate(job, Path(line["output"]))
    return result


def write_sources(folder: Path, jobs: list[Job]) -> Path:
    """The manifest of what was written."""
    manifest = []
    for job in jobs:
        source = folder / job.name.replace(" ", "-")
        source.parent.mkdir(parents=True, exist_ok=True)
        source.write_text(job.source, encoding="utf-8", errors="surrogateescape")
        manifest.append({"source": str(source.relative_to(folder)), "stage": job.stage,
                         "defines": list(job.defines), "kernels": list(job.kernels)})
    file = folder / "manifest.json"
    file.write_text(json.dumps({"sources": manifest}))
    return file


def compile_package(vexacm: str, folder: Path, package: Package) -> list[Result]:
    folder /= package.title.replace(" ", "-")
    manifest = write_sources(folder, package.jobs)
    api = "opencl" if package.jobs[0].stage == "kernel" else "openglessl"
    command = [vexacm, "batch", "--manifest", str(manifest), "--core", first_core(vexacm, api),
               "--outputs", str(folder / "binaries"), "--give-up-after", "0", "--json", "--ordered"]
    done = subprocess.run(command, stdout=subprocess.PIPE, check=False)
    lines = [json.loads(line) for line in done.stdout.splitlines()]
    if len(lines) != len(package.jobs):
        sys.exit(f"{package.title}: {len(lines)} results of {len(package.jobs)}")
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(lambda pair: result_of(vexacm, *pair), zip(package.jobs, lines)))


def failure(package: Package, job: Job, result: Result) -> str:
    what = "invalid SPIR-V" if result.outcome == CLEAN else result.outcome
    meant = ", as it is meant to" if job.meant_to_fail else ""
    return (f"{package.title}: {job.name}: {what}{meant}\n"
            f"    {result.message.splitlines()[0]}\n"
            f"    {shlex.join(result.command)}\n")


def row(package: Package, results: list[Result]) -> list[str]:
    outcomes = collections.Counter(result.outcome for result in results)
    valid = sum(result.valid for result in results)
    return [package.title, package.version, str(len(results)),
            *(str(outcomes[outcome]) for outcome in (CLEAN, ERRORS, REFUSED, CRASHED)), str(valid)]


def print_table(rows: list[list[str]]) -> None:
    widths = [max(len(cell) for cell in column) for column in zip(*rows)]
    for cells in rows:
        texts = [cell.ljust(width) for cell, width in zip(cells[:2], widths)]
        numbers = [cell.rjust(width) for cell, width in zip(cells[2:], widths[2:])]
        print("  ".join(texts + numbers))


def first_core(vexacm: str, api: str) -> str:
    """Of the first compiler, or none."""
    done = subprocess.run([vexacm, "list", "--api", api, "--json"], stdout=subprocess.PIPE,
                          check=False)
    return json.loads(done.stdout)[0]["core"] if done.returncode == 0 else ""


def main(vexacm: str, folder: Path) -> int:
    sources = folder / "sources"
    shutil.rmtree(sources, ignore_errors=True)
    kernels = first_core(vexacm, "opencl") != ""
    rows = [["package", "version", "files", CLEAN, ERRORS, REFUSED, CRASHED, "valid SPIR-V"]]
    failures = []
    crashed = False
    for package in packages(folder / "packages"):
        if not kernels and package.jobs[0].stage == "kernel":
            print(f"{package.title} is left out: there is no OpenCL plug-in")
            continue
        results = compile_package(vexacm, sources, package)
        rows.append(row(package, results))
        failures += [failure(package, job, result)
                     for job, result in zip(package.jobs, results) if not result.valid]
        crashed = crashed or any(result.outcome == CRASHED for result in results)
    print_table(rows)
    (folder / "failures.txt").write_text("\n".join(failures), encoding="utf-8")
    print(f"\n{len(failures)} failures, with their causes, in {folder / 'failures.txt'}")
    return 1 if crashed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], Path(sys.argv[2])))
