#!/usr/bin/env bash
# header.sh CC CXX SOURCE: the public header compiles alone in every language it serves; each internal header alone.
set -euo pipefail
cc=$1 cxx=$2 source=$3
warnings="-Wall -Wextra -Wpedantic -Werror"
for std in c99 c11 c17; do
  echo '#include "pqx_video.h"' | $cc -std=$std $warnings -I"$source/include" -fsyntax-only -xc -
done
for std in c++11 c++14 c++17 c++20; do
  echo '#include "pqx_video.h"' | $cxx -std=$std $warnings -I"$source/include" -fsyntax-only -xc++ -
done
cd "$source/src"
for header in */*.h; do
  echo "#include \"$header\"" | $cxx -std=c++20 -Wall -Wextra -I. -I../include -fsyntax-only -xc++ -
done
