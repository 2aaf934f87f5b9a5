#!/usr/bin/env python3
"""Fails when docs/kept-behaviour.md names a test that does not stand in tests/, or has a rule without a test.

A name is Suite.Case, or Suite.Case/Row for one row of a table of cases, be it in a file of tests/data/.
"""

import pathlib
import re
import sys

CASE = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)")
NAME = re.compile(r"`(\w+\.\w+)(?:/(\w+))?`")


def cases_of(folder):
    """The names of all cases with the text of the file that each stands in."""
    cases = {}
    for file in folder.rglob("*.cpp"):
        text = file.read_text(encoding="latin-1")
        for suite, case in CASE.findall(text):
            cases[f"{suite}.{case}"] = text
    return cases


def rows_of(folder):
    """The names of the cases that stand in data files."""
    return {row for file in folder.rglob("*.txt") for row in re.findall(r"^=== (\w+)", file.read_text(), re.M)}


def faults_of(document, cases, rows):
    for number, line in enumerate(document.splitlines(), 1):
        if not line.startswith("|") or line.startswith(("| rule ", "| --- ")):
            continue
        names = NAME.findall(line.split("|")[-2])
        if not names:
            yield f"line {number}: no test is named"
        for name, row in names:
            if name not in cases:
                yield f"line {number}: there is no test {name}"
            elif row and f'"{row}"' not in cases[name] and row not in rows:
                yield f"line {number}: {name} has no row {row}"


def main():
    root = pathlib.Path(sys.argv[1])
    document = (root / "docs" / "kept-behaviour.md").read_text(encoding="utf-8")
    faults = list(faults_of(document, cases_of(root / "tests"), rows_of(root / "tests" / "data")))
    if "| rule |" not in document:
        faults.append("there is no table of rules")
    for fault in faults:
        print(f"docs/kept-behaviour.md: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
