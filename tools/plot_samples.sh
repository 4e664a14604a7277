#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Draws what tests/terminal/monkey_soak.py --samples has written: memory, descriptors, threads and
# shared objects over time.
# Usage: tools/plot_samples.sh SAMPLES.csv PICTURE.svg|PICTURE.png
set -euo pipefail

usage() {
  echo "usage: tools/plot_samples.sh SAMPLES.csv PICTURE.svg|PICTURE.png" >&2
  exit 2
}

[ $# -eq 2 ] || usage
case "$2" in
  *.svg) terminal=svg ;;
  *.png) terminal=pngcairo ;;
  *) usage ;;
esac
[ -s "$1" ] || { echo "tools/plot_samples.sh: there is nothing in $1" >&2 && exit 1; }

gnuplot - <<END
samples = "$1"
set terminal $terminal size 860,1000 font "sans,13" background "white"
set output "$2"
set datafile separator ","
set key autotitle columnheader outside above center horizontal
set multiplot layout 4,1
set grid
set lmargin 9
set rmargin 12
set xrange [0:*]
set yrange [0:*]
set offsets 0, 0, graph 0.1, 0

set ylabel "MiB"
set y2label "lines of the monkey"
set y2tics
set y2range [0:*]
plot samples using (\$1/60):(\$2/1024) with lines lw 2 lc "#1f77b4" title "memory of the tester", \
     samples using (\$1/60):(\$8/1024) with lines lw 2 lc "#2ca02c" title "of the engine", \
     samples using (\$1/60):10 axes x1y2 with lines lw 1 lc "#999999" title "lines of the monkey"
unset y2label
unset y2tics

set ylabel "descriptors"
plot samples using (\$1/60):3 with lines lw 2 lc "#d62728" title "descriptors without surfaces"

set ylabel "threads"
plot samples using (\$1/60):4 with lines lw 2 lc "#9467bd" title "threads"

set ylabel "objects"
set xlabel "minutes"
plot samples using (\$1/60):7 with lines lw 1 lc "#ff7f0e" title "shared objects", \
     samples using (\$1/60):6 with lines lw 1 lc "#8c564b" title "surfaces the tester holds"
END
