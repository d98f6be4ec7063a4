#!/usr/bin/env bash
# build.sh FOLDER [CMAKE OPTIONS]: configures and builds into FOLDER, quietly unless something fails.
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$1
shift
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" && cmake --build "$folder" --parallel "$(nproc)"; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
