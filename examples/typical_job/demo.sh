#!/usr/bin/env bash
# Runs the typical job from end to end: a writer and a reader, two processes that share nothing but files.
# Then it shows what failures look like.
#
# usage: demo.sh FOLDER_OF_THE_PROGRAMS [SIGMA_X [SIGMA_Y [RATIO]]]
set -euo pipefail

usage() {
  echo 'usage: ./dev demo [SIGMA_X [SIGMA_Y [RATIO]]]' >&2
  echo '  standard deviations in pixels, above 0; the share of the distribution, from 0 to below 1: a kernel' >&2
  echo '  ends before the first tap that reaches it' >&2
  exit 2
}

(($# >= 1 && $# <= 4)) || usage
programs=$1
sigma_x=${2:-1.0}
sigma_y=${3:-2.0}
ratio=${4:-0.95}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Runs a command that is expected to fail, shows what it says, and insists that it fails with code 1.
expect_failure() {
  local code=0
  "$@" 2>&1 || code=$? # in line with the rest of what is shown
  if ((code != 1)); then
    echo "demo: this should have failed with exit code 1, not $code: $*" >&2
    exit 1
  fi
}

echo "Writing kernels for sigma x $sigma_x, sigma y $sigma_y, ratio $ratio, as XML and as binary"
code=0
"$programs/write_kernels" "$sigma_x" "$sigma_y" "$ratio" "$folder" 2>"$folder/errors" || code=$?
((code != 2)) || usage
cat "$folder/errors" >&2
((code == 0)) || exit "$code"

echo "Reading them back in another process, by class name"
echo
files=()
for family in smoothing gradient hessian; do
  for axis in 2d_x 2d_y 3d_x 3d_y 3d_z; do
    files+=("$folder/${family}_$axis.xml" "$folder/${family}_$axis.bin")
  done
done
"$programs/read_kernels" "${files[@]}"

# The reader prints the names that it is given; here those without a folder are enough.
cd "$folder"
[[ $programs == /* ]] || programs="$OLDPWD/$programs"

echo "What failures look like"
echo "- a standard deviation below 0:"
expect_failure "$programs/write_kernels" -1 "$sigma_y" "$ratio" "$folder"

echo "- files that are cut short:"
head -c 60 smoothing_2d_x.bin >cut.bin
expect_failure "$programs/read_kernels" cut.bin
head -c 400 smoothing_2d_x.xml >cut.xml
expect_failure "$programs/read_kernels" cut.xml

echo "- a file in which one byte has changed:"
size=$(stat -c %s smoothing_2d_x.bin)
{ head -c $((size - 30)) smoothing_2d_x.bin; printf '\x17'; tail -c 29 smoothing_2d_x.bin; } >changed.bin
expect_failure "$programs/read_kernels" changed.bin

echo "- a kernel of a future version of its class:"
sed '/name="orvel::KernelXY"/{n;s/>2</>3</}' smoothing_2d_x.xml >future.xml
expect_failure "$programs/read_kernels" future.xml

echo "- a file of a future version of the format:"
sed 's/orvelArchive format="1"/orvelArchive format="2"/' smoothing_2d_x.xml >format.xml
expect_failure "$programs/read_kernels" format.xml
