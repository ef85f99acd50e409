#!/usr/bin/env python3
"""Compiles what `fetch` unpacked and prints how much of it is clean.

    script/corpus.d/run.py VEXACM FOLDER
"""

import collections
import os
import shlex
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from packages import Job, Package, packages

SECONDS = 60
CLEAN, ERRORS, REFUSED, CRASHED = "clean", "with errors", "refused", "crashed"
OUTCOMES = {0: CLEAN, 1: ERRORS, 2: REFUSED, 3: REFUSED, 4: REFUSED, 5: REFUSED}


@dataclass
class Result:
    outcome: str
    message: str
    command: list[str]
    valid: bool = False


def run(command: list[str]) -> tuple[int, str]:
    """Exit status, negative after a crash or too long a time, and what it said."""
    try:
        done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              timeout=SECONDS, check=False)
    except subprocess.TimeoutExpired:
        return -1, f"not finished after {SECONDS} seconds"
    message = done.stderr.decode(errors="replace").strip()
    return done.returncode, message or f"exit status {done.returncode}"


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
    status, message = run(["spirv-val", "--target-env", environment(job, binary), str(binary)])
    return status == 0, message


def compile_job(vexacm: str, source: Path, job: Job) -> Result:
    source.parent.mkdir(parents=True, exist_ok=True)
    source.write_text(job.source, encoding="utf-8", errors="surrogateescape")
    binary = source.with_name(source.name + ".spv")
    command = [vexacm, "compile", str(source), "--stage", job.stage, "-o", str(binary)]
    for define in job.defines:
        command += ["-D", define]
    for kernel in job.kernels:
        command += ["--kernel", kernel]
    status, message = run(command)
    message = message.replace(f"{source}: ", "")
    result = Result(OUTCOMES.get(status, CRASHED), message, command)
    if result.outcome == CLEAN:
        result.valid, result.message = validate(job, binary)
    return result


def compile_package(vexacm: str, folder: Path, package: Package) -> list[Result]:
    sources = [folder / package.title.replace(" ", "-") / job.name.replace(" ", "-")
               for job in package.jobs]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(lambda pair: compile_job(vexacm, *pair), zip(sources, package.jobs)))


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


def compiles_kernels(vexacm: str) -> bool:
    return run([vexacm, "list", "--api", "opencl"])[0] == 0


def main(vexacm: str, folder: Path) -> int:
    sources = folder / "sources"
    shutil.rmtree(sources, ignore_errors=True)
    kernels = compiles_kernels(vexacm)
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
