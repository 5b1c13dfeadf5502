#!/usr/bin/env bash
# The umbrella header of a library is installed and brings every public header of the library.
# usage: check_umbrella.sh COMPILER INCLUDE_FOLDER LIBRARY
set -euo pipefail
compiler=$1 include=$2 library=$3

cd "$include"
test -f "$library/$library.h"
included=$(echo "#include <$library/$library.h>" | "$compiler" -std=c++17 -I . -x c++ -M - | tr -s '[:space:]' '\n')
missing=$(find "$library" -name '*.h' | sort | while read -r header; do
  grep -qxE "(\./)?$header" <<<"$included" || echo "$header"
done)
if [[ -n $missing ]]; then
  echo "$missing"
  echo "the headers above are public, yet $library/$library.h does not include them"
  exit 1
fi
