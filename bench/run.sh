#!/usr/bin/env bash
# Benchmarks of the miner (Release build): the shared data sets, when present,
# and a 1,000,000-case synthetic set. Prints one Markdown table row per run:
# data set, options, wall time, processor time (user + system), peak resident
# memory, rules. Processor time is the steadier figure on a shared machine.
# Usage: bench/run.sh [BUILD_DIR]      (default: build)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$here/build}
rule=$build/rule
shared=$here/../shared
[ -x "$rule" ] || { echo "build the miner first: make build" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

measure() {  # stem dir, then the miner's options
  local dir=$1 stem=$2; shift 2
  ( cd "$dir" && /usr/bin/time -v "$rule" -f "$stem" "$@" >stdout 2>time.txt ) || true
  local wall cpu mem rules
  wall=$(sed -n 's/.*Elapsed (wall clock) time (h:mm:ss or m:ss): //p' "$dir/time.txt")
  cpu=$(awk -F': ' '/User time|System time/ {s += $2} END {printf "%.2f", s}' "$dir/time.txt")
  mem=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$dir/time.txt")
  rules=$(grep 'The number of rules' "$dir/stdout" | tail -n 1 | awk '{print $5}')
  printf '| %s | `%s` | %s | %s s | %s MB | %s |\n' "$stem" "$*" "$wall" "$cpu" "$((mem / 1024))" "${rules:-?}"
}

echo "| data set | options | wall (m:ss) | processor | peak memory | rules |"
echo "|---|---|---:|---:|---:|---:|"
if [ -d "$shared/data" ]; then
  for job in "mushroom -s 0.05 -c 0.8" "mushroom -s 0.1 -c 0.9" "vote" "car -s 0.02 -c 0.7" \
             "nursery -s 0.05 -c 0.8" "tic-tac-toe -s 0.02 -c 0.8 -l 5"; do
    set -- $job; stem=$1; shift
    mkdir -p "$work/$stem"; cp "$shared/data/$stem.names" "$shared/data/$stem.data" "$work/$stem/"
    measure "$work/$stem" "$stem" "$@"
  done
  if [ -f "$shared/tools/gen_synth.py" ] && command -v python3 >/dev/null; then
    mkdir -p "$work/synth"
    python3 "$shared/tools/gen_synth.py" "$work/synth/synth" 1000000 >/dev/null
    measure "$work/synth" synth -s 0.05 -c 0.8
    measure "$work/synth" synth -s 0.01 -c 0.8
  fi
else
  echo "(no shared data sets beside the project: nothing to measure)" >&2
fi
