#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that the golden files are what readers of their formats expect.

    formats_test.py junit|sarif

Exits with 77 where a package is missing.
"""

import json
import pathlib
import sys
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent

CASE_ELEMENTS = ["skipped", "error", "failure", "system-out"]
COUNTED = {"failures": "failure", "errors": "error", "skipped": "skipped"}


def check(holds, what):
    if not holds:
        sys.exit(f"{what}: does not hold")


def check_counts(element, path):
    cases = list(element.iter("testcase"))
    check(int(element.get("tests")) == len(cases), f"{path}: tests of {element.attrib}")
    for count, tag in COUNTED.items():
        found = sum(case.find(tag) is not None for case in cases)
        check(int(element.get(count)) == found, f"{path}: {count} of {element.attrib}")


def check_case(case, path):
    tags = [child.tag for child in case]
    check(set(case.attrib) == {"classname", "name"}, f"{path}: {case.attrib}")
    check(tags == [tag for tag in CASE_ELEMENTS if tag in tags], f"{path}: order of {tags}")


def check_junit(path):
    suites = xml.etree.ElementTree.parse(path).getroot()
    check(suites.tag == "testsuites", path)
    check_counts(suites, path)
    for suite in suites:
        check(suite.tag == "testsuite", path)
        check_counts(suite, path)
        for case in suite:
            check_case(case, path)
    check(len(list(suites.iter("testcase"))) > 0, f"{path}: has cases")


def check_sarif(path):
    try:
        import jsonschema
    except ImportError:
        print("skipped: needs python3-jsonschema")
        sys.exit(77)
    schema = json.loads((HERE / "sarif-schema-2.1.0.json").read_text())
    validator = jsonschema.Draft4Validator(schema)
    check(list(validator.iter_errors({"version": "2.1.0"})), "the schema refuses what has no runs")
    log = json.loads(path.read_text())
    for error in validator.iter_errors(log):
        sys.exit(f"{path}: {error.json_path}: {error.message}")
    for run in log["runs"]:
        rules = run["tool"]["driver"]["rules"]
        for result in run["results"]:
            rule = rules[result["ruleIndex"]]
            check(rule["id"] == result["ruleId"], f"{path}: rule of {result}")


def main():
    kind = sys.argv[1]
    ending, check_file = {"junit": ("xml", check_junit), "sarif": ("sarif", check_sarif)}[kind]
    paths = sorted((HERE / "golden").glob(f"*.{ending}"))
    check(paths, f"golden files that end in {ending}")
    for path in paths:
        check_file(path)


main()
