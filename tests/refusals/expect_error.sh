#!/usr/bin/env bash
# Compiles a source that must be refused, and looks for the error that its first line announces: `// error: TEXT`.
# The compiler's first error must be that one. The same source must compile with -DMENDED.
# usage: expect_error.sh SOURCE COMPILER FLAGS...
set -euo pipefail
source=$1
shift
export LC_ALL=C
expected=$(sed -n '1s|^// error: ||p' "$source")
[[ -n $expected ]] || { echo "$source announces no error"; exit 1; }

if output=$("$@" -fsyntax-only "$source" 2>&1); then
  echo "$source compiles"
  exit 1
fi
first=$(grep -m 1 'error:' <<<"$output" || true)
if [[ $first != *"$expected"* ]]; then
  printf 'The first error is\n  %s\ninstead of\n  %s\nThe whole output:\n%s\n' "$first" "$expected" "$output"
  exit 1
fi
if grep -E 'boost/[^ ]*: error:' <<<"$output"; then
  echo "An error comes from within Boost"
  exit 1
fi
"$@" -fsyntax-only -DMENDED "$source"
