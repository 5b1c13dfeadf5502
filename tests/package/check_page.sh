#!/usr/bin/env bash
# The program in a page of the documentation builds, without a warning, and prints what the page says.
# usage: check_page.sh COMPILER LIBRARY_FOLDER PAGE WORK_FOLDER
set -euo pipefail
compiler=$1 libdir=$2 page=$3 work=$4
export PKG_CONFIG_PATH=$libdir/pkgconfig
. "$(dirname "$0")/blocks.sh"

rm -rf "$work"
mkdir -p "$work"
cd "$work"
block "$page" cpp >program.cpp
block "$page" text >expected.txt
for file in program.cpp expected.txt; do
  [[ -s $file ]] || { echo "the page has no block for $file"; exit 1; }
done

read -ra flags <<<"$(pkg-config --cflags --libs ORVELBaseData)"
"$compiler" -std=c++17 -Wall -Wextra -Werror program.cpp -o program "${flags[@]}"
LD_LIBRARY_PATH=$libdir ./program | diff expected.txt -
