#!/usr/bin/env bash
# The pkg-config files of the moved tree are enough to build and run the programs of the consumer.
# usage: check_pkg_config.sh PKG_CONFIG COMPILER LIBRARY_FOLDER PROJECT WORK_FOLDER
set -euo pipefail
pkg_config=$1 compiler=$2 libdir=$3 project=$4 work=$5
export PKG_CONFIG_PATH=$libdir/pkgconfig

rm -rf "$work"
mkdir -p "$work"
check() { # PROGRAM PACKAGE
  local cflags libs
  echo "== $1 with $2"
  read -r -a cflags < <("$pkg_config" --cflags "$2")
  read -r -a libs < <("$pkg_config" --libs "$2")
  "$compiler" -std=c++17 "${cflags[@]}" "$project/$1.cpp" -o "$work/$1" \
    -Wl,--as-needed "${libs[@]}" "-Wl,-rpath,$libdir"
  "$work/$1"
}
check util ORVELUtil
check math ORVELMath
check serialization ORVELSerialization
check base_data ORVELBaseData
check all_by_base_data ORVELBaseData
check by_name ORVELBaseData
