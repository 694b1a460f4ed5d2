#!/bin/sh
# Times rule-discretise on two generated data sets:
#   wide  - 32,000 cases, one continuous attribute with 20,000 distinct values;
#   tall  - 1,000,000 cases, six continuous attributes of 1,000 distinct values each.
# The data are generated deterministically into a temporary folder, which is
# removed afterwards. Usage: bench/discretise_bench.sh [BUILD_DIR]
# (BUILD_DIR holds a Release build; default build-disc beside the sources).
set -eu

here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$here/../build-disc}
program=$build/rule-discretise
[ -x "$program" ] || { echo "no rule-discretise in $build" >&2; exit 1; }

work=$(mktemp -d /tmp/discretise-bench-XXXXXX)
trap 'rm -rf "$work"' EXIT

# wide: value i*7919 mod 20000, scaled, so every one of the 20,000 values
# occurs; the class follows the value.
{
  printf 'low, high.\nx: continuous.\n'
} > "$work/wide.names"
awk 'BEGIN { for (i = 0; i < 32000; i++) { v = (i * 7919) % 20000;
             printf "%.3f,%s\n", v / 7.0, (v < 10000 ? "low" : "high") } }' > "$work/wide.data"

# tall: attribute a takes (i * p_a) mod 1000 for a prime p_a, so each has
# 1,000 distinct values; a linear congruence picks the class.
{
  printf 'c0, c1, c2.\n'
  for a in 1 2 3 4 5 6; do printf 'a%d: continuous.\n' "$a"; done
} > "$work/tall.names"
awk 'BEGIN { split("7 13 31 101 211 997", p, " "); s = 1;
             for (i = 0; i < 1000000; i++) {
               line = "";
               for (a = 1; a <= 6; a++) line = line sprintf("%.2f,", ((i * p[a]) % 1000) / 4.0);
               s = (s * 1103515245 + 12345) % 2147483648;
               printf "%sc%d\n", line, int(s / 65536) % 3 } }' > "$work/tall.data"

run() {
  name=$1
  shift
  start=$(date +%s.%N)
  "$program" -f "$work/$name" -o "$work/$name-d" "$@" > "$work/$name.out"
  end=$(date +%s.%N)
  intervals=$(grep -c '^	' "$work/$name.out")
  printf '%-5s %9d cases  %s  %6d intervals  %.2f s\n' "$name" \
    "$(wc -l < "$work/$name.data")" "${*:-(-s 0.1)}" "$intervals" "$(echo "$end - $start" | bc -l)"
}

echo "machine: $(nproc) processors, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')"
echo "commit:  $(git -C "$here" rev-parse --short HEAD)"
run wide
run wide -s 0
run tall
run tall -s 0.0001
