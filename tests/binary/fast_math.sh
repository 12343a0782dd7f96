#!/usr/bin/env bash
# fast_math.sh CXX SOURCE: no operation compiles where the compiler may change its floating-point arithmetic.
set -euo pipefail
cxx=$1 source=$2
mapfile -t units < <(grep -l PQX_SECOND_NAME "$source"/src/*/*.cpp)
failed=0
expect() {  # REFUSALS OPTION UNIT...
  local expected=$1 found
  shift
  found=$({ $cxx -std=c++20 -I"$source/include" -I"$source/src" -E "$@" 2>&1 >/dev/null || true; } | grep -cE 'error: .*no -ffast-math' || true)
  [ "$found" = "$expected" ] || { echo "with $1, $found of $expected refuse to compile"; failed=1; }
}

expect 0 -O2 "${units[@]}"
expect ${#units[@]} -ffast-math "${units[@]}"
options=(-Ofast -ffinite-math-only)
$cxx --version | grep -q clang || options+=(-funsafe-math-optimizations -freciprocal-math -fno-signed-zeros -mfpmath=387)
for option in "${options[@]}"; do expect 1 "$option" "${units[0]}"; done
exit $failed
