#!/usr/bin/env bash
# Times the miner against three peer miners (apriori, fpgrowth, eclat) on the same jobs.
#
# Usage: bench/compare.sh [BUILD_DIR] [JOB ...]     (BUILD_DIR default: build)
#        bench/compare.sh --list                      the jobs and their short names
#   RUNS=N      rounds per job (default 5); the programs alternate within a round
#   JOBS="a b"  the jobs to run (also given as words after BUILD_DIR); default all
#   TIMEOUT=S   stop any single run after S seconds (default: no limit)
#   KEEP=1      keep the temporary folder with data, outputs and timings
#
# Needs a Release build (make build), GNU time as /usr/bin/time (Debian package `time`),
# python3, gcc and make for the peers. The peers, the real data sets and gen_synth.py live in
# ../shared beside the project; without it the script says so and ends with status 0. The
# peers are built into the temporary folder with ../shared/peers/build.sh, the data sets are
# converted there with ../shared/peers/names2tab.py, and the four synthetic sets of
# bench/gen_data.py are written there too: nothing is written into the project or ../shared.
#
# Prints one Markdown table: per job the median wall time and the median peak resident memory
# of `rule`, of the faster of apriori and fpgrowth (they write rules: `-tr -sS -cC -nL -o`,
# support and confidence in percent, the rule support counting antecedent and target
# together), their ratios (ours / peer: above 1 means slower or larger), eclat's frequent
# item sets alone (`-ts`, a lower bound: no rules), and the rule counts as a sanity check (the
# peers keep every rule that reaches the confidence; `rule` keeps only improving rules, so
# its count is smaller). Progress goes to standard error.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
shared=$here/../shared

# short name | data set | options of rule (support, confidence, largest itemset)
JOB_TABLE="\
mushroom1|mushroom|0.05 0.8 4
mushroom2|mushroom|0.02 0.8 5
nursery|nursery|0.01 0.6 5
tictactoe|tic-tac-toe|0.02 0.8 5
vote|vote|0.05 0.8 6
synth|synth|0.05 0.8 4
wide|wide|0.001 0.8 4
large|large|0.001 0.8 4
binary|binary|0.1 0.8 10
many|many|0.05 0.8 4"

describe() {  # data set -> what it is
  case $1 in
    synth) echo "1,000,000 cases of ../shared/tools/gen_synth.py (20 x 5 values)" ;;
    wide) echo "bench/gen_data.py wide: 100,000 cases x 10 attributes of 3,000 values" ;;
    large) echo "bench/gen_data.py large: 1,000,000 cases x 20 attributes of 500 values" ;;
    binary) echo "bench/gen_data.py binary: 100,000 cases x 20 correlated binary attributes" ;;
    many) echo "bench/gen_data.py many: 3,000 cases x 60 attributes of 4 values" ;;
    *) echo "../shared/data/$1" ;;
  esac
}

if [ "${1:-}" = --list ]; then
  while IFS='|' read -r name set opts; do
    read -r s c l <<<"$opts"
    printf '%-10s rule -s %s -c %s -l %s   on %s\n' "$name" "$s" "$c" "$l" "$(describe "$set")"
  done <<<"$JOB_TABLE"
  exit 0
fi

build=${1:-$here/build}
[ $# -gt 0 ] && shift
[ -d "$build" ] && build=$(cd "$build" && pwd)
selected=${*:-${JOBS:-}}
runs=${RUNS:-5}
rule=$build/rule

if [ ! -d "$shared/peers" ] || [ ! -d "$shared/data" ]; then
  echo "compare.sh: no peer miners or data sets in $shared: nothing to compare" >&2
  exit 0
fi
if [ ! -x /usr/bin/time ] || ! /usr/bin/time -f %e true >/dev/null 2>&1; then
  echo "compare.sh: GNU time is needed as /usr/bin/time: install the Debian package 'time'" \
       "(apt-get install time)" >&2
  exit 1
fi
[ -x "$rule" ] || { echo "compare.sh: no $rule: build the miner first (make build)" >&2; exit 1; }
command -v python3 >/dev/null || { echo "compare.sh: python3 is needed" >&2; exit 1; }
case $runs in ''|*[!0-9]*|0) echo "compare.sh: RUNS must be a positive number" >&2; exit 1 ;; esac

jobs=()
while IFS='|' read -r name set opts; do
  if [ -z "$selected" ] || [[ " $selected " == *" $name "* ]]; then jobs+=("$name|$set|$opts"); fi
done <<<"$JOB_TABLE"
for want in $selected; do
  grep -q "^$want|" <<<"$JOB_TABLE" || { echo "compare.sh: no job '$want' (see --list)" >&2; exit 1; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/compare.XXXXXX")
if [ "${KEEP:-0}" = 1 ]; then
  echo "compare.sh: keeping $work" >&2
else
  trap 'rm -rf "$work"' EXIT
fi
log() { echo "compare.sh: $*" >&2; }

log "building the peers into $work/peers"
"$shared/peers/build.sh" "$work/peers" >"$work/peers.log" 2>&1 \
  || { cat "$work/peers.log" >&2; exit 1; }

prepare() {  # data set -> $work/data/SET/SET.{names,data,tab}, made once
  local set=$1 dir=$work/data/$1
  [ -f "$dir/$set.tab" ] && return 0
  mkdir -p "$dir"
  log "preparing $set"
  case $set in
    synth) python3 "$shared/tools/gen_synth.py" "$dir/$set" 1000000 >/dev/null ;;
    wide|large|binary|many) python3 "$here/bench/gen_data.py" "$set" "$dir/$set" ;;
    *) cp "$shared/data/$set.names" "$shared/data/$set.data" "$dir/" ;;
  esac
  python3 "$shared/peers/names2tab.py" "$dir/$set" "$dir/$set.tab" 2>>"$work/convert.log"
}

percent() { awk -v f="$1" 'BEGIN { printf "%g", f * 100 }'; }

run_one() {  # job dir, program, data set, s, c, l: appends "seconds kilobytes status" to DIR/PROG.times
  local dir=$1/$2 prog=$2 set=$3 s=$4 c=$5 l=$6 data=$work/data/$3
  local limit=() start end status=0
  mkdir -p "$dir"
  [ -n "${TIMEOUT:-}" ] && limit=(timeout "$TIMEOUT")
  local ps pc; ps=$(percent "$s"); pc=$(percent "$c")
  start=$EPOCHREALTIME
  case $prog in
    rule)
      ln -sf "$data/$set.names" "$data/$set.data" "$dir/"
      ( cd "$dir" && /usr/bin/time -f '%M' -o time.txt "${limit[@]}" "$rule" -f "$set" \
          -s "$s" -c "$c" -l "$l" >stdout 2>stderr ) || status=$? ;;
    apriori|fpgrowth)
      /usr/bin/time -f '%M' -o "$dir/time.txt" "${limit[@]}" "$work/peers/$prog" -tr "-s$ps" \
        "-c$pc" "-n$l" -o "$data/$set.tab" "$dir/rules.txt" >"$dir/stdout" 2>"$dir/stderr" \
        || status=$? ;;
    eclat)
      /usr/bin/time -f '%M' -o "$dir/time.txt" "${limit[@]}" "$work/peers/eclat" -ts "-s$ps" \
        "-n$l" "$data/$set.tab" "$dir/sets.txt" >"$dir/stdout" 2>"$dir/stderr" || status=$? ;;
  esac
  end=$EPOCHREALTIME
  grep -q 'Not enough memory' "$dir/stdout" 2>/dev/null && status=nomem
  printf '%s %s %s\n' "$(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.3f", b - a }')" \
    "$(tail -n 1 "$dir/time.txt" | grep -Eo '^[0-9]+$' || echo 0)" "$status" >>"$1/$prog.times"
}

median() {  # column of a times file -> median (mean of the two middle values for even counts)
  sort -g <(awk -v k="$2" '{ print $k }' "$1") \
    | awk '{ v[NR] = $1 } END { if (NR % 2) print v[(NR + 1) / 2]; else print (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

summary() {  # times file -> "seconds MB" medians, or the first failure
  local bad
  bad=$(awk '$3 != 0 { print $3; exit }' "$1")
  if [ -n "$bad" ]; then
    case $bad in nomem) echo "- - not-enough-memory" ;; 124) echo "- - timeout" ;; *) echo "- - status-$bad" ;; esac
  else
    echo "$(median "$1" 1) $(awk -v k="$(median "$1" 2)" 'BEGIN { printf "%.0f", k / 1024 }')"
  fi
}

cell() {  # "seconds MB [failure]" -> table cell
  set -- $1  # split on purpose: seconds, MB, failure
  if [ "$1" = - ]; then echo "$3"; else printf '%.3f s, %s MB' "$1" "$2"; fi
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (a == "-" || b == "-" || b == 0) print "-"; else printf "%.2f", a / b }'; }

echo "| job | data | options | rule | fastest peer with rules | time ratio | memory ratio | eclat, sets only | rules: rule / peer |"
echo "|---|---|---|---:|---:|---:|---:|---:|---:|"
for job in "${jobs[@]}"; do
  IFS='|' read -r name set opts <<<"$job"
  read -r s c l <<<"$opts"
  prepare "$set"
  jdir=$work/out/$name
  mkdir -p "$jdir"
  for ((round = 1; round <= runs; round++)); do
    log "$name: round $round of $runs"
    for prog in rule apriori fpgrowth eclat; do run_one "$jdir" "$prog" "$set" "$s" "$c" "$l"; done
  done
  ours=$(summary "$jdir/rule.times")
  best=; bestname=
  for prog in apriori fpgrowth; do
    this=$(summary "$jdir/$prog.times")
    if [ "${this%% *}" != - ] && { [ -z "$best" ] || awk -v a="${this%% *}" -v b="${best%% *}" 'BEGIN { exit !(a < b) }'; }; then
      best=$this; bestname=$prog
    fi
  done
  [ -n "$best" ] || { best="- - failed"; bestname=none; }
  ourrules=$(grep 'The number of rules' "$jdir/rule/stdout" | tail -n 1 | awk '{ print $5 }' || true)
  peerrules=$(sed -n 's/.*\[\([0-9]*\) rule(s)\].*/\1/p' "$jdir/$bestname/stderr" 2>/dev/null | tail -n 1 || true)
  read -r os om _ <<<"$ours"; read -r bs bm _ <<<"$best"
  printf '| %s | %s | `-s %s -c %s -l %s` | %s | %s: %s | %s | %s | %s | %s / %s |\n' \
    "$name" "$set" "$s" "$c" "$l" "$(cell "$ours")" "$bestname" "$(cell "$best")" \
    "$(ratio "$os" "$bs")" "$(ratio "$om" "$bm")" "$(cell "$(summary "$jdir/eclat.times")")" \
    "${ourrules:-?}" "${peerrules:-?}"
done
echo
printf 'Medians of %s rounds (wall time, peak resident memory). Machine: %s processors, %s, %s GB; commit %s.\n' \
  "$runs" "$(nproc)" "$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)" \
  "$(awk '/^MemTotal/ { printf "%.0f", $2 / 1048576 }' /proc/meminfo)" \
  "$(git -C "$here" rev-parse --short HEAD 2>/dev/null || echo unknown)"
