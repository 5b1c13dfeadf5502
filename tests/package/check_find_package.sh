#!/usr/bin/env bash
# An outside CMake project finds the moved package, builds against each of its targets and runs.
# usage: check_find_package.sh CMAKE COMPILER PREFIX PROJECT WORK_FOLDER
set -euo pipefail
cmake=$1 compiler=$2 prefix=$3 project=$4 work=$5

rm -rf "$work"
"$cmake" -S "$project" -B "$work" -G Ninja \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Debug
found=$(sed -n 's/^ORVELBaseData_DIR:PATH=//p' "$work/CMakeCache.txt")
[[ $found == "$prefix"/* ]] || { echo "found the package in $found instead of $prefix"; exit 1; }
"$cmake" --build "$work"
for program in util math serialization base_data all_by_base_data by_name; do
  echo "== $program"
  "$work/$program"
done
