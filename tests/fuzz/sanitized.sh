#!/usr/bin/env bash
# Builds operations_run by a preset of a sanitizer and runs it.
#   sanitized.sh PRESET THREADS CASES
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset "$1" -G Ninja >/dev/null
cmake --build "build-$1" --target operations_run
# Only what hides by itself is hidden: much of what lies on the heap comes from the C++ library.
MSAN_OPTIONS=poison_in_malloc=0 "build-$1/tests/fuzz/operations_run" "$2" "$3"
