#!/usr/bin/env bash
# reproducible.sh SOURCE CC CXX: the libraries are the same to the last byte wherever their source and build lie.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for place in one a/longer/name; do
  mkdir -p "$work/$place"
  cp -r "$1"/{CMakeLists.txt,companion,include,src} "$work/$place"
  cmake -S "$work/$place" -B "$work/$place/build" -G Ninja -DCMAKE_C_COMPILER="$2" -DCMAKE_CXX_COMPILER="$3" \
    -DPQX_INSTALL=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >"$work/log" &&
    cmake --build "$work/$place/build" >"$work/log" || { cat "$work/log"; exit 1; }
done
for library in libpqx_{video,vector}.{so,a}; do
  cmp "$work/one/build/$library" "$work/a/longer/name/build/$library"
  strings "$work/one/build/$library" | grep -F "$work" && { echo "$library names the folder of its build"; exit 1; }
  sha256sum <"$work/one/build/$library"
done
