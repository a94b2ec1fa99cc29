# shellcheck shell=bash
# Part of ./dev: saying what happens, configuring, building, running tests.

# One line of progress, on stderr so that a program's own output stays clean.
say() { printf '== %s\n' "$*" >&2; }

fail() {
  printf './dev: %s\n' "$*" >&2
  exit 1
}

jobs_count() { getconf _NPROCESSORS_ONLN; }

# A compiler cache is used when there is one, and never needed.
# What one clone has compiled serves the others, so paths count from the clone's root.
use_compiler_cache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD} CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-true}
}

# Configures a preset when it is new or the presets have changed; later changes to the CMake files
# are noticed by the build itself.
configure() {
  local preset=$1
  if [[ ! -f build/$preset/build.ninja || CMakePresets.json -nt build/$preset/build.ninja ]]; then
    say "Configuring build/$preset"
    cmake --preset "$preset" -Wno-dev >"$(log_file "configure-$preset")" 2>&1 || {
      cat "$(log_file "configure-$preset")" >&2
      # A half-made folder would be taken for a configured one next time.
      rm -f "build/$preset/build.ninja" "build/$preset/CMakeCache.txt"
      fail "could not configure the preset $preset; the message above says why"
    }
  fi
}

build() {
  local preset=$1
  shift
  cmake --build --preset "$preset" --parallel "$(jobs_count)" "$@"
}

run_tests() {
  local preset=$1
  shift
  local progress=()
  if [[ -t 1 ]]; then progress=(--progress); fi
  ctest --preset "$preset" --parallel "$(jobs_count)" --no-tests=error "${progress[@]}" "$@"
}

log_file() {
  mkdir -p build/log
  printf 'build/log/%s.log' "$1"
}

# Our own sources, NUL-separated: all that git knows or would add.
list_sources() { list_files '*.h' '*.cpp'; }

list_files() {
  git ls-files -z --cached --others --exclude-standard -- "$@" |
    while IFS= read -r -d '' file; do
      # A file that was deleted but not yet committed is still listed.
      if [[ -f $file ]]; then printf '%s\0' "$file"; fi
    done
}
