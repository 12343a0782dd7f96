#!/usr/bin/env bash
# exports.sh LIBRARY HEADER COMPANION DEBIAN: the library exports what the header declares, functions under both names,
# and nothing else; the packages' symbols files list just that; it needs its companion, the math and the C library; it
# has a soname.
set -euo pipefail
library=$1 header=$2 companion=$3 debian=$4
failed=0
expect_same() {  # WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] && return
  echo "$1:"
  diff <(echo "$2") <(echo "$3") | sed -n 's/^</  missing: /p; s/^>/  not wanted: /p' || true
  failed=1
}

functions=$(grep -oP '^PQX_API [^(]*?\bpqx_\w+(?=\()' "$header" | grep -oP '\w+$')
data=$(grep -oP '^extern PQX_API .*?\bpqx\w+(?=[\[;])' "$header" | grep -oP '\w+$')
twins=$(grep -vE '^pqx_VideoInterpX_Y_XY_8U_(comm|w16)$' <<<"$functions" | sed 's/^/__/')
[ "$(wc -l <<<"$functions")" -ge 50 ] || { echo "found too few declarations in $header"; exit 1; }

symbols_of() { nm -D --defined-only "$1" | awk '{print $3}' | sort; }
expect_same "exported symbols" "$(printf '%s\n' "$functions" "$twins" "$data" | sort)" "$(symbols_of "$library")"
for file in "$library" "$companion"; do
  name=$(basename "$file" .so) package=$(basename "${file//_/-}" .so)
  symbols=$debian/$package.symbols
  expect_same "first line of $symbols" "$name.so $package #MINVER#" "$(head -n 1 "$symbols")"
  expect_same "$symbols" "$(symbols_of "$file")" "$(sed -E '1d; /^\* /d; s/^ (\w+)@Base [0-9.]+$/\1/' "$symbols" | sort)"
done

entries=$(nm -D --defined-only "$library")
address_of() { awk -v n="$1" '$3 == n {print $1}' <<<"$entries"; }
for name in $twins; do
  [ "$(address_of "$name")" = "$(address_of "${name#__}")" ] || { echo "$name has an entry of its own"; failed=1; }
done

dynamic=$(readelf -dW "$library")
expect_same "needed libraries" "$(printf 'libpqx_vector.so\nlibm.so.6\nlibc.so.6')" \
  "$(grep -oP 'NEEDED.*\[\K[^]]+' <<<"$dynamic")"
expect_same "soname" libpqx_video.so "$(grep -oP 'SONAME.*\[\K[^]]+' <<<"$dynamic")"
expect_same "run path" '$ORIGIN' "$(grep -oP 'RUNPATH.*\[\K[^]]+' <<<"$dynamic")"
exit $failed
