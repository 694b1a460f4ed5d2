#!/usr/bin/env bash
# Builds the fuzz targets and fuzzes each one for a while.
#   fuzz/run.sh [TARGET...]        all targets when none is named
# Environment:
#   FUZZ_SECONDS  seconds per target (default 600)
#   FUZZ_JOBS     targets fuzzed at the same time (default 1)
#   FUZZ_BUILD    build folder (default build-fuzz)
#   CXX           the clang++ to build with (default clang++)
# Each target starts from its checked-in seeds (fuzz/corpus/TARGET) and grows
# a working corpus in FUZZ_BUILD/corpus/TARGET, kept between runs. Crashes,
# leaks, timeouts and out-of-memory inputs are written to
# FUZZ_BUILD/findings/TARGET/, the log to FUZZ_BUILD/logs/TARGET.log. The
# last lines summarise each run; the status is 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-600}
jobs=${FUZZ_JOBS:-1}
build=${FUZZ_BUILD:-build-fuzz}
cxx=${CXX:-clang++}
case "$cxx" in *clang*) ;; *) cxx=clang++ ;; esac

cmake -S fuzz -B "$build" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)"

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/*_fuzzer.cpp; do
    name=$(basename "$source" .cpp)
    targets+=("${name%_fuzzer}")
  done
fi

fuzz_one() {
  local t=$1
  mkdir -p "$build/corpus/$t" "$build/findings/$t" "$build/logs"
  "$build/${t}_fuzzer" "$build/corpus/$t" fuzz/corpus/"$t" \
    -max_total_time="$seconds" -max_len=4096 -timeout=25 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$build/findings/$t/" >"$build/logs/$t.log" 2>&1 || true
}

running=0
for t in "${targets[@]}"; do
  [ -f "fuzz/${t}_fuzzer.cpp" ] || { echo "no fuzz target $t" >&2; exit 2; }
  echo "fuzzing $t for $seconds s"
  fuzz_one "$t" &
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then wait -n || true; running=$((running - 1)); fi
done
wait

status=0
printf '%-12s %12s %8s %8s %8s\n' target execs cov ft findings
for t in "${targets[@]}"; do
  log=$build/logs/$t.log
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  last=$(grep -E '^#[0-9]+' "$log" | tail -1)
  cov=$(echo "$last" | sed -n 's/.* cov: \([0-9]*\).*/\1/p')
  ft=$(echo "$last" | sed -n 's/.* ft: \([0-9]*\).*/\1/p')
  found=$(find "$build/findings/$t" -type f | wc -l)
  printf '%-12s %12s %8s %8s %8s\n' "$t" "${execs:-?}" "${cov:-?}" "${ft:-?}" "$found"
  [ "$found" -eq 0 ] || status=1
done
exit $status
