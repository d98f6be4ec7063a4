#!/usr/bin/env bash
# peers.sh LOG [BENCH_ADD]: times other log analysers that are installed on a combined log, then our add of the same file.
# Each runs alone, one after the other, so that the figures are of one machine in one run.
set -euo pipefail
log=${1:?usage: peers.sh LOG [BENCH_ADD]}
bench=${2:-$(dirname "$0")/../build/test/bin/bench_add}
lines=$(wc -l <"$log")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# row NAME COMMAND...: seconds and lines per second of the whole command.
row() {
  local name=$1 start end
  shift
  start=$(date +%s.%N)
  "$@" >"$scratch/out" 2>&1 || { echo "$name failed:"; tail -3 "$scratch/out"; return; }
  end=$(date +%s.%N)
  awk -v n="$name" -v l="$lines" -v s="$start" -v e="$end" 'BEGIN { printf "%-28s %9.2f s %12.0f lines/s\n", n, e - s, l / (e - s) }'
}

echo "$lines lines"
if command -v goaccess >/dev/null; then
  row goaccess goaccess "$log" --log-format=COMBINED -o "$scratch/report.json" --no-progress
else
  echo "goaccess is not installed"
fi
if command -v webalizer >/dev/null; then
  row webalizer webalizer -Q -p -o "$scratch" "$log"
fi
row "whole add" "$bench" "$log" --no-yardsticks
sed -n '/^add/,$p' "$scratch/out"
