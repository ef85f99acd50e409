#!/usr/bin/env python3
"""Prints what `llvm-cov export` found, and what is missing; see script/coverage.

  report.py BUILD EXCLUSIONS

Of a template or an inline function, what one of its instances reaches is reached.
"""
import collections
import json
import pathlib
import sys
import tomllib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
KINDS = ["lines", "branches", "conditions"]


def read_lines(lcov):
    """(file, line) -> whether it was reached"""
    reached = {}
    for record in lcov.read_text().splitlines():
        name, _, value = record.partition(":")
        if name == "SF":
            file = pathlib.Path(value).relative_to(ROOT)
        elif name == "DA":
            line, count = value.split(",")[:2]
            reached[str(file), int(line)] = int(count) > 0
    return reached


class Figures:
    def __init__(self, build, exclusions):
        self.sources = {}
        self.exclusions = exclusions
        self.used = set()
        # (file, kind) -> {place and outcome: whether it was reached}
        self.reached = collections.defaultdict(lambda: collections.defaultdict(bool))
        for (file, line), reached in read_lines(build / "all.lcov").items():
            self.note(file, "lines", line, "line", reached)
        self.files = []
        for entry in json.loads((build / "all.text").read_text())["data"][0]["files"]:
            file = str(pathlib.Path(entry["filename"]).relative_to(ROOT))
            self.files.append(file)
            for line, column, _, _, true, false, *_ in entry["branches"]:
                self.note(file, "branches", (line, column), "branch never true", true > 0)
                self.note(file, "branches", (line, column), "branch never false", false > 0)
            for line, column, _, _, *_, conditions in entry["mcdc_records"]:
                for number, decides in enumerate(conditions, 1):
                    self.note(file, "conditions", (line, column),
                              f"condition {number} never decides", decides)

    def note(self, file, kind, place, outcome, reached):
        self.reached[file, kind][place, outcome] |= reached

    def describe(self, file, place, outcome):
        line = place if isinstance(place, int) else place[0]
        if file not in self.sources:
            self.sources[file] = (ROOT / file).read_text().splitlines()
        return line, f"{outcome}: {self.sources[file][line - 1].strip()}"

    def missing(self, file, kind):
        """What is missing; what may be is forgotten."""
        places = self.reached[file, kind]
        for place, outcome in sorted((p for p, reached in places.items() if not reached), key=str):
            line, text = self.describe(file, place, outcome)
            for number, exclusion in enumerate(self.exclusions):
                if (exclusion["file"], exclusion["missing"]) == (file, text):
                    self.used.add(number)
                    del places[place, outcome]
                    break
            else:
                yield f"{file}:{line}: {text}"

    def counts(self, file):
        return [(sum(places.values()), len(places))
                for places in (self.reached[file, kind] for kind in KINDS)]


def row(name, counts):
    cells = [f"{reached} of {total}" if total else "-" for reached, total in counts]
    print(f"{name:36}" + "".join(f"{cell:>14}" for cell in cells))


def main():
    build = pathlib.Path(sys.argv[1])
    exclusions = tomllib.loads(pathlib.Path(sys.argv[2]).read_text())["exclusion"]
    figures = Figures(build, exclusions)
    wrong = [text for file in figures.files for kind in KINDS
             for text in figures.missing(file, kind)]
    for number, exclusion in enumerate(exclusions):
        if number not in figures.used:
            wrong.append(f"nothing is excluded by: {exclusion['file']}: {exclusion['missing']}")

    print(f"{'':36}" + "".join(f"{kind:>14}" for kind in KINDS))
    counts = [figures.counts(file) for file in figures.files]
    for file, count in zip(figures.files, counts):
        row(file, count)
    totals = [tuple(map(sum, zip(*column))) for column in zip(*counts)]
    row("all", totals)
    print(f"{len(figures.used)} excluded")

    by_faults = read_lines(build / "faults.lcov")
    untouched = [f"{file}:{line}: not reached by tests/faults"
                 for (file, line), reached in sorted(by_faults.items()) if not reached]
    print(f"tests/faults alone: {len(by_faults) - len(untouched)} of {len(by_faults)} lines")

    if not all(total for _, total in totals):
        wrong.append("nothing was measured")
    for text in wrong + untouched:
        print(text)
    return 1 if wrong or untouched else 0


if __name__ == "__main__":
    sys.exit(main())
