#!/usr/bin/env bash
# Compiles each header of a folder alone, and twice in a row to see its include guard at work.
# usage: compile_alone.sh INCLUDE_FOLDER PATTERN COMPILER FLAGS...
set -euo pipefail
cd "$1"
pattern=$2
shift 2

# Called by xargs with one header and the command line of the compiler.
compile() {
  local header=$1 output
  shift
  if ! output=$(printf '#include <%s>\n#include <%s>\n' "$header" "$header" |
    "$@" -fsyntax-only -I . -x c++ - 2>&1); then
    printf '== %s does not compile alone\n%s\n' "$header" "$output"
    return 1
  fi
}
export -f compile

headers=$(find . -path "$pattern" -printf '%P\n' | sort)
[[ -n $headers ]] || { echo "no header $pattern in $PWD"; exit 1; }
xargs -P "$(nproc)" -I {} bash -c 'compile "$@"' - {} "$@" <<<"$headers"
echo "$(wc -l <<<"$headers") headers"
