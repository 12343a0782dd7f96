#!/usr/bin/env bash
# Whatever the number of bands, the result is that of one.
set -euo pipefail
for threads in 1 2 3 7 64; do
  output=$("$1" $threads)
  [ "$(grep -c " in $threads bands: as in one$" <<<"$output")" = 6 ] || { echo "$output"; exit 1; }
done
