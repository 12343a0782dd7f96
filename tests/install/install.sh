#!/usr/bin/env bash
# install.sh BUILD SOURCE LOADER CC: installs, moves the installed tree, and uses it in every way there is.
set -euo pipefail
build=$1 source=$2 loader=$3 cc=$4
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/moved"
prefix=$work/moved
lib=$(dirname "$(find "$prefix" -name libpqx_video.so)")
export PKG_CONFIG_PATH=$lib/pkgconfig
fail() { echo "$1"; exit 1; }

# expect KIND PROGRAM [LIBRARY PATH [ARGUMENT]]: the program works, and needs shared objects of ours exactly if KIND is
# shared.
expect() {
  LD_LIBRARY_PATH=${3:-} "$2" ${4:+"$4"} >/dev/null || fail "$2 does not run"
  local kind=static
  readelf -d "$2" | grep -q 'NEEDED.*libpqx' && kind=shared
  [ "$kind" = "$1" ] || fail "$2 is linked $kind"
}

cmake -S "$here/consumer" -B "$work/package" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$cc" >"$work/log"
cmake --build "$work/package" >"$work/log" || fail "$(cat "$work/log")"
for library in video vector; do
  expect shared "$work/package/$library"
  expect static "$work/package/${library}_static"
done
expect shared "$prefix/bin/pqxvideo" "" --version
for file in share/doc/pqx_video/LICENSE share/man/man1/pqxvideo.1 share/pqx_video/contract.json; do
  [ -s "$prefix/$file" ] || fail "there is no $file"
done

cd "$work"
c99="$cc -std=c99 -Wall -Wextra -Wpedantic -Werror $here/consumer/consumer.c"
$c99 -o shared $(pkg-config --cflags --libs pqx_video)
expect shared ./shared "$lib"
$c99 -o static -static $(pkg-config --cflags --static --libs pqx_video)
expect static ./static
$c99 -o archives $(pkg-config --cflags pqx_video) "$lib/libpqx_video.a" "$lib/libpqx_vector.a" -lm
expect static ./archives
$c99 -o bare -I"$prefix/include" -L"$lib" -lpqx_video
expect shared ./bare "$lib"

(cd / && "$loader" "$lib/libpqx_video.so" own)

for way in FETCH SUBDIRECTORY; do
  cmake -S "$here/consumer" -B "$work/$way" "-D$way=$source" -DCMAKE_C_COMPILER="$cc" -DCMAKE_BUILD_TYPE= \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >"$work/log"
  # Without a build type nothing but the project itself asks for optimization.
  units=$(grep '"command".*\.cpp' "$work/$way/compile_commands.json") || fail "$way compiles nothing"
  plain=$(grep -v -- ' -O2 ' <<<"$units" || true)
  [ -z "$plain" ] || fail "$way does not optimize: $plain"
done
# The first way ends in the second: one of them built is enough.
cmake --build "$work/FETCH" -j2 >"$work/log" 2>&1 || fail "$(cat "$work/log")"
expect shared "$work/FETCH/video"
expect static "$work/FETCH/video_static"
