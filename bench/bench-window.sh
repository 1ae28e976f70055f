#!/usr/bin/env bash
# The window with a million-line program: open until coloured, plotted and drawn, the longest
# pause in serving events meanwhile, an isometric repaint and an undo snapshot.
#   bench-window.sh BUILD OUT
set -eu
build=${1:?usage: bench-window.sh BUILD OUT}
out=${2:?usage: bench-window.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

tool="$build/bench/window-open"
if [ ! -x "$tool" ]; then
  echo "window-open not built in $build (it needs Qt: a build without ZEMTRA_ENGINE_ONLY)"
  exit 0
fi
gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing 1000000 "$out/surfacing-1m.nc"
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
QT_QPA_PLATFORM=offscreen "$tool" "$out/surfacing-1m.nc" "$top/data/CONFIG/default.zmt" 2>/dev/null
