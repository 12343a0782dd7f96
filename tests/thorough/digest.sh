#!/usr/bin/env bash
# digest.sh PROGRAMS LIBRARIES EXPECTED: compares digests of the results that the libraries in that folder have for a few
# cases of every operation with the file EXPECTED and names the operations that differ.
# digest.sh PROGRAMS LIBRARIES: prints such a file, a line for each operation.
set -euo pipefail
here=$(dirname "$0")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
PQX_TEST_DIGEST=$work/cases LD_LIBRARY_PATH=$2 \
  bash "$here/each_program.sh" "$1" >"$work/log" || { cat "$work/log" >&2; exit 1; }
awk '{ digests[$1] = digests[$1] " " $2 } END { for (name in digests) print name digests[name] }' "$work/cases" |
  LC_ALL=C sort >"$work/found"
[ $# -gt 2 ] || exec cat "$work/found"
differing=$({ diff "$3" "$work/found" || true; } | sed -n 's/^[<>] \([^ ]*\).*/\1/p' | sort -u)
[ -z "$differing" ] || { printf '%s has other results than before\n' $differing; exit 1; }
wc -l <"$work/found"
