#!/usr/bin/env bash
# A library exports the names of namespace orvel (and MessageMapRegistrator) and no unique symbol.
# usage: check_symbols.sh READELF CXXFILT LIBRARY
set -euo pipefail
readelf=$1 cxxfilt=$2 library=$3

symbols=$("$readelf" --dyn-syms -W "$library")

# Columns: number, value, size, type, binding, visibility, section, name. UND is what others define.
exported=$(awk '$1 ~ /^[0-9]+:$/ && $7 != "UND" && $8 != "" { print $8 }' <<<"$symbols")
count=$(wc -l <<<"$exported")
if ((count < 5)); then
  echo "$library exports $count symbols only: was the list read right?"
  exit 1
fi

if awk '$5 == "UNIQUE"' <<<"$symbols" | grep .; then
  echo "the symbols above are unique in the process: they keep $library from being unloaded"
  exit 1
fi

# Functions and data, also const members; tables and type information; thunks.
own='^_Z(T[ISTV]|T[hvc].*)?NK?(5orvel|21MessageMapRegistratorI)'
if grep -vE "$own" <<<"$exported" | "$cxxfilt" | grep .; then
  echo "the symbols above are exported by $library without being its own"
  exit 1
fi
echo "$count symbols"
