# shellcheck shell=bash

# Part of ./dev: defines functions that print messages, configure and build presets, run tests, and list
# files.

# Prints a progress message to stderr, because stdout may contain the output of a program.
say() { printf '== %s\n' "$*" >&2; }

fail() {
  printf './dev: %s\n' "$*" >&2
  exit 1
}

jobs_count() { getconf _NPROCESSORS_ONLN; }

# Makes the builds use ccache if it is installed. For example, the build of the Debian packages then reuses
# the objects of the build in build/release. Makes ccache store paths relative to the root of the clone, so
# that several clones share the cached objects.
use_compiler_cache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD} CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-true}
  # ccache stores objects that use a precompiled header only with these settings.
  local sloppiness=pch_defines,time_macros,include_file_mtime,include_file_ctime
  export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-$sloppiness}
}

# Configures a preset if it has no build folder yet, or if CMakePresets.json has changed. The build runs
# CMake again if another CMake file has changed.
configure() {
  local preset=$1
  use_compiler_cache
  if [[ ! -f build/$preset/build.ninja || CMakePresets.json -nt build/$preset/build.ninja ]]; then
    say "Configuring build/$preset"
    cmake --fresh --preset "$preset" -Wno-dev >"$(log_file "configure-$preset")" 2>&1 || {
      cat "$(log_file "configure-$preset")" >&2
      # Delete these files, so that the next run does not assume that the folder is configured.
      rm -f "build/$preset/build.ninja" "build/$preset/CMakeCache.txt"
      fail "cannot configure the preset '$preset'; see the message above"
    }
  fi
}

build() {
  local preset=$1
  shift
  cmake --build --preset "$preset" --parallel "$(jobs_count)" "$@"
}

# Runs one test more than the machine has processors, because some tests wait for a lock or a program.
run_tests() {
  local preset=$1
  shift
  local progress=()
  if [[ -t 1 ]]; then progress=(--progress); fi
  ctest --preset "$preset" --parallel $(($(jobs_count) + 1)) --no-tests=error "${progress[@]}" "$@"
}

log_file() {
  mkdir -p build/log
  printf 'build/log/%s.log' "$1"
}

# Prints the C++ files of this project, NUL-separated.
list_sources() { list_files '*.h' '*.cpp'; }

# Prints the files that match the patterns and that git tracks or would add, NUL-separated.
list_files() {
  git ls-files -z --cached --others --exclude-standard -- "$@" |
    while IFS= read -r -d '' file; do
      # git still lists a deleted file until the deletion is staged.
      if [[ -f $file ]]; then printf '%s\0' "$file"; fi
    done
}
