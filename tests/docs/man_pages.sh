#!/usr/bin/env bash
# man_pages.sh MAN3 HEADER PAGE...: every declaration of the header has a page that names it, and none of the pages
# there or of the further ones makes man complain.
set -euo pipefail
directory=$1 header=$2
shift 2
failed=0
complaint() { echo "$1"; failed=1; }
warnings() { man --warnings -E UTF-8 -l -Tutf8 -Z "$@" 2>&1 >/dev/null || echo "cannot be shown"; }

functions=$(grep -oP '^PQX_API [^(]*?\bpqx_\w+(?=\()' "$header" | grep -oP '\w+$')
data=$(grep -oP '^extern PQX_API .*?\bpqx\w+(?=[\[;])' "$header" | grep -oP '\w+$')
[ "$(wc -l <<<"$functions")" -ge 50 ] || complaint "found too few declarations in $header"

cd "$directory/.."
for name in $functions; do
  names="$name, __$name"
  [[ $name == pqx_VideoInterpX_Y_XY_8U_* ]] && names=$name
  page=man3/$name.3
  [ -e "$page" ] || { complaint "$page is missing"; continue; }
  grep -q "^$names "'\\- [a-zA-Z0-9]' "$page" || complaint "$page is not headed $names"
  # A line of the header that begins with the sign of a formula would make the rest of it a list.
  ! grep -q '^\.IP' "$page" || complaint "$page has a list"
  for section in NAME LIBRARY SYNOPSIS DESCRIPTION 'RETURN VALUE' NOTES 'SEE ALSO'; do
    grep -qx "\.SH $section" "$page" || complaint "$page has no section $section"
  done
done
for name in $data; do
  grep -q "\.B .*\b$name\b" "man3/$(grep -oP '^\.so man3/\K\w+' "man3/$name.3").3" || complaint "$name leads nowhere"
done

printf '.TH A 3\n.SH NAME\n\\fQa\n.nonsense\n' >"$directory/../broken.3"
[ -n "$(warnings broken.3)" ] || complaint "man does not complain about a broken page"
[ -z "$(warnings man3/*.3 "$@")" ] ||
  for page in man3/*.3 "$@"; do
    text=$(warnings "$page")
    [ -z "$text" ] || complaint "$page: $text"
  done
for other in $(grep -hoP '^\.BR \Kpqx\w+(?= \(3\))' man3/*.3 "$@" | sort -u); do
  [ -e "man3/$other.3" ] || complaint "some page names $other(3)"
done
exit $failed
