#!/usr/bin/env bash
# The installed files tell nothing of where they were made, of private headers or of private dependencies.
# usage: check_traces.sh READELF BUILD_FOLDER SOURCE_FOLDER PREFIX
set -euo pipefail
readelf=$1 build=$2 source=$3 prefix=$4

# Debug information names the folder of the compilation, so only texts are searched; the libraries' search
# path is looked at below. The folder of the first installation is the prefix with .first behind it.
if grep -rlIF -e "$prefix.first" -e "$build" -e "$source" "$prefix"; then
  echo "the files above name the folders of the build"
  exit 1
fi
if find "$prefix" -path '*/Private*' | grep .; then
  echo "the files above are private"
  exit 1
fi
# Users need neither of the two libraries that only the sources of the archives call.
if grep -rniE '#include.*(xxh|pugi)' "$prefix" --include='*.h' ||
  grep -rniE 'xxh|pugi' "$prefix" --include='*.cmake' --include='*.pc'; then
  echo "the lines above name a private dependency"
  exit 1
fi
# The libraries look for one another beside themselves; a path back into the build would hide a fault.
for library in ORVELUtil ORVELMath ORVELSerialization ORVELBaseData; do
  file=$(find "$prefix" -name "lib$library.so")
  runpath=$("$readelf" -d "$file" | sed -n 's/.*\(RPATH\|RUNPATH\).*\[\(.*\)\]/\2/p')
  # $ORIGIN is the loader's own word.
  # shellcheck disable=SC2016
  [[ $runpath == '$ORIGIN' ]] || { echo "$file searches in '$runpath'"; exit 1; }
done
