#!/usr/bin/env bash
# Speed of the program editor's engine on a generated 1,000,000-line surfacing program:
# loading, colouring every line, and an undo step after a one-character edit of a 30 MB text.
#   bench-editor.sh BUILD OUT
# Targets: colouring above 5,000,000 lines per second; an undo step under 50 ms.
set -eu
build=${1:?usage: bench-editor.sh BUILD OUT}
out=${2:?usage: bench-editor.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

lines=1000000
gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing $lines "$out/surfacing-1m.nc"

tool="$build/bench/editor-speed"
if [ ! -x "$tool" ]; then
  echo "editor-speed not built in $build"
  exit 0
fi

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
"$tool" "$out/surfacing-1m.nc"
