#!/usr/bin/env bash
# Compiles each header of a folder alone, and twice in a row to see its include guard at work.
# usage: compile_alone.sh INCLUDE_FOLDER PATTERN COMPILER FLAGS...
set -euo pipefail
cd "$1"
pattern=$2
shift 2
command=("$@" -I . -fsyntax-only)

headers=$(find . -path "$pattern" -printf '%P\n' | sort)
[[ -n $headers ]] || { echo "no header $pattern in $PWD"; exit 1; }

# Most headers bring this large one, which takes most of their time. Those that include it, directly or
# through each other, get it precompiled; it declares nothing for them that they would not see anyway.
common=ORVELSerialization/SerializableClass.h
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
: >"$work/users"
if [[ -f $common ]]; then
  echo "$common" >"$work/found"
  while [[ -s $work/found ]]; do
    sed 's/.*/#include <&>/' "$work/found" >"$work/patterns"
    { grep -rlF --include='*.h' -f "$work/patterns" . || true; } |
      sed 's|^\./||' | { grep -vxFf "$work/users" || true; } >"$work/found"
    cat "$work/found" >>"$work/users"
  done
  echo "#include <$common>" >"$work/common.h"
  "$@" -I . -x c++-header "$work/common.h" -o "$work/common.h.gch"
fi

# Called by xargs with one header and the command line of the compiler.
# shellcheck disable=SC2317
compile() {
  local header=$1 output
  shift
  if ! output=$(printf '#include <%s>\n#include <%s>\n' "$header" "$header" | "$@" -x c++ - 2>&1); then
    printf '== %s does not compile alone\n%s\n' "$header" "$output"
    return 1
  fi
}
export -f compile
compile_all() { # COMMAND...: the headers come from the standard input
  xargs -r -P "$(nproc)" -I {} bash -c 'compile "$@"' - {} "$@"
}

failed=0
{ grep -vxFf "$work/users" <<<"$headers" || true; } | compile_all "${command[@]}" || failed=1
{ grep -xFf "$work/users" <<<"$headers" || true; } | compile_all "${command[@]}" -include "$work/common.h" || failed=1
echo "$(wc -l <<<"$headers") headers"
exit "$failed"
