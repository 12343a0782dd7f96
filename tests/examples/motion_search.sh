#!/usr/bin/env bash
# Every block is found where it was put, and what is left of it is nothing.
set -euo pipefail
for vector in '0 0' '5 -3' '-15 15' '15 7'; do
  read -r dx dy <<<"$vector"
  output=$("$1" "$dx" "$dy")
  count=$(head -9 <<<"$output" | grep -oP '(?<![\d-])'"$dx, *$dy(?!\d)" | wc -l)
  [ "$count" = 99 ] || { echo "$count of 99 blocks have moved by $vector:"; echo "$output"; exit 1; }
  grep -qx "99 of 99 blocks moved by $dx, $dy; 0 is left to code" <<<"$output" || { echo "$output"; exit 1; }
done
