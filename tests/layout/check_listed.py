#!/usr/bin/env python3
"""Every source is listed in a CMakeLists.txt that the build reaches: one that is not would never be compiled.

usage: check_listed.py ROOT, the root of the repository
"""

import pathlib
import re
import sys

# Scripts compile these.
EXCEPT = ("tests/refusals/", "tests/package/consumer/")

root = pathlib.Path(sys.argv[1]).resolve()
listed = set()
folders = [root]
for folder in folders:  # it grows
    text = re.sub(r"#.*", "", (folder / "CMakeLists.txt").read_text())
    text = text.replace("${PROJECT_SOURCE_DIR}", str(root))
    folders += [folder / name for name in re.findall(r"add_subdirectory\(([^)\s]+)\)", text)]
    listed |= {(folder / name).resolve() for name in re.findall(r"[^\s()]+\.(?:cpp|h)\b", text)}

sources = {*root.glob("Companions/**/*.h"), *root.glob("ORVELBaseData/**/*.h"),
           *(file for part in ("Companions", "ORVELBaseData", "tests") for file in root.glob(part + "/**/*.cpp"))}
sources = {file for file in sources if not str(file.relative_to(root)).startswith(EXCEPT)}
for file in sorted(sources - listed):
    print(f"{file.relative_to(root)} is in no CMakeLists.txt")
print(f"{len(sources)} sources")
sys.exit(not sources or bool(sources - listed))
