#!/usr/bin/env bash
# Installs the build and moves the tree, so that nothing stands where it was installed.
# usage: install_and_move.sh CMAKE BUILD_FOLDER TARGET
set -euo pipefail
cmake=$1 build=$2 target=$3

first=$target.first
rm -rf "$first" "$target"
"$cmake" --install "$build" --prefix "$first" >/dev/null
mv "$first" "$target"
