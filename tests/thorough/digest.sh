#!/usr/bin/env bash
# digest.sh PROGRAMS LIBRARIES WORK: one digest of the results that the libraries in that folder have for a few cases of
# every operation. Those of each operation stay in the folder WORK.
set -euo pipefail
here=$(dirname "$0")
mkdir -p "$3"
rm -f "$3/digests"
PQX_TEST_DIGEST=$3/digests LD_LIBRARY_PATH=$2 bash "$here/each_program.sh" "$1" >"$3/log" || { cat "$3/log"; exit 1; }
sha256sum <"$3/digests" | cut -d ' ' -f 1
