#!/usr/bin/env bash
# Replays every fuzz target over its checked-in corpus (fuzz/corpus/TARGET):
# no new fuzzing, a few seconds in all. Skipped, with status 0, when clang++
# or its libFuzzer runtime is missing.
#   FUZZ_BUILD  build folder (default build-fuzz)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${FUZZ_BUILD:-build-fuzz}

if ! command -v clang++ >/dev/null 2>&1; then
  echo "fuzz replay skipped: clang++ not found"
  exit 0
fi
probe=$(mktemp -d)
trap 'rm -rf "$probe"' EXIT
printf '#include <cstddef>\n#include <cstdint>\nextern "C" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }\n' \
  >"$probe/probe.cpp"
if ! clang++ -fsanitize=fuzzer,address,undefined "$probe/probe.cpp" -o "$probe/probe" >/dev/null 2>&1; then
  echo "fuzz replay skipped: the libFuzzer runtime of clang++ is missing (Debian: libclang-rt-dev)"
  exit 0
fi

cmake -S fuzz -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)" >/dev/null
status=0
for source in fuzz/*_fuzzer.cpp; do
  name=$(basename "$source" .cpp)
  t=${name%_fuzzer}
  files=$(find "fuzz/corpus/$t" -type f | wc -l)
  if "$build/$name" -runs=0 -timeout=25 -artifact_prefix="$build/replay-$t-" "fuzz/corpus/$t" >"$build/replay-$t.log" 2>&1; then
    echo "fuzz replay $t: $files inputs, no finding"
  else
    echo "fuzz replay $t: FAILED (see $build/replay-$t.log)"
    tail -n 30 "$build/replay-$t.log"
    status=1
  fi
done
exit $status
