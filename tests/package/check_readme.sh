#!/usr/bin/env bash
# The program in the README builds with the build file in the README and prints what the README says.
# usage: check_readme.sh CMAKE COMPILER PREFIX LIBRARY_FOLDER README WORK_FOLDER
set -euo pipefail
cmake=$1 compiler=$2 prefix=$3 libdir=$4 readme=$5 work=$6
export PKG_CONFIG_PATH=$libdir/pkgconfig CXX=$compiler

. "$(dirname "$0")/blocks.sh"

rm -rf "$work"
mkdir -p "$work"
cd "$work"
block "$readme" cpp >kernel.cpp
block "$readme" cmake >CMakeLists.txt
block "$readme" text >expected.txt
for file in kernel.cpp CMakeLists.txt expected.txt; do
  [[ -s $file ]] || { echo "the README has no block for $file"; exit 1; }
done

"$cmake" -S . -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build build
./build/kernel | diff expected.txt -

# The one-line way, as the README spells it.
command=$(grep -oE '^g\+\+ .*pkg-config.*$' "$readme")
eval "${command/#g++/\"\$compiler\"}"
LD_LIBRARY_PATH=$libdir ./kernel | diff expected.txt -
