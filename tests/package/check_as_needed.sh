#!/usr/bin/env bash
# Shows why the package passes a link option of its own: without it the linker drops the library from a
# program that only creates objects by name. Were this to change, the other checks would prove nothing.
# usage: check_as_needed.sh READELF COMPILER INCLUDE_FOLDER LIBRARY_FOLDER SOURCE WORK_FOLDER
set -euo pipefail
readelf=$1 compiler=$2 include=$3 libdir=$4 source=$5 work=$6

mkdir -p "$work"
"$compiler" -std=c++17 -I "$include" "$source" -o "$work/plain" \
  -Wl,--as-needed "-L$libdir" -lORVELBaseData -lORVELSerialization -lORVELUtil -llog4cplus "-Wl,-rpath,$libdir"
needed=$("$readelf" -d "$work/plain")
grep -q 'NEEDED.*libORVELUtil' <<<"$needed"
if grep 'NEEDED.*libORVELBaseData' <<<"$needed"; then
  echo "the program takes a symbol from libORVELBaseData: it no longer creates by name only"
  exit 1
fi
if "$work/plain"; then
  echo "the class was found although its library is not linked"
  exit 1
fi
