#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tells whether programs were built hard to exploit: position-independent, with read-only relocations,
# bound at start, with stack guards and checked copying, and without an executable stack.
# Usage: tools/check_hardening.sh PROGRAM ...
set -euo pipefail

if [ $# -eq 0 ]; then
  echo "usage: tools/check_hardening.sh PROGRAM ..." >&2
  exit 2
fi

failed=0
# expect PROGRAM WHAT PATTERN TEXT
expect() {
  if ! grep -Eq "$3" <<<"$4"; then
    echo "$1: no $2" >&2
    failed=1
  fi
}

for program in "$@"; do
  [ -r "$program" ] || { echo "tools/check_hardening.sh: can't read $program" >&2 && exit 2; }
  header=$(readelf -Wh "$program")
  segments=$(readelf -Wl "$program")
  dynamic=$(readelf -Wd "$program")
  symbols=$(readelf -W --dyn-syms "$program")
  expect "$program" "position-independent code" 'Type: +DYN' "$header"
  expect "$program" "read-only relocations" 'GNU_RELRO' "$segments"
  expect "$program" "binding at start" 'BIND_NOW|FLAGS_1.*NOW' "$dynamic"
  expect "$program" "stack guards" '__stack_chk_fail' "$symbols"
  expect "$program" "checked copying" '__(v?f?s?n?w?printf|memcpy|memmove|strn?cpy|read|fgets)_chk' "$symbols"
  expect "$program" "stack that isn't executable" 'GNU_STACK +0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ RW ' "$segments"
done
[ $failed -eq 0 ] && echo "hard to exploit: $*"
exit $failed
