#!/usr/bin/env python3
"""Check the pages: links lead to files, and the walks of CONTRIBUTING.md name what is in the files that they link.

usage: check_links.py ROOT
"""

import pathlib
import re
import sys

LINK = r"\[[^\]]+\]\(([^)#:]+)\)"


def check_links(page):
    """Return the links of a page that lead nowhere."""
    text = page.read_text(encoding="utf-8")
    return [f"{page.name} links {link}, which does not exist" for link in re.findall(LINK, text)
            if not (page.parent / link).exists()]


def check_walks(page):
    """Return what the walks name and the linked files do not. A step: "1. `name` in [file](path), `name` ..."."""
    text = page.read_text(encoding="utf-8")
    walks = re.findall(r"^### Walk.*\n((?:(?!#).*\n)*)", text, flags=re.MULTILINE)
    if len(walks) < 2:
        sys.exit(f"{page.name} has {len(walks)} walks: two are expected")
    failures = []
    for walk in walks:
        if len(walk.strip().splitlines()) > 15:
            failures.append(f"a walk has more than 15 lines: {walk[:60]}")
        steps = re.findall(r"^\d+\. (.+(?:\n   .+)*)", walk, flags=re.MULTILINE)
        if len(steps) < 5:
            failures.append(f"a walk has {len(steps)} steps only: {walk[:60]}")
        for step in steps:
            content = "".join((page.parent / link).read_text(encoding="utf-8") for link in re.findall(LINK, step))
            for name in re.findall(r"`([^`]+)`", step):
                for word in re.findall(r"\w+", name):
                    if not re.search(rf"\b{word}\b", content):
                        failures.append(f"no file of this step has {name}: {' '.join(step.split())}")
    return failures


def main():
    (root,) = sys.argv[1:]
    root = pathlib.Path(root)
    pages = [root / "README.md", root / "CONTRIBUTING.md", root / "CHANGELOG.md", *sorted((root / "docs").glob("*.md"))]
    failures = [failure for page in pages for failure in check_links(page)]
    if not failures:
        failures = check_walks(root / "CONTRIBUTING.md")
    if failures:
        sys.exit("\n".join(failures))
    print(f"{len(pages)} pages")


if __name__ == "__main__":
    main()
