#!/usr/bin/env bash
# Installs the build and moves the tree; then looks for traces of where it was made.
# usage: install_and_move.sh CMAKE READELF BUILD_FOLDER SOURCE_FOLDER TARGET
set -euo pipefail
cmake=$1 readelf=$2 build=$3 source=$4 target=$5

first=$target.first
rm -rf "$first" "$target"
"$cmake" --install "$build" --prefix "$first" >/dev/null
mv "$first" "$target"

# Debug information names the folder of the compilation; nothing else may.
if grep -rlIF -e "$first" -e "$build" -e "$source" "$target"; then
  echo "the files above name the folders of the build"
  exit 1
fi
if find "$target" -path '*/Private*' | grep .; then
  echo "the files above are private"
  exit 1
fi
# Users need neither of the two libraries that only the archives' implementation calls.
if grep -rniIE 'xxh|expat' "$target"; then
  echo "the lines above name a private dependency"
  exit 1
fi
# The libraries look for one another beside themselves; a path back into the build would hide a fault.
for library in ORVELUtil ORVELMath ORVELSerialization ORVELBaseData; do
  file=$(find "$target" -name "lib$library.so")
  runpath=$("$readelf" -d "$file" | sed -n 's/.*\(RPATH\|RUNPATH\).*\[\(.*\)\]/\2/p')
  # $ORIGIN is the loader's own word.
  # shellcheck disable=SC2016
  [[ $runpath == '$ORIGIN' ]] || { echo "$file searches in '$runpath'"; exit 1; }
done
