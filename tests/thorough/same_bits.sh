#!/usr/bin/env bash
# same_bits.sh PROGRAMS SOURCE DIGESTS: the results are the same whichever compiler made the library, at any level, with
# and without optimization at link time, and in whatever order its objects are linked.
set -euo pipefail
programs=$1 source=$2 expected=$3
here=$(dirname "$0")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0 builds=0

compare() {  # NAME FOLDER
  builds=$((builds + 1))
  echo "$1: $(bash "$here/digest.sh" "$programs" "$2" "$expected")" || failed=1
}

for compiler in gcc,g++ clang,clang++; do
  for level in -O0 -O1 -O2 -O3; do
    for link_time in "" -flto; do
      build=$work/build
      rm -rf "$build"
      flags="$level $link_time"
      cmake -S "$source" -B "$build" -G Ninja -DCMAKE_C_COMPILER=${compiler%,*} -DCMAKE_CXX_COMPILER=${compiler#*,} \
        -DCMAKE_BUILD_TYPE=Custom -DPQX_OPTIMIZE="$level" -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" >"$work/log" &&
        cmake --build "$build" --target pqx_video >"$work/log" || { cat "$work/log"; exit 1; }
      compare "$compiler $flags" "$build"
      objcopy -O binary --only-section=.text "$build/libpqx_video.so" "$work/code$level"

      # The same objects the other way round.
      [ "$level" = -O2 ] || continue
      mkdir "$build/turned"
      cp "$build/libpqx_vector.so" "$build/turned"
      find "$build/src" -name '*.cpp.o' | sort -r >"$build/objects"
      ${compiler%,*} $flags -shared -nostartfiles -o "$build/turned/libpqx_video.so" -Wl,-soname,libpqx_video.so \
        -Wl,--version-script="$source/src/exports.map" @"$build/objects" -L"$build" -lpqx_vector -lm
      cmp -s "$build/libpqx_video.so" "$build/turned/libpqx_video.so" && { echo "nothing was turned round"; failed=1; }
      compare "$compiler $flags, turned round" "$build/turned"
    done
  done
  cmp -s "$work/code-O0" "$work/code-O3" && { echo "$compiler: -O0 and -O3 make the same code"; failed=1; }
done
echo "$builds builds"
exit $failed
