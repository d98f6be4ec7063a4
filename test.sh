#!/usr/bin/env bash
# Installs what is missing, builds, runs all tests. Ends with "N passed, N failed".
set -euo pipefail
cd "$(dirname "$0")"
build=${CORVANE_BUILD:-build/test}

tools/setup.sh
echo "Building into $build ..." >&2
tools/build.sh "$build" -DCORVANE_TESTS=ON

# The tests flush files all the time; in memory that costs nothing.
if [ -z "${TMPDIR:-}" ] && [ -w /dev/shm ] && [ "$(df --output=avail -k /dev/shm | tail -1)" -gt 2000000 ]; then
  TMPDIR=$(mktemp -d /dev/shm/corvane-test-XXXXXX)
  export TMPDIR
  trap 'rm -rf "$TMPDIR"' EXIT
fi
status=0
report=$build/ctest.log
ctest --test-dir "$build" --output-on-failure --parallel "$(nproc)" --no-tests=error --timeout 900 2>&1 | tee "$report" || status=$?

failed=$(sed -n 's/^.* tests passed, \([0-9]*\) tests failed out of .*$/\1/p' "$report" | tail -1)
total=$(sed -n 's/^.* tests failed out of \([0-9]*\).*$/\1/p' "$report" | tail -1)
if [ -z "$total" ]; then
  echo "0 passed, 1 failed"
  exit 1
fi
echo "$((total - failed)) passed, $failed failed"
exit "$status"
