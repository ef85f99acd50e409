#!/usr/bin/env python3
"""Prints the figures of a run as tables and writes them, with plots, to docs/performance.md.

    bench/report.py BUILD FIGURES
"""

import json
import os
import platform
import re
import subprocess
import sys
from pathlib import Path

from plot import Plot

PAGE = Path("docs/performance.md")
PLOTS = Path("docs/performance")
BEGIN, END = "<!-- script/bench writes from here -->", "<!-- to here -->"
LARGEST_LIBRARY = 80_000

Figure = dict  # a line that bench/paired.cpp printed


def time(nanoseconds: float) -> str:
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if abs(nanoseconds) >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def ratio_row(what: str, figure: Figure, most: float) -> list[str]:
    return [what.format(f"{figure['size']:,}"), time(figure["floor_ns"]),
            time(figure["library_ns"]),
            f"{figure['ratio']:.3f} ({figure['ratio_low']:.2f} to {figure['ratio_high']:.2f})",
            f"{most:.2f}", "yes" if figure["ratio"] <= most else "no"]


def compile_row(figure: Figure, defines: int, what: str) -> list[str]:
    most = 250 + 20 * defines
    return [what.format(f"{figure['size']:,}"), time(figure["floor_ns"]),
            time(figure["library_ns"]), "+" + time(figure["difference_ns"]), "+" + time(most),
            "yes" if figure["difference_ns"] <= most else "no"]


def growth_row(library: Figure, floor: Figure) -> list[str]:
    # Each was measured beside ten times the fewer.
    grown = 10 * library["ratio"]
    fewer = int(library["size"])
    return [f"from {fewer:,} to {10 * fewer:,} cores, grown", f"{10 * floor['ratio']:.1f} times",
            f"{grown:.1f} times", f"({10 * library['ratio_low']:.1f} to "
            f"{10 * library['ratio_high']:.1f})", "13 times", "yes" if grown <= 13 else "no"]


def output_of(*command: str | Path) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def instructions_to_load(build: Path, library: Path) -> int:
    profile = build / "load.out"
    subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={profile}",
                    build / "bench/load", library], check=True, capture_output=True)
    return int(re.search(r"^(?:summary|totals): (\d+)", profile.read_text(), re.M)[1])


def loading_rows(build: Path) -> list[list[str]]:
    columns = []
    for library in (build / "bench/libempty.so", build / "libcompiler_manager.so"):
        stripped = build / "stripped.so"
        subprocess.run(["strip", "-o", stripped, library], check=True)
        columns.append((stripped.stat().st_size,
                        output_of("readelf", "-rW", stripped).count("R_X86_64_"),
                        instructions_to_load(build, stripped)))
    (empty_size, empty_relocations, empty_start), (size, relocations, start) = columns
    return [["size, stripped", f"{empty_size:,} bytes", f"{size:,} bytes", "", "80,000 bytes",
             "yes" if size <= LARGEST_LIBRARY else "no"],
            ["relocations", str(empty_relocations), str(relocations), "", "counted", ""],
            ["instructions to load and unload it", f"{empty_start:,}", f"{start:,}",
             f"+{start - empty_start:,}", "counted", ""]]


def table(head: list[str], rows: list[list[str]]) -> str:
    widths = [max(map(len, column)) for column in zip(head, *rows)]
    lines = [head, ["-" * width for width in widths], *rows]
    return "\n".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |"
                     for line in lines)


def machine() -> str:
    processor = re.search(r"model name\s*: (.*)", Path("/proc/cpuinfo").read_text())[1]
    compiler = output_of("c++", "--version").splitlines()[0]
    return (f"{processor}, {os.cpu_count()} processors, Linux {platform.release()}, {compiler}, "
            f"load {os.getloadavg()[0]:.1f} at the end of the run")


def page(build: Path, rows: dict[str, list[Figure]]) -> str:
    floors = []
    for figure in rows["initialise"]:
        most = 1.05 if figure["size"] >= 100 else 1.10
        floors.append(ratio_row("initialise and release, plug-ins of 24 cores: {}", figure, most))
    floors += [ratio_row("initialise and release, {} cores", figure, 3) for figure in rows["cores"]]
    floors += [growth_row(*pair) for pair in zip(rows["growth"], rows["growth by hand"])]
    floors += [ratio_row("query for a core, {} entries", figure, 1.2) for figure in rows["query"]]
    floors += [ratio_row("query for a revision, {} entries", figure, 1.2)
               for figure in rows["query, revision"]]
    floors += [compile_row(figure, figure["size"], "compile, defines: {}")
               for figure in rows["compile"]]
    floors += [compile_row(figure, 8, "compile, 8 defines, {} entries")
               for figure in rows["compile, catalogue"]]
    floors += [ratio_row("copy a binary of {} bytes", figure, 1.05) for figure in rows["binary"]]
    floors += [ratio_row("copy {} strings", figure, 1.05) for figure in rows["strings"]]
    floors += [ratio_row("probe for extensions, {} compiles", figure, 1.02)
               for figure in rows["probe"]]
    floors += [ratio_row("compile a shader of {} bytes", figure, 1.02) for figure in rows["shader"]]
    floors += loading_rows(build)

    noise = rows["noise"][0]
    processes = [[f"{figure['size']} {what}", time(figure["floor_ns"]), time(figure["library_ns"]),
                  f"{1 / figure['ratio']:.1f} times"]
                 for what in ("shaders", "kernels") for figure in rows.get(what, [])]
    left_out = "" if "kernels" in rows else \
        "\n\nKernels were left out: there was no OpenCL plug-in, or no clang."
    return "\n\n".join([
        f"Machine: {machine()}. Noise: the floor of ten plug-ins beside itself gave a ratio of "
        f"{noise['ratio']:.3f}, half of the rounds from {noise['ratio_low']:.2f} to "
        f"{noise['ratio_high']:.2f}.",
        table(["work", "by hand", "library", "ratio (half of the rounds) or difference",
               "reach", "reached"], floors),
        "## One process, or one a source",
        table(["sources", "a process each", "in process", "less by"], processes) + left_out])


def write_plots(rows: dict[str, list[Figure]]) -> None:
    PLOTS.mkdir(exist_ok=True)
    for row, title, axis in (("initialise", "Initialise and release", "plug-ins of 24 cores"),
                             ("cores", "Initialise and release", "cores of one plug-in"),
                             ("query", "Query with one filter", "entries"),
                             ("compile", "Compile request", "defines"),
                             ("binary", "Copy of a binary", "bytes")):
        figures = [figure for figure in rows[row] if figure["size"] > 0]
        plot = Plot(title, axis)
        plot.add("library", [(figure["size"], figure["library_ns"]) for figure in figures])
        plot.add("by hand", [(figure["size"], figure["floor_ns"]) for figure in figures])
        (PLOTS / f"{row}.svg").write_text(plot.svg())


def main(build: str, figures: str) -> int:
    rows: dict[str, list[Figure]] = {}
    for line in Path(figures).read_text().splitlines():
        figure = json.loads(line)
        rows.setdefault(figure["row"], []).append(figure)
    written = page(Path(build), rows)
    print(written)
    write_plots(rows)
    before, _, rest = PAGE.read_text().partition(BEGIN)
    after = rest.partition(END)[2]
    PAGE.write_text(f"{before}{BEGIN}\n\n{written}\n\n{END}{after}")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
