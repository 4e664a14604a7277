#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes a batch file (UTF-16, little-endian, byte order mark) of a UTF-8 text.
# Usage: tools/make_batch.sh TEXT BATCHFILE
#
# A BATCHFILE that exists is replaced only if it is a batch file itself, and only when TEXT could be
# converted as a whole.
set -euo pipefail

if [ $# -ne 2 ]; then
  echo "usage: tools/make_batch.sh TEXT BATCHFILE" >&2
  exit 2
fi
text=$1
batch=$2
mark=$'\xff\xfe'

if [ -f "$batch" ] && [ -s "$batch" ] && [ "$(head -c 2 "$batch")" != "$mark" ]; then
  echo "tools/make_batch.sh: $batch is no batch file and stays as it is" >&2
  exit 1
fi
made=$(mktemp)
trap 'rm -f "$made"' EXIT
{
  printf '%s' "$mark"
  iconv -f UTF-8 -t UTF-16LE "$text"
} >"$made"
cat "$made" >"$batch"
