#!/usr/bin/env bash
# gates.sh [GATE...]: the fault gates and the fuzz targets at full size (see tests/gates, tests/fuzz).
#   CORVANE_BUILD          build folder (build/gates)
#   CORVANE_GATE_SEED      another sample of the same kind (1)
#   CORVANE_FUZZ_SECONDS   for each fuzz target (60)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${CORVANE_BUILD:-build/gates}
seed=${CORVANE_GATE_SEED:-1}
gates=("$@")
[ ${#gates[@]} -gt 0 ] || gates=(g1 g4 g6 g8 g11 g12 g13 g14 sites fuzz)

tools/build.sh "$build" -DCORVANE_TESTS=ON -DCORVANE_BENCH=OFF
injector=$(find "$build" -name libfaultinjector.so -print -quit)
status=0
for gate in "${gates[@]}"; do
  if [ "$gate" = fuzz ]; then
    CORVANE_FUZZ_SEED=$seed CORVANE_FUZZ_SECONDS=${CORVANE_FUZZ_SECONDS:-60} "$build/bin/fuzz_tests" --gtest_brief=1 || status=1
    continue
  fi
  if [ "$gate" = g14 ]; then
    python3 -B tests/gates/second.py --size whole --cli "$build/bin/corvane-cli" --desktop "$build/bin/corvane" || status=1
    continue
  fi
  if [ "$gate" = g8 ]; then
    python3 -B tests/gates/hostile.py --size whole --cli "$build/bin/corvane-cli" || status=1
    continue
  fi
  if [ "$gate" = g11 ]; then
    python3 -B tests/gates/moving.py --size whole --cli "$build/bin/corvane-cli" || status=1
    continue
  fi
  if [ "$gate" = sites ]; then
    python3 -B tests/gates/sitekills.py --size whole --cli "$build/bin/corvane-cli" --injector "$injector" || status=1
    continue
  fi
  python3 -B tests/gates/gates.py "$gate" --size whole --seed "$seed" --driver "$build/bin/gatedriver" --injector "$injector" \
    --loggen "$build/bin/corvane-loggen" --shared params || status=1
done
exit "$status"
