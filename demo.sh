#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job on a demo site in a data home of its own, which is made
# anew each time: makes a log of some weeks of a small shop, adds it, prints three reports, and opens the desktop on the
# demo site where there is a display.
set -euo pipefail
cd "$(dirname "$0")"
build=${CORVANE_BUILD:-build/demo}
home=${CORVANE_DEMO_HOME:-demo-home}

tools/setup.sh
echo "Building into $build ..."
tools/build.sh "$build" -DCORVANE_TESTS=OFF -DCORVANE_BENCH=OFF
cli=("$build/bin/corvane-cli" --home "$home")

rm -rf "$home"
mkdir -p "$home"
"$build/bin/corvane-loggen" --days 28 -o "$home/shop.log"
echo "Made a demo log: $home/shop.log ($(wc -l <"$home/shop.log") lines)"

"${cli[@]}" site create "Demo shop"
"${cli[@]}" add --format apache-combined --no-robots --no-components --overlap add --invalid skip "$home/shop.log"

for report in terms engines start-pages; do
  echo
  "${cli[@]}" report "$report" --kind top --top 12 --threshold 1
done

cat <<EOT

What to try next (add "--home $home" or set CORVANE_HOME=$home):
  $build/bin/corvane                                               the desktop
  $build/bin/corvane-cli report terms --kind top --top 20 --dist1 --dist2 --not-search
  $build/bin/corvane-cli report terms --as html -o terms.html      a page to look at or to send
  $build/bin/corvane-cli report words --kind top --top 20          single words of the search terms
  $build/bin/corvane-cli report pages --kind all --as csv -o pages.csv
  $build/bin/corvane-cli format try YOUR.log                       which layout fits a log of yours
  $build/bin/corvane-cli site create "My site"; $build/bin/corvane-cli add YOUR.log
EOT

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo
  echo "Opening the desktop on the demo site; close its window to end."
  exec "$build/bin/corvane" --home "$home"
fi
