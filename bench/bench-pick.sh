#!/usr/bin/env bash
# Picking speed in the viewport: a click and box selections on plotted programs of a million
# lines, in the isometric view.
#   bench-pick.sh BUILD OUT
# Targets: a click under 150 ms, a box selection under 300 ms.
set -eu
build=${1:?usage: bench-pick.sh BUILD OUT}
out=${2:?usage: bench-pick.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

tool="$build/bench/pick-speed"
if [ ! -x "$tool" ]; then
  echo "pick-speed not built in $build (a build without ZEMTRA_ENGINE_ONLY builds bench/)"
  exit 0
fi
gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing 1000000 "$out/surfacing-1m.nc"
generate_program profile 1000000 "$out/profile-1m.nc"

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
echo "-- surfacing, 1M lines"
"$tool" "$out/surfacing-1m.nc" 1200x800
echo "-- profile (lines and arcs), 1M lines"
"$tool" "$out/profile-1m.nc" 1200x800
echo "-- profile, top view"
"$tool" "$out/profile-1m.nc" 1200x800 top
