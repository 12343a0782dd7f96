#!/usr/bin/env bash
# Its output is what the README and the manual promise.
set -euo pipefail
expected='PQX:1100:20240723:linux-x8664:svn:: 254 0 0, 0 255 1'
found=$("$1")
[ "$found" = "$expected" ] || { echo "$found"; exit 1; }
grep -qF "$expected" "$(dirname "$0")/../../docs/pages/first_program.md" || { echo "the manual says something else"; exit 1; }
