#!/usr/bin/env bash
# contract.sh PYTHON SOURCE VERSION: the committed description of the interface is what the header says, and the generator
# refuses a header that says it wrongly.
set -euo pipefail
python=$1 source=$2 version=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
generate() { "$python" -B "$source/tools/contract/generate.py" "$1" json "$version"; }

generate "$source/include/pqx_video.h" >"$work/contract.json"
diff "$source/abi/contract.json" "$work/contract.json" ||
  { echo "abi/contract.json is not current; the target release writes it"; exit 1; }

failed=0
refused() {  # EDIT WORDS: with this edit of sed the report has these words
  sed -E "$1" "$source/include/pqx_video.h" >"$work/edited.h"
  cmp -s "$source/include/pqx_video.h" "$work/edited.h" && { echo "changes nothing: $1"; failed=1; }
  if generate "$work/edited.h" >"$work/out" 2>&1 || ! grep -qF "$2" "$work/out"; then
    echo "accepted: $1"
    tail -n 3 "$work/out"
    failed=1
  fi
}
refused 's/(prediction\.) Writes `[^`]*`\./\1/' 'pDst: 0 accesses'
refused 's/Reads `128 bytes`/Writes `128 bytes`/' 'writes what is const'
refused 's/Writes `128 bytes`/Reads `128 bytes`/' 'does not write what is not'
refused 's/`height rows of w bytes, step apart`/`hight rows of w bytes, step apart`/' 'not all names are known in hight'
refused 's/`3 \* len bytes`/`3 * (len bytes`/' ') is missing'
refused 's/`2 \* n bytes`/`2 * n`/' 'neither bytes nor rows'
refused 's/With `w = width \/ 4`:/Whose `w` is a quarter:/' 'not all names are known in 4 * w'
refused 's/With `n = len \/ 2`:/With `n = len \/ 2` and `m = n`:/' 'm is defined and not used'
refused 's/May overlap `pSrc`/May overlap `pSource`/' 'cannot overlap pSource'
refused 's/May equal `pSrc`\./May equal `pSrc` now and then./' 'in other words'
refused 's/@param pSrc  /@param pSource  /' 'no parameter is called pSource'
refused 's/(height rows of w) bytes, (step apart`\. Reads|step apart`)/\1\n * + 1 bytes, \2/' 'begins a list'
exit $failed
