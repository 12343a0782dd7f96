#!/usr/bin/env bash
# The first picture holds a bright disc in the middle of the left half, the second the same 6.5 pixels to the right and 2
# (a letter) further up, with a pattern in its corner.
set -euo pipefail
output=$("$1")
diff <(echo "$output") "$(dirname "$0")/../../examples/tiny_decoder.txt" || { echo "the manual shows something else"; exit 1; }
# Of the letters for bright pixels: how many, and the means of column and row.
disc() {
  sed -n "/^picture $1\$/,/^picture/p" <<<"$output" | grep -v picture |
    awk '{ for (i = 1; i <= length; ++i) if (substr($0, i, 1) ~ /[#%@]/) { ++n; x += i; y += NR } }
         END { printf "%d %d %d\n", n, 10 * x / n, 10 * y / n }'
}
read -r pixels x y <<<"$(disc 0)"
read -r pixels_after x_after y_after <<<"$(disc 1)"
problem=
((pixels > 100 && pixels < 160)) || problem="a disc of $pixels letters"
((pixels_after > pixels * 8 / 10 && pixels_after < pixels * 12 / 10)) || problem="$pixels letters become $pixels_after"
((x_after - x >= 60 && x_after - x <= 70)) || problem="moved by $((x_after - x)) / 10 to the right"
((y - y_after >= 7 && y - y_after <= 13)) || problem="moved by $((y - y_after)) / 10 upwards"
corner=$(tail -4 <<<"$output" | cut -c25-32 | fold -w1 | sort -u | wc -l)
((corner >= 4)) || problem="nothing in the corner"
[ -z "$problem" ] || { echo "$problem"; echo "$output"; exit 1; }
