#!/usr/bin/env bash
# Repaint speed of the viewport: a plotted surfacing program of a million lines drawn in the
# isometric view, into no picture and into a QImage.
#   bench-view.sh BUILD OUT
# Target: a full repaint of 1,000,000 entities under 250 ms.
set -eu
build=${1:?usage: bench-view.sh BUILD OUT}
out=${2:?usage: bench-view.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

tool="$build/bench/view-repaint"
if [ ! -x "$tool" ]; then
  echo "view-repaint not built in $build (it needs Qt: a build without ZEMTRA_ENGINE_ONLY)"
  exit 0
fi
gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing 1000000 "$out/surfacing-1m.nc"
generate_program profile 1000000 "$out/profile-1m.nc"

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
echo "target: a full repaint under 250 ms"
echo "-- surfacing, 1M lines"
"$tool" "$out/surfacing-1m.nc" 1200x800
echo "-- profile (lines and arcs), 1M lines"
"$tool" "$out/profile-1m.nc" 1200x800
