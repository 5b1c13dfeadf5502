#!/usr/bin/env bash
# usage: check_typical_job.sh DEMO FOLDER_OF_THE_PROGRAMS
set -euo pipefail
demo=$1
programs=$2
output=$(mktemp)
trap 'rm -f "$output"' EXIT

fail() {
  echo "FAILED: $*" >&2
  cat "$output" >&2
  exit 1
}

# run CODE ARGUMENTS...: runs the demo, keeps what it prints, and checks its exit code.
run() {
  local expected=$1 code=0
  shift
  "$demo" "$programs" "$@" >"$output" 2>&1 || code=$?
  ((code == expected)) || fail "demo $*: exit code $code, expected $expected"
}

expect() {
  grep -qF -- "$1" "$output" || fail "not printed: $1"
}

# The values that are typed are those that the kernels are made of: density of the normal distribution at 0.
run 0 1 1 0.9
expect "(0, 0)     0.39894229"
expect "sum 0.88288373,"
expect "Invalid value -1.000000 for input standard deviation along x axis, should be in ]0, inf["
expect "Archive cut.bin, byte 60: the archive is cut short"
expect "Archive cut.xml, line "
expect "Archive changed.bin, byte "
expect "the content doesn't match its hash"
expect "Version 3 of class orvel::KernelXY is not supported, the highest supported version is 2"
expect 'Archive format.xml, line 2, column 1: format version "2" is not supported, the supported version is "1"'
[[ $(grep -c ': the same kernel, bit for bit' "$output") == 15 ]] || fail "not every kernel was compared"

run 0 0.3 2
expect "(0, 0)      1.3298075"
run 0

# What is no number, and too many of them, is a matter of usage; a number that is none for a kernel is not.
run 2 one
expect "usage: ./dev demo"
run 2 1 2 0.9 4
expect "usage: ./dev demo"
run 1 0
expect "Invalid value 0.000000 for input standard deviation along x axis"
run 1 1 1 1
expect "Invalid value 1.000000 for input gaussian distribution ratio, should be in ]0, 1["

code=0
"$programs/write_kernels" 1 2 >"$output" 2>&1 || code=$?
((code == 2)) || fail "write_kernels: exit code $code"
expect "usage: write_kernels SIGMA_X SIGMA_Y RATIO FOLDER"
code=0
"$programs/read_kernels" >"$output" 2>&1 || code=$?
((code == 2)) || fail "read_kernels: exit code $code"
expect "usage: read_kernels FILE..."
code=0
"$programs/read_kernels" /no/such/file >"$output" 2>&1 || code=$?
((code == 1)) || fail "read_kernels: exit code $code"
expect "Archive /no/such/file can't be opened: No such file or directory"
