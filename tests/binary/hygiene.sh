#!/usr/bin/env bash
# hygiene.sh TOOL LIBRARY...: what the loader is told. Relocations are done at once and are read-only from then on, no
# text is relocated, the stack is not executable, the run path is the library's own folder; the libraries run nothing when
# they are loaded or unloaded and are marked for control-flow protection; the tool lies at any address.
set -euo pipefail
tool=$1
shift
failed=0
complain() { echo "$file: $1"; failed=1; }

for file in "$tool" "$@"; do
  dynamic=$(readelf -dW "$file") segments=$(readelf -lW "$file")
  grep -q GNU_RELRO <<<"$segments" || complain "no read-only relocations"
  grep -qE 'FLAGS_1.*NOW' <<<"$dynamic" || complain "symbols are bound late"
  [ "$(awk '$1 == "GNU_STACK" {print $7}' <<<"$segments")" = RW ] || complain "executable stack"
  grep -qE ' RWE ' <<<"$segments" && complain "a segment is both written and executed"
  grep -q TEXTREL <<<"$dynamic" && complain "text relocations"
  grep -q '(RPATH)' <<<"$dynamic" && complain "a run path before the caller's"
  path=$(grep -oP 'RUNPATH.*\[\K[^]]+' <<<"$dynamic" || true)
  [[ $path =~ ^(\$ORIGIN(:\$ORIGIN/\.\./lib[^:]*)?)?$ ]] || complain "run path $path"
  [ "$(readelf -hW "$file" | awk '$1 == "Type:" {print $2}')" = DYN ] || complain "is not independent of its address"
done

for file in "$@"; do
  grep -q 'x86 feature: IBT, SHSTK' <<<"$(readelf -nW "$file")" || complain "no marks of control-flow protection"
  readelf -dW "$file" | grep -E '\((PRE)?(INIT|FINI)' && complain "runs code when it is loaded or unloaded"
  stripped=$(mktemp)
  strip -o "$stripped" "$file" && echo "$(basename "$file"): $(stat -c %s "$stripped") bytes when stripped"
  rm "$stripped"
done
file=$1
grep -q __stack_chk_fail <<<"$(nm -D "$file")" || complain "no guard behind the buffers on its stack"
exit $failed
