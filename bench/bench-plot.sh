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
lines=1000000

cli="$build/src/cli/zemtra-cli"
if [ ! -x "$cli" ]; then
  echo "zemtra-cli not built in $build"
  exit 1
fi
if ! "$cli" plot --help >/dev/null 2>&1; then
  echo "plot subcommand not available yet"
  exit 0
fi
if [ ! -x /usr/bin/time ]; then
  echo "/usr/bin/time is missing (package \"time\"; scripts/install-deps installs it)"
  exit 1
fi

gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing $lines "$out/surfacing-1m.nc"
generate_program profile $lines "$out/profile-1m.nc"

# The default machine configuration from a fresh copy of the source data, so the user's own
# folder is neither read nor changed.
home="$out/home"
rm -rf "$home"
cp -r "$top/data" "$home"
export ZEMTRA_HOME="$home"

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
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
