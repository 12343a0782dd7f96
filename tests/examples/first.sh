#!/usr/bin/env bash
# The README shows this program, and it prints what the README and the manual promise.
set -euo pipefail
root=$(dirname "$0")/../..
found=$("$1")
for page in README.md docs/pages/first_program.md; do
  grep -qF -- "$found" "$root/$page" || { echo "$page promises something else than $found"; exit 1; }
done
diff <(sed -n '/^```c$/,/^```$/p' "$root/README.md" | grep -v '^```') <(grep -v '^//' "$root/examples/first.c")
