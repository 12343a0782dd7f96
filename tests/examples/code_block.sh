#!/usr/bin/env bash
# A finer step keeps more levels and leaves a smaller error, which no block exceeds: half of each of the 64 steps,
# weighed by the 1/4 that a coefficient is worth in a sample, and two roundings.
set -euo pipefail
kept_before=65 error_before=-1
for step in 1 4 16 64; do
  read -r kept error < <("$1" $step | sed -n 's/^\([0-9]*\) of 64 levels are not zero; the largest error is \([0-9]*\)$/\1 \2/p')
  ((kept > 0 && kept < kept_before)) || { echo "step $step: $kept levels after $kept_before"; exit 1; }
  ((error >= error_before && error <= 64 * 3 * step / 2 / 4 + 2)) || { echo "step $step: error $error"; exit 1; }
  kept_before=$kept error_before=$error
done
((error > 8)) || { echo "not even a step of 64 leaves an error"; exit 1; }
(("$("$1" 1 | tail -1 | grep -o '[0-9]*$')" <= 2)) || { echo "a step of 1 leaves a large error"; exit 1; }
