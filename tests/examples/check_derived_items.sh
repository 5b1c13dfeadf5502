#!/usr/bin/env bash
# usage: check_derived_items.sh PROGRAM LIBRARY
set -euo pipefail
program=$1
library=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# expect CODE ARGUMENTS...: runs the program; the text to be printed comes from the standard input.
expect() {
  local code=0 expected=$1
  shift
  "$program" "$library" "$@" >output 2>&1 || code=$?
  ((code == expected)) || { echo "FAILED: $*: exit code $code, expected $expected"; cat output; exit 1; }
  diff - output || { echo "FAILED: $*"; exit 1; }
}

for format in xml bin; do
  expect 0 make "tree.$format" </dev/null
  expect 0 print "tree.$format" <<END
tree.$format: map of 4
  author: eDIVT_String = Ada
  rounds: eDIVT_UInt8 = 3
  steps: collection of 1 nodes
    0: node Smoothing of library Smoothing  (Smooth an image)
      Mask: eDIVT_Path =   (Image of the pixels to be smoothed; none for all)
      Method: eDIVT_Enum = Mean  (How to smooth)
      Region: node Region of library Smoothing  (Lines to be smoothed)
        First line: eDIVT_UInt32 = 0  (Counted from 0)
        Number of lines: eDIVT_UInt32 = 0  (0 for all)
      Sigma: eDIVT_Real64 = 1  (Standard deviation, in pixels)
      Weights: eDIVT_Real32 = {1, 1}  (From the centre outwards)
  tolerance: eDIVT_Real64 = 0.001
END

  expect 0 change "tree.$format" tolerance 0.00101 "changed.$format" </dev/null
  expect 0 compare "tree.$format" "changed.$format" 0.1 <<<"equal"
  expect 0 compare "tree.$format" "changed.$format" 0.001 <<<"different"
  expect 0 change "tree.$format" author "Grace Hopper" "renamed.$format" </dev/null
  expect 0 compare "tree.$format" "renamed.$format" 0.1 <<<"different"

  # The unknown class is named; where it stands depends on the format.
  "$program" "$library" reload "tree.$format" >output
  sed -E "s/, (line [0-9]+, column [0-9]+|byte [0-9]+)/, PLACE/" output | diff - <(cat <<END
loaded: 4 items
unloaded: Archive tree.$format, PLACE: unknown class "orvel::SmoothingNode"
loaded again: 4 items
END
  )
done
expect 0 compare tree.xml tree.bin 0 <<<"equal"
grep -q '<section name="mylab::RegionNode">' tree.xml # a class of another namespace keeps its own name

expect 1 change tree.xml rounds 256 none.xml <<<'tree: "256" is no value of this type'
sed 's/ipUInt8/ipUInt64/' tree.xml >wide.xml
expect 1 change wide.xml rounds -1 none.xml <<<'tree: "-1" is no value of this type'
expect 1 change tree.xml rounds many none.xml <<<'tree: "many" is no value of this type'
expect 1 change tree.xml steps 1 none.xml <<<'tree: "steps" is no leaf'
expect 1 change tree.xml nobody 1 none.xml \
  <<<'tree: Item with name nobody does not exists for current item node'
[[ ! -e none.xml ]]
sed 's/>Mean</>Mode</' tree.xml >wrong.xml
expect 1 print wrong.xml <<<'tree: Invalid enumerate string value Mode for enumerate SmoothingMethod'
# An object that reads well and is no data item.
sed 's/class="orvel::DataItemLeaf&lt;std::string&gt;"/class="orvel::StringIdentifier"/' tree.xml >wrong.xml
"$program" "$library" print wrong.xml >output 2>&1 && exit 1
grep -q "an object of class orvel::StringIdentifier can't stand for class orvel::BaseDataItem" output
"$program" "$library" print 2>output && exit 1
grep -q "^usage: tree LIBRARY make FILE" output

# tree_with ELEMENTS: a map whose one item, "item", is read from these elements.
tree_with() {
  local record='<item key="version">1</item>'
  echo '<orvelArchive format="1"><pointer key="object" id="1" class="orvel::DataItemMap">'
  echo "<section name=\"orvel::BaseDataItem\">$record</section>"
  echo "<section name=\"orvel::DataItemMap\">$record</section>"
  echo '<section name="_itemMap"><section name="map"><item key="size">1</item><item key="key">item</item>'
  echo "<section name=\"value\"><section name=\"\">$1</section></section>"
  echo '</section></section></pointer></orvelArchive>'
}
coll='<pointer key="pObject" id="2" class="orvel::DataItemLeafColl&lt;std::string&gt;">
<section name=""><item key="version">1</item></section><section name=""><item key="version">1</item></section>
<section name="_coll"><section name="vector"><item key="size">2</item>
<item key="value"></item><item key="value">a</item></section></section></pointer>'
tree_with "$coll" >texts.xml
expect 0 print texts.xml <<END
texts.xml: map of 1
  item: eDIVT_String = {, a}
END

# Null pointers that only an archive can bring: in a map, in a collection of nodes, and in place of the tree.
nothing='<pointer key="pObject" null="true"/>'
tree_with "$nothing" >null-in-map.xml
tree_with '<pointer key="pObject" id="2" class="orvel::BaseDataItemNodeColl">
<section name=""><item key="version">1</item></section><section name="_coll"><section name="vector">
<item key="size">1</item><section name="value"><section name="">'"$nothing"'</section></section>
</section></section></pointer>' >null-in-coll.xml
echo '<orvelArchive format="1"><pointer key="object" null="true"/></orvelArchive>' >null.xml
for file in null-in-map.xml null-in-coll.xml null.xml; do
  expect 1 print $file <<<'tree: an item is missing from the tree'
  expect 1 change $file item 1 none.xml <<<'tree: an item is missing from the tree'
  expect 1 compare $file tree.xml 0 <<<'tree: an item is missing from the tree'
done
tree_with '<pointer key="pObject" ref="1"/>' >round.xml # the map itself
export ASAN_OPTIONS="${ASAN_OPTIONS-}:detect_leaks=0"   # what holds itself stays until the program ends
expect 1 print round.xml <<<'tree: an item of the tree holds itself'
expect 1 compare round.xml round.xml 0 <<<'tree: an item of the tree holds itself'
