#!/usr/bin/env bash
# each_program.sh PROGRAMS [RUNNER...]: each of the test programs, colons between them, runs a few cases of every operation.
set -euo pipefail
IFS=: read -ra programs <<<"$1"
shift
export PQX_TEST_FEW_CASES=1
for program in "${programs[@]}"; do
  output=$("$@" "$program" 2>&1) || { tail -n 60 <<<"$output"; exit 1; }
  grep -E '^\[  PASSED  \] [1-9]' <<<"$output" || { echo "$program ran nothing"; exit 1; }
done
