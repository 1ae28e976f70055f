#!/usr/bin/env bash
# Speed of the program text filters of zemtra-cli on generated 1,000,000-line programs.
#   bench-filter.sh BUILD OUT
# Targets: every filter under 3 s for the million lines, renumbering under 5 s.
set -eu
build=${1:?usage: bench-filter.sh BUILD OUT}
out=${2:?usage: bench-filter.sh BUILD OUT}
mkdir -p "$out"
source "$(dirname "$0")/bench-common.inc"

lines=1000000
target_mb=1000

cli="$build/src/cli/zemtra-cli"
if [ ! -x "$cli" ]; then
  echo "zemtra-cli not built in $build"
  exit 1
fi
if ! "$cli" filter --help >/dev/null 2>&1; then
  echo "filter subcommand not available yet"
  exit 0
fi
if [ ! -x /usr/bin/time ]; then
  echo "/usr/bin/time is missing (package \"time\"; scripts/install-deps installs it)"
  exit 1
fi

gen=$(bench_tool gen-programs "$top/bench/gen-programs.cpp")
generate_program surfacing $lines "$out/surfacing-1m.nc"
generate_program profile $lines "$out/profile-1m.nc"

home="$out/home"
rm -rf "$home"
cp -r "$top/data" "$home"
export ZEMTRA_HOME="$home"

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"
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
