# shellcheck shell=bash
# Sourced by the scripts beside it: starts in the project's root, whatever the caller's folder.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

# Every core, for programs that do not find out by themselves.
jobs=$(nproc)
export jobs

# quietly LOG COMMAND... runs the command with its output in LOG, shown only when it fails.
quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    printf 'failed: %s\n' "$*" >&2
    return 1
  fi
}

# build PRESET [TARGET] configures and builds.
build() {
  quietly "build/logs/$1-configure.log" cmake --preset "$1" &&
    quietly "build/logs/$1-build.log" cmake --build --preset "$1" ${2:+--target "$2"}
}

# Every C++ file that is written by hand, NUL-terminated: cpp_files FOLDER...
cpp_files() {
  find "$@" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 | sort -z
}
