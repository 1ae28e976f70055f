#!/usr/bin/env bash
# Chaining speed: a generated drawing of 100,000 short lines (closed polygons, shuffled and half
# reversed), read, chained and converted by zemtra-cli dxf2gcode.
#   bench-dxf.sh BUILD OUT
# Target: the whole run, of which chaining is the larger part, in under 2 seconds.
set -eu
build=${1:?usage: bench-dxf.sh BUILD OUT}
out=${2:?usage: bench-dxf.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

lines=100000
target_rate=$((lines / 2))  # lines per second for the whole run within 2 s
target_mb=500

cli="$build/src/cli/zemtra-cli"
if [ ! -x "$cli" ] || ! "$cli" dxf2gcode --help >/dev/null 2>&1; then
  echo "zemtra-cli dxf2gcode not built in $build"
  exit 0
fi
gen=$(bench_tool gen-dxf "$top/bench/gen-dxf.cpp")
drawing="$out/lines-100k.dxf"
[ -s "$drawing" ] || "$gen" "$drawing" $lines 100

home="$out/home"
rm -rf "$home"
cp -r "$top/data" "$home"
export ZEMTRA_HOME="$home"

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
run_timed "dxf read only (100k lines)" $lines -- "$cli" dxf "$drawing"
run_timed "dxf2gcode --chain (100k lines)" $lines -- "$cli" dxf2gcode "$drawing" --chain -o /dev/null
