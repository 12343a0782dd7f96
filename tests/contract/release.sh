#!/usr/bin/env bash
# release.sh PYTHON SOURCE VERSION LIBRARY COMPANION: writes what follows from the header and from what the libraries
# export: the description of the interface, the packages' lists of symbols, and the counts in the change log.
set -euo pipefail
python=$1 source=$2 version=$3 library=$4 companion=$5

"$python" -B "$source/tools/contract/generate.py" "$source/include/pqx_video.h" json "$version" >"$source/abi/contract.json.new"
mv "$source/abi/contract.json.new" "$source/abi/contract.json"

symbols_of() { nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort; }
for file in "$library" "$companion"; do
  package=$(basename "${file//_/-}" .so)
  list=$source/debian/$package.symbols
  # Each keeps the version that it came with.
  { head -n 2 "$list"
    symbols_of "$file" | awk -v list="$list" -v new="$version" '
      BEGIN { while ((getline line < list) > 0) if (split(line, part, /@Base /) == 2) since[substr(part[1], 2)] = part[2] }
      { print " " $1 "@Base " ($1 in since ? since[$1] : new) }'
  } >"$list.new"
  mv "$list.new" "$list"
done

# The section of the newest release alone.
functions=$(grep -cP '^PQX_API [^(]*?\bpqx_\w+\(' "$source/include/pqx_video.h")
awk -v symbols="$(symbols_of "$library" | wc -l)" -v functions="$((functions - 2))" '
  /^## / { ++section }
  section == 1 && /^ABI: / { sub(/libpqx_video\.so exports [0-9]+/, "libpqx_video.so exports " symbols) }
  section == 1 { sub(/[0-9]+ functions under two names/, functions " functions under two names") }
  { print }' "$source/CHANGELOG.md" >"$source/CHANGELOG.md.new"
mv "$source/CHANGELOG.md.new" "$source/CHANGELOG.md"
