# Sourced by the scripts beside it: what today's library is measured against.

last_release=093ff50
last_version=1.1.0

# sources_of COMMIT: prints where its files are, once they are there.
sources_of() {
  local commit directory
  commit=$(git rev-parse --short --verify --quiet "$1^{commit}") || return 1
  directory=build-bench/sources-$commit
  if [ ! -d "$directory" ]; then
    mkdir -p "$directory.part" && git archive "$commit" | tar -x -C "$directory.part" &&
      mv "$directory.part" "$directory" || return 1
  fi
  echo "$directory"
}

# build_library SOURCES DIRECTORY [OPTIONS OF CMAKE...]: the library alone, as it is released.
build_library() {
  cmake -S "$1" -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Release "${@:3}" >/dev/null
  cmake --build "$2" --target pqx_video >/dev/null
}
