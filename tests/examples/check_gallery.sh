#!/usr/bin/env bash
# The pictures of small shapes are those drawn by hand, and those in the manual are the ones that are drawn today.
# usage: check_gallery.sh PROGRAM FOLDER_OF_PICTURES_DRAWN_BY_HAND PAGE XMLLINT
set -euo pipefail
program=$1 drawn=$2 page=$3 xmllint=$4
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$program" "$folder"
for picture in "$drawn"/*.txt; do
  diff "$picture" "$folder/${picture##*/}"
done

# Every picture stands in the page, as a block of text of its own, and nothing else does.
mkdir "$folder/page"
awk -v folder="$folder/page" '
  $0 == "```text" { inside = 1; block = ""; next }
  /^```/ && inside {
    inside = 0
    name = block
    sub(/[(,:\n].*/, "", name)
    printf "%s", block > (folder "/" name ".txt")
    next
  }
  inside { block = block $0 "\n" }' "$page"
mkdir "$folder/today"
cp "$folder"/*.txt "$folder/today"
diff -r "$folder/today" "$folder/page"

for picture in "$folder"/*.svg; do
  "$xmllint" --noout "$picture"
  # As many cells with a value as the title says.
  count=$(sed -nE 's/.*: ([0-9]+) (offsets|taps)<\/text>/\1/p' "$picture")
  [[ $(grep -cE '<title>\([-0-9, ]+\): ' "$picture") == "$count" ]] || { echo "$picture: not $count values"; exit 1; }
done

if "$program" >"$folder/output" 2>&1; then
  echo "no folder, no failure"
  exit 1
fi
grep -qF "usage: gallery FOLDER" "$folder/output"
if "$program" "$folder/none" >"$folder/output" 2>&1; then
  echo "no such folder, no failure"
  exit 1
fi
grep -qF "gallery: cannot write $folder/none/" "$folder/output"
