#!/usr/bin/env bash
# version.sh SOURCE VERSION LIBRARY: every place that names a version names the one of the build, and the newest release
# in the change log tells in its ABI line how many symbols the library exports.
set -euo pipefail
source=$1 version=$2 library=$3
failed=0
expect() {  # WHERE EXPECTED FOUND
  [ "$2" = "$3" ] || { echo "$1: '$3', not '$2'"; failed=1; }
}
IFS=. read -r major minor patch <<<"$version"
changes=$source/CHANGELOG.md

# What the library reports is part of its interface: a release does not change it.
expect "identification in the library" 1100 "$(grep -aoPm1 '@\(#\)PQX:\K\d+' "$library")"
expect "pqx_GetVersion in the header" 1100 "$(grep -oPm1 'PQX:\K\d+' "$source/include/pqx_video.h")"
read -r macros number < <(
  echo PQX_VERSION_MAJOR.PQX_VERSION_MINOR.PQX_VERSION_PATCH PQX_VERSION_NUMBER |
    cc -E -P -include "$source/include/pqx_video.h" - | tail -1 | sed 's/ *\. */./g')
expect "PQX_VERSION_MAJOR and so on" "$version" "$macros"
expect "PQX_VERSION_NUMBER" $((10000 * major + 100 * minor + patch)) $((number))
expect "CHANGELOG.md" "$version" "$(grep -oPm1 '^## \K\S+' "$changes")"
expect "debian/changelog" "$version" "$(grep -oPm1 '^pqx-video \(\K[^)]+' "$source/debian/changelog")"
expect "ABI line in CHANGELOG.md" "$(nm -D --defined-only "$library" | wc -l)" \
  "$(sed '/^## /,/^## /!d' "$changes" | grep -oPm1 '^ABI: .*\blibpqx_video\.so exports \K\d+(?= symbols)')"
exit $failed
