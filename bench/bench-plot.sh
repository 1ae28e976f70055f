#!/usr/bin/env bash
# Plot speed of zemtra-cli on generated CAM-like programs of a million lines.
#   bench-plot.sh BUILD OUT
# Target: at least 3,000,000 lines per second with a peak memory below 300 MB.
set -eu
build=${1:?usage: bench-plot.sh BUILD OUT}
out=${2:?usage: bench-plot.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

target_rate=3000000
target_mb=300

prepare_cli_bench plot
echo "target: >= $target_rate lines/s, < $target_mb MB peak"
run_timed "surfacing 1M lines, summary" $lines -- "$cli" plot "$out/surfacing-1m.nc"
run_timed "surfacing 1M lines, --json" $lines -- "$cli" plot "$out/surfacing-1m.nc" --json
run_timed "profile 1M lines (arcs), summary" $lines -- "$cli" plot "$out/profile-1m.nc"

# A macro loop: ten million executed blocks of a WHILE loop computing points with SIN and COS.
# Target: at least 1,000,000 executed blocks per second.
target_rate=1000000
loop_blocks=10000000
generate_program macroloop $loop_blocks "$out/macroloop-10m.nc"
echo "target: >= $target_rate executed blocks/s"
run_timed "macro loop 10M blocks, summary" $loop_blocks -- "$cli" plot "$out/macroloop-10m.nc"
