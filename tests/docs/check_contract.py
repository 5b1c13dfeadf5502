#!/usr/bin/env python3
"""Every entry of the page names the tests that hold it, and these tests exist.

usage: check_contract.py CTEST BUILD_FOLDER PAGE
"""

import pathlib
import re
import subprocess
import sys


def plain(name):
    """Return the suite and the test that ctest runs, without what stands for types and parameters."""
    suite, dot, test = re.sub(r"<.*", "", name).partition(".")
    return suite.split("/")[-1] + dot + test.split("/")[0]


def main():
    ctest, folder, page = sys.argv[1:]
    listing = subprocess.run([ctest, "--test-dir", folder, "-N"], check=True, capture_output=True, text=True).stdout
    tests = {plain(found) for found in re.findall(r"^ *Test +#\d+: (\S+)", listing, flags=re.MULTILINE)}
    if len(tests) < 1000:
        sys.exit(f"{len(tests)} tests only: was the list read right?")

    entries = re.split(r"^- ", pathlib.Path(page).read_text(encoding="utf-8"), flags=re.MULTILINE)[1:]
    if not entries:
        sys.exit(f"{page} has no entry")
    failures = []
    for entry in entries:
        title = entry.splitlines()[0]
        found = re.search(r"^ *Tests?:((?:\s*`[^`]+`,?)+)\s*(?=\n\n|\n#|\Z)", entry.rstrip() + "\n\n", flags=re.MULTILINE)
        if not found:
            failures.append(f"no test is named at the end: {title}")
            continue
        names = re.findall(r"`([^`]+)`", found[1])
        failures += [f"no such test: {name} ({title})" for name in names if name not in tests]
    if failures:
        sys.exit("\n".join(failures))
    print(f"{len(entries)} entries")


if __name__ == "__main__":
    main()
