#!/usr/bin/env bash
# Four squares of known colours, black, white, red and blue, come out as such; what cannot be shown is refused.
set -euo pipefail
show=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# Y of 2 x 2 pixels each, then U and V of one sample each: rows of black and white, then of red and blue.
printf '\x10\x10\xeb\xeb\x10\x10\xeb\xeb\x52\x52\x29\x29\x52\x52\x29\x29' >picture.yuv
printf '\x80\x80\x5a\xf0\x80\x80\xf0\x6e' >>picture.yuv
"$show" picture.yuv 4 4 picture.ppm
[ "$(head -c 11 picture.ppm)" = $'P6\n4 4\n255' ] || { echo "not a PPM file of that size"; exit 1; }
pixels=$(tail -c 48 picture.ppm | od -An -v -tu1 -w12 | tr -s ' ')
black=' 0 0 0' white=' 255 255 255' red=' 255 0 0' blue=' 0 0 255'
upper=$black$black$white$white lower=$red$red$blue$blue
expected=$(printf '%s\n' "$upper" "$upper" "$lower" "$lower")
# A colour may be off by the rounding of the matrix, as red is.
difference=$(paste -d' ' <(echo "$pixels") <(echo "$expected") |
  awk '{ for (i = 1; i <= 12; ++i) { d = $i - $(i + 12); if (d < 0) d = -d; if (d > m) m = d } } END { print m + 0, NR }')
[ "${difference% *}" -le 1 ] && [ "${difference#* }" = 4 ] || { echo "pixels: $pixels"; exit 1; }
for arguments in "missing.yuv 4 4" "picture.yuv 6 4" "picture.yuv 3 4" "picture.yuv 4"; do
  ! "$show" $arguments other.ppm 2>/dev/null || { echo "accepted $arguments"; exit 1; }
done
