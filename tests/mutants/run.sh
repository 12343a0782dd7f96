#!/usr/bin/env bash
# Plants the faults of list.txt in a copy of the tree, one at a time, and fails unless the tests of each one's folder
# find it.
#   run.sh SOURCE_DIR WORK_DIR [PATTERN]      (PATTERN: only the lines of the list that match it)
set -euo pipefail
source=$(realpath "$1") work=$2 pattern=${3:-.}

rm -rf "$work"
mkdir -p "$work/tree"
tar -C "$source" -c --exclude=./.git --exclude='./build*' . | tar -x -C "$work/tree"
cd "$work"
list=$(grep -v -e '^#' -e '^$' tree/tests/mutants/list.txt | grep -e "$pattern")
cmake -S tree -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DPQX_BUILD_TESTS=ON >log

run_tests() {
  timeout 300 "build/tests/$1_tests" --gtest_fail_fast --gtest_brief=1
}
for folder in $(cut -d ' ' -f 1 <<<"$list" | sort -u); do
  cmake --build build --target "${folder}_tests" >>log
  run_tests "$folder" >>log || { echo "The $folder tests fail without any fault."; exit 1; }
done

killed=0 survivors=0
while read -r folder path edit; do
  cp "tree/$path" original
  sed -i -e "$edit" "tree/$path"
  if cmp -s original "tree/$path"; then
    echo "changes nothing: $path $edit"
    exit 1
  fi
  if ! cmake --build build --target "${folder}_tests" >build.log 2>&1; then
    tail -n 20 build.log
    echo "does not compile: $path $edit"
    exit 1
  fi
  if run_tests "$folder" >test.log 2>&1; then
    echo "SURVIVES: $path $edit"
    survivors=$((survivors + 1))
  else
    killed=$((killed + 1))
  fi
  cp original "tree/$path"
done <<<"$list"
echo "$killed of $((killed + survivors)) faults found"
((survivors == 0))
