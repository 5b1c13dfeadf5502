#!/usr/bin/env python3
"""Check docs/contract.md: every entry links a header that names the member, and names tests that exist.

usage: check_contract.py ROOT
"""

import pathlib
import re
import sys


def is_word_of(text, name):
    return re.search(rf"(?<!\w){re.escape(name)}(?!\w)", text) is not None


def find_tests(root):
    """Return the names of all tests: "Suite.Case" of the test programs, and what the CMake files enter.

    A suite that is instantiated for a class counts under the name of the instance, too. A variable of a CMake loop
    has one of the numbers 0 to 9.
    """
    cases, instances, entered = set(), set(), set()
    for path in (root / "tests").rglob("*"):
        if path.suffix in (".cpp", ".h"):
            text = path.read_text(encoding="utf-8")
            cases.update(re.findall(r"TEST(?:_[FP])?\(\s*(\w+),\s*(\w+)\)", text))
            instances.update(re.findall(r"INSTANTIATE_TYPED_TEST_SUITE_P\(\s*(\w+),\s*(\w+),", text))
        elif path.name == "CMakeLists.txt":
            text = path.read_text(encoding="utf-8")
            entered.update(re.findall(r"add_test\(\s*NAME (\S+)", text))
            names = re.findall(r"orvel_add_load_test\(([\w${}]+)", text)
            entered.update(f"Load.{re.sub(r'[$]{.*?}', digit, name)}" for name in names for digit in "0123456789")
    cases.update((instance, case) for instance, of in instances for suite, case in set(cases) if suite == of)
    if len(cases) < 1000:
        sys.exit(f"{len(cases)} tests only: were the sources read right?")
    return entered | {f"{suite}.{case}" for suite, case in cases}


def find_headers(page, text):
    """Return the contents of the linked headers by label, and the failures."""
    headers, failures = {}, []
    for label, link in re.findall(r"^\[([^\]]+)\]: (\S+)$", text, flags=re.MULTILINE):
        path = page.parent / link
        if path.is_file():
            headers[label] = (path.name, path.read_text(encoding="utf-8"))
        else:
            failures.append(f"no such header: {link}")
        if f"][{label}]" not in text:
            failures.append(f"nothing links {label}")
    return headers, failures


def check_entry(entry, headers, tests):
    """Return what is wrong with an entry: "**what surprises** [`member`][header], ..." and "Test: `Suite.Case`"."""
    parts = re.fullmatch(r"\*\*(.+?)\*\*\s((?:\[`[^`]+`\]\[\w+\](?:,\s)?)+)\sTests?:\s(`[^`]+`(?:,\s`[^`]+`)*)", entry)
    if not parts:
        return [f"neither title, link and tests, nor in this order: {entry[:80]}"]
    title, links, names = parts.groups()
    failures = []
    for member, label in re.findall(r"\[`([^`]+)`\]\[(\w+)\]", links):
        name, content = headers.get(label, ("", ""))
        if member != name and not all(is_word_of(content, word) for word in member.split("::")):
            failures.append(f"{label} has no {member} ({title})")
    return failures + [f"no such test: {name} ({title})" for name in re.findall(r"`([^`]+)`", names) if name not in tests]


def main():
    (root,) = sys.argv[1:]
    root = pathlib.Path(root)
    page = root / "docs/contract.md"
    text = page.read_text(encoding="utf-8")
    tests = find_tests(root)
    headers, failures = find_headers(page, text)
    entries = [" ".join(entry.split()) for entry in re.findall(r"^- (.+(?:\n  .+)*)", text, flags=re.MULTILINE)]
    if len(entries) < 300:
        sys.exit(f"{len(entries)} entries only: was the page read right?")
    for entry in entries:
        failures += check_entry(entry, headers, tests)
    if failures:
        sys.exit("\n".join(failures))
    print(f"{len(entries)} entries")


if __name__ == "__main__":
    main()
