#!/usr/bin/env python3
"""Tell which lines and branches of our sources the tests have executed.

usage: coverage.py BUILD_FOLDER SOURCE_FOLDER...

Branches are those that a source decides on: gcov marks the ones that exceptions take out of a call, also in functions
that never ran, and they are left out. A line of a header or a template counts once, whichever programs and instances
executed it. The exit code is 1 if fewer than 97 % of the lines or 90 % of the branches were executed.
"""

import collections
import json
import pathlib
import subprocess
import sys

LEAST = {"lines": 97.0, "branches": 90.0}


def documents(build_folder):
    """Yield what gcov tells of each object file."""
    for counts in sorted(pathlib.Path(build_folder).rglob("*.gcda")):
        command = ["gcov", "--json-format", "--branch-probabilities", "--stdout", str(counts)]
        output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            if line.startswith("{"):
                yield json.loads(line)


def count(build_folder, root, folders):
    """Return how often each line and each branch was executed, by file, line and number of the branch."""
    lines, branches = collections.Counter(), collections.Counter()
    for document in documents(build_folder):
        for file in document["files"]:
            path = (pathlib.Path(document["current_working_directory"]) / file["file"]).resolve()
            if not any(path.is_relative_to(root / folder) for folder in folders):
                continue
            name = str(path.relative_to(root))
            for line in file["lines"]:
                lines[name, line["line_number"]] += line["count"]
                for number, branch in enumerate(line["branches"]):
                    if not branch["throw"]:
                        branches[name, line["line_number"], number] += branch["count"]
    return {"lines": lines, "branches": branches}


def main():
    build_folder, folders = sys.argv[1], sys.argv[2:]
    root = pathlib.Path.cwd().resolve()
    found = count(build_folder, root, folders)
    if len(found["lines"]) < 1000:
        sys.exit(f"{len(found['lines'])} lines only: was anything counted?")

    for what in ("lines", "branches"):
        missed = collections.defaultdict(list)
        for place in sorted(place for place, times in found[what].items() if times == 0):
            if place[1] not in missed[place[0]]:
                missed[place[0]].append(place[1])
        print(f"Not executed, {what}:")
        for name, numbers in missed.items():
            print(f"  {name}: {', '.join(map(str, numbers))}")

    is_enough = True
    for what, least in LEAST.items():
        executed = sum(times != 0 for times in found[what].values())  # threads may race below 0
        share = 100.0 * executed / len(found[what])
        is_enough = is_enough and share >= least
        print(f"{what}: {executed} of {len(found[what])}, {share:.1f} % (at least {least:.0f} % are wanted)")
    sys.exit(0 if is_enough else 1)


if __name__ == "__main__":
    main()
