#!/usr/bin/env bash
# Counts the lines that a header brings to the compiler with all that it includes: neither blank nor a '#' line.
# usage: check_lines.sh ROOT COMPILER [HEADER LIMIT]...
set -euo pipefail
cd "$1"
compiler=$2
shift 2
[[ $# -gt 0 ]] || { echo "no header"; exit 1; }
failed=0
while [[ $# -gt 0 ]]; do
  lines=$(echo "#include <$1>" | "$compiler" -std=c++17 -I . -I Companions -E -x c++ - | grep -cvE '^(#|\s*$)')
  echo "$1: $lines lines, at most $2 are allowed"
  [[ $lines -le $2 ]] || failed=1
  shift 2
done
exit "$failed"
