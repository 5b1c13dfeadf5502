#!/usr/bin/env bash
# usage: expect_output.sh OUTPUT COMMAND...: succeeds if the command does and prints exactly OUTPUT, in
# which \n is an end of line, on its standard output and error streams together.
set -uo pipefail
printf -v expected '%b' "$1"
shift
found=$("$@" 2>&1; echo "status $?")
if [[ $found != "${expected}status 0" ]]; then
  printf 'expected:\n%sstatus 0\nfound:\n%s\n' "$expected" "$found" >&2
  exit 1
fi
