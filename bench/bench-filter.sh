#!/usr/bin/env bash
# Speed of the program text filters of zemtra-cli on generated 1,000,000-line programs.
#   bench-filter.sh BUILD OUT
# Targets: every filter under 3 s for the million lines, renumbering under 5 s.
set -eu
build=${1:?usage: bench-filter.sh BUILD OUT}
out=${2:?usage: bench-filter.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

target_mb=1000

prepare_cli_bench filter
target_rate=$((lines / 3))
echo "target: each filter under 3 s (>= $target_rate lines/s)"
filters=(
  "add-spaces" "remove-spaces" "caps" "remove-redundant" "remove-blank-lines" "remove-comments"
  "add-comment-chars" "remove-comment-chars" "remove-trailing-spaces" "remove-control-chars"
  "adjust-addresses --letters XY --op add --value 1 --format 0.000"
  "replace-address --find X --with U" "remove-addresses --letters F" "add-block-skip"
  "remove-block-skip" "remove-colinear" "swap-addresses --first X --second Y"
  "break-arcs --tolerance 0.01" "custom-filter-1" "custom-filter-2 --approach 0.1 --feed-mult 2"
  "remove-garbage" "mirror --x 0" "rotate --angle 30" "shift --x 1 --y 1" "scale --factor 2"
  "arcs-to-ijk" "arcs-to-r" "arcs-absolute" "arcs-incremental")
for program in surfacing profile; do
  for filter in "${filters[@]}"; do
    # shellcheck disable=SC2086
    run_timed "$program: $filter" $lines -- "$cli" filter $filter "$out/$program-1m.nc"
  done
done

target_rate=$((lines / 5))
echo "target: renumbering under 5 s (>= $target_rate lines/s)"
for program in surfacing profile; do
  run_timed "$program: renumber" $lines -- "$cli" filter renumber "$out/$program-1m.nc"
done
