#!/usr/bin/env bash
# Speed of zemtra-cli's JSON output alone: a million plot-shaped entities to /dev/null.
#   bench-json.sh BUILD OUT
set -eu
build=${1:?usage: bench-json.sh BUILD OUT}
out=${2:?usage: bench-json.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"
tool=$(bench_tool json-writer-speed "$top/bench/json-writer-speed.cpp" "$top/src/cli/JsonWriter.cpp")
echo "target: 1,000,000 entities well under 1 s"
"$tool" 1000000
