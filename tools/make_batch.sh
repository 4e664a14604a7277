#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes a batch file (UTF-16, little-endian, byte order mark) of a UTF-8 text.
# Usage: tools/make_batch.sh TEXT BATCHFILE
set -euo pipefail

if [ $# -ne 2 ]; then
  echo "usage: tools/make_batch.sh TEXT BATCHFILE" >&2
  exit 2
fi
{
  printf '\xff\xfe'
  iconv -f UTF-8 -t UTF-16LE "$1"
} >"$2"
