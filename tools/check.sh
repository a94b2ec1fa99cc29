# shellcheck shell=bash

# Part of ./dev: runs the stages of `./dev check`. A stage is a function stage_NAME, which returns a
# nonzero status if a check fails. Its output is written to build/log/check-NAME.log. If the stage fails,
# the errors and the last lines of this log are printed, and the other stages still run. The commands of a
# stage are joined with &&, because Bash ignores `set -e` in a function whose status is tested.
#
# The status 77 means that this machine cannot run a part of the stage. The last line of the output then
# begins with "skipped: " and contains the reason.

# These arrays list the stages of the three tiers. Each tier includes the stages of the previous one,
# except tidy-changed. The tier for CI instead runs clang-tidy on the library, programs and examples.
contributor_stages=(scripts format includes release tidy-changed)
ci_stages=(scripts format includes docs release headers windows package sanitize thread tidy cppcheck)
release_stages=("${ci_stages[@]}" static xvfb tidy-tests valgrind growth bench fuzz kills robustness
  browser mutation coverage)

stage_title() {
  case $1 in
    scripts) echo "shellcheck: every script" ;;
    format) echo "clang-format: every source" ;;
    includes) echo "includes: allowed modules and folders only" ;;
    docs) echo "Doxygen: every public name; links in documents" ;;
    release) echo "g++, shared library: build and tests" ;;
    headers) echo "clang: each public header alone" ;;
    windows) echo "MinGW: every source of the library compiles" ;;
    static) echo "clang -O2, static library: tests" ;;
    xvfb) echo "Qt companion: all tests in windows (Xvfb)" ;;
    package) echo "Debian packages: install, run, remove" ;;
    sanitize) echo "clang, static library, sanitizers: tests" ;;
    thread) echo "ThreadSanitizer: tests with several threads" ;;
    tidy) echo "clang-tidy: library, programs, examples" ;;
    tidy-changed) echo "clang-tidy: changed files" ;;
    tidy-tests) echo "clang-tidy: tests, fuzzers, benchmarks" ;;
    cppcheck) echo "cppcheck: library and programs" ;;
    valgrind) echo "valgrind: the panel of the example" ;;
    growth) echo "callgrind: instructions grow linearly" ;;
    bench) echo "Qt companion: time and memory of the panel" ;;
    fuzz) echo "every fuzzer for 30 minutes" ;;
    kills) echo "10,000 killed writers lose no data" ;;
    robustness) echo "failing system calls, kills, damaged stores" ;;
    browser) echo "Chromium: pages of the program" ;;
    mutation) echo "mutation testing for 30 minutes" ;;
    coverage) echo "coverage report" ;;
    *) return 1 ;;
  esac
}

check_usage() {
  cat <<'TEXT'
usage: ./dev check [--ci | --release] [--skip STAGE]... [STAGE...]

Runs the stages of a tier, or only the named stages. The default is the tier for contributors.
  --ci         run the stages that CI requires
  --release    run the stages that a release requires
  --skip STAGE skip a stage
  --list       print all stages
TEXT
}

stage_scripts() {
  # Checks files named *.sh or *.bash, files without a suffix that start with #!, and files in .ci/.
  local scripts=() file
  while IFS= read -r -d '' file; do
    case $file in
      *.sh | *.bash) scripts+=("$file") ;;
      *.*) [[ $file == .ci/* ]] && scripts+=("$file") ;;
      *) [[ $(head -c 2 "$file") == '#!' ]] && scripts+=("$file") ;;
    esac
  done < <(list_files)
  shellcheck --external-sources "${scripts[@]}"
}

stage_format() { list_sources | xargs -0 clang-format --dry-run -Werror; }

stage_includes() { python3 tools/include_order.py; }

stage_release() { build_and_test release; }

# Compiles each public header on its own. Checks only the syntax, because a header generates no code. Uses
# only clang, because the builds compile the same headers with g++.
stage_headers() {
  list_files 'orn*.h' | grep -zv -e '/src/' -e '^ornwhatsnewqt/' | check_headers || return
  # Compile the headers of the Qt companion twice, because applications may use Qt with or without its
  # keywords and its implicit conversions.
  list_files 'ornwhatsnewqt/*.h' | grep -zv '/src/' | check_qt_headers || return
  list_files 'ornwhatsnewqt/*.h' | grep -zv '/src/' |
    check_qt_headers -DQT_NO_KEYWORDS -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII
}

# check_headers [OPTION...]: compiles each header in the NUL-separated list on standard input.
check_headers() {
  xargs -0 -n 1 -P "$(jobs_count)" clang++ -std=c++20 -fsyntax-only -Wall -Wextra -Werror "$@" \
    -I . -x c++ /dev/null -include
}

check_qt_headers() {
  local flags
  read -r -a flags <<<"$(pkg-config --cflags Qt6Widgets)"
  check_headers -fPIC "${flags[@]/#-I/-isystem}" "$@"
}

# Compiles the sources of the library for Windows. Checks only the syntax, because the libraries for
# Windows are not installed. The only headers of this system in the include path are ICU's headers, because
# they are the same on every system.
stage_windows() {
  mkdir -p build/windows/include &&
    ln -sfn /usr/include/unicode build/windows/include/unicode &&
    list_files 'orn*.cpp' | grep -zv '^ornwhatsnewqt/' |
    xargs -0 -n 10 -P "$(jobs_count)" bash -c 'compile_for_windows "$@"' bash
}

# compile_for_windows FILE...: compiles the files as one unit, because common headers take most of the time.
# In such a unit, g++ wrongly warns about classes that have members with types from an unnamed namespace.
# The preset "release", which compiles each file separately, keeps this warning and finds missing includes.
compile_for_windows() {
  printf '#include "%s"\n' "$@" |
    x86_64-w64-mingw32-g++-posix -std=c++20 -fsyntax-only -Wall -Wextra -Wshadow -Wconversion -Werror \
      -Wno-subobject-linkage -I . -isystem build/windows/include -DORNWHATSNEW_BUILDING \
      '-DORNWHATSNEW_COMMIT_BROWSER=""' '-DORNWHATSNEW_ISSUE_TRACKER=""' \
      '-DORNWHATSNEW_PRIVACY_PAGE=""' -x c++ -
}
export -f compile_for_windows

stage_static() { build_and_test static; }

# Builds the static library with clang, so that CI needs no separate builds to test clang and the static
# library. Skips the package tests, because they build hosts without sanitizers. Such hosts cannot link a
# library with sanitizers. Skips the schema test, because it runs the program 1,000 times, and the fuzzers
# test the same reader.
stage_sanitize() {
  ASAN_OPTIONS=strict_string_checks=1:detect_stack_use_after_return=1 \
  UBSAN_OPTIONS=print_stacktrace=1 \
    build_and_test sanitize --label-exclude 'package|schema'
}

stage_thread() {
  configure thread &&
    build thread --target orncore_tests ornappsupport_tests entry_point_tests &&
    run_tests thread --tests-regex "$thread_tests"
}

# This regular expression matches the tests of objects that several threads may use.
thread_tests='(AsyncRead|Executor|ValidateCommand|'
thread_tests+='CommandRegistry|InitializerRegistrar|SeveralThreads)'

stage_valgrind() {
  configure release && build release --target ornwhatsnew_program &&
    valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite \
      build/release/bin/ornwhatsnew show examples/herbarium/whatsnew.csv \
      --host examples/herbarium/internal.json --state :memory: --format json
}

# The preset "tidy" joins up to ten sources into one file, because clang-tidy spends most of its time on
# common headers. The preset "release" does not join the sources of the library and the programs, so it
# still finds missing includes.
stage_tidy() {
  configure tidy && make_qt_sources tidy || return
  local joined=() sources
  mapfile -t joined < <(compiled_files tidy | grep -v -e '/qrc_[a-z]*\.cpp$' -e '/mocs_compilation\.cpp$')
  sources=$(cat "${joined[@]}" | grep -c '^#include "/.*\.cpp"$')
  sources=$((sources + $(printf '%s\n' "${joined[@]}" | grep -c '\.cpp$')))
  echo "$sources files"
  ((sources > 0)) || { echo 'FAILED: no files' && return 1; }
  # Disable bugprone-suspicious-include, because the joined files include the sources.
  printf '%s\n' "${joined[@]}" | tidy_each tidy --checks=-bugprone-suspicious-include
}

stage_tidy-tests() { list_files 'tests/*.cpp' 'fuzz/*.cpp' 'benchmarks/*.cpp' | run_clang_tidy 1; }

# Checks the sources that differ from the main branch. For each header that differs, checks the source
# file and the test of the same name.
stage_tidy-changed() {
  local base file
  base=$(git merge-base HEAD origin/main 2>/dev/null || git merge-base HEAD main 2>/dev/null ||
    echo HEAD)
  { git diff --name-only "$base" && git ls-files --others --exclude-standard; } |
    while IFS= read -r file; do
      case $file in
        *.cpp) list_files "$file" ;;
        *.h) list_files "*/$(basename "$file" .h).cpp" "*/$(basename "$file" .h)Test.cpp" ;;
      esac
    done | sort -zu | run_clang_tidy 0
}

# Runs clang-tidy on the files in the NUL-separated list on standard input. Fails if it checks fewer than $1
# files. Uses the compile commands of the preset "tidy-single".
run_clang_tidy() {
  local minimum=$1 files=() compiled checked=()
  mapfile -d '' -t files
  if ((${#files[@]} > 0)); then
    configure tidy-single && make_qt_sources tidy-single || return
    # Omit sources that this build does not compile, because they have no compile command.
    compiled=$(compiled_files tidy-single)
    mapfile -t checked < <(printf '%s\n' "${files[@]/#/$root/}" |
      grep -xF -f <(printf '%s\n' "$compiled"))
  fi
  echo "${#checked[@]} files"
  ((${#checked[@]} >= minimum)) || { echo 'FAILED: too few files' && return 1; }
  printf '%s\n' "${checked[@]}" | tidy_each tidy-single
}

# tidy_each PRESET [OPTION...]: runs clang-tidy on each file in the list on standard input, which has one
# file name per line.
tidy_each() {
  local preset=$1
  shift
  xargs -r -d '\n' -n 1 -P "$(jobs_count)" clang-tidy --quiet -p "build/$preset" "$@"
}

# Prints the sources that a preset compiles.
compiled_files() { sed -n 's/^  "file": "\(.*\)"$/\1/p' "build/$1/compile_commands.json"; }

# Runs moc, because sources of the Qt companion include the files that moc generates. Does not build
# CMake's autogen targets, which also run moc, because they depend on the compiled library.
make_qt_sources() {
  find "build/$1" -name AutogenInfo.json -print0 | xargs -0 -I{} cmake -E cmake_autogen {} ''
}

# Suppresses passedByValue, because cppcheck mistakes iterators for large objects. clang-tidy reports
# large parameters that are passed by value.
stage_cppcheck() {
  mkdir -p build/cppcheck
  cppcheck --quiet --language=c++ --std=c++20 --enable=warning,performance,portability \
    --inline-suppr --error-exitcode=1 -j "$(jobs_count)" --cppcheck-build-dir=build/cppcheck \
    -I . --suppress=missingInclude --suppress=passedByValue --suppress='*:/usr/*' \
    --library=qt orncore ornappsupport ornui ornwhatsnew ornwhatsnewqt hosts
}

build_and_test() {
  local preset=$1
  shift
  configure "$preset" && build "$preset" && run_tests "$preset" "$@"
}

# Reads the log of a stage, and prints the summary that it contains. A summary is the number of tests, such
# as "412 tests", the number of files, or the reason why the stage was skipped. Prints nothing if the log
# contains no summary.
summary_of_log() {
  sed -n -e 's/^[0-9]*% tests passed, [0-9]* tests* failed out of \([0-9]*\)$/\1 tests/p' \
    -e '/^[0-9]* files$/p' -e 's/^skipped: //p' "$1" | tail -n 1
}

# Returns whether a skipped stage is a failure. This is true in CI, where the message about the skipped
# stage could remain unnoticed.
skipping_fails() { [[ ${CI:-} == true ]]; }

run_stage() {
  local stage=$1 log status=0 start=$SECONDS
  log=$(log_file "check-$stage")
  printf '%-12s %-48s ' "$stage" "$(stage_title "$stage")"
  # Use a subshell, so that a stage can neither set variables for the next stage nor end the script.
  ("stage_$stage") </dev/null >"$log" 2>&1 || status=$?
  if ((status == 77)) && skipping_fails; then
    echo "FAILED: CI must run this stage completely, or skip it with '--skip $stage'" >>"$log"
    status=1
  fi
  if ((status == 0)); then
    printf 'ok      %5d s  %s\n' $((SECONDS - start)) "$(summary_of_log "$log")"
  elif ((status == 77)); then
    printf 'SKIPPED %5d s  %s\n' $((SECONDS - start)) "$(summary_of_log "$log")"
  else
    printf 'FAILED  %5d s  %s\n' $((SECONDS - start)) "$log"
    show_failure "$log"
  fi
  return "$status"
}

# Prints at most 60 lines of a log that contain an error or a warning, and the last 30 lines of the log.
show_failure() {
  local log=$1
  {
    grep -nE '(error|warning|FAILED|ERROR|Failed|\*\*\*Exception|Sanitizer)' "$log" |
      grep -v 'warnings generated' | head -n 60 || true
    printf -- '--- last lines of %s\n' "$log"
    tail -n 30 "$log"
  } | sed 's/^/    /'
}

list_stages() {
  local stage
  for stage in "${release_stages[@]}" tidy-changed; do
    printf '%-12s %s\n' "$stage" "$(stage_title "$stage")"
  done
}

require_stage() {
  stage_title "$1" >/dev/null ||
    fail "unknown stage '$1'; run './dev check --list' for the list of stages"
}

select_stages() {
  selected_stages=()
  local skipped=' ' wanted=() tier=("${contributor_stages[@]}")
  while (($# > 0)); do
    case $1 in
      --list) list_stages && exit 0 ;;
      --help) check_usage && exit 0 ;;
      --ci) tier=("${ci_stages[@]}") ;;
      --release) tier=("${release_stages[@]}") ;;
      --skip)
        require_stage "${2:-}"
        skipped+="$2 "
        shift
        ;;
      *)
        require_stage "$1"
        wanted+=("$1")
        ;;
    esac
    shift
  done
  ((${#wanted[@]} > 0)) || wanted=("${tier[@]}")
  local stage
  for stage in "${wanted[@]}"; do
    [[ $skipped == *" $stage "* ]] || selected_stages+=("$stage")
  done
}

command_check() {
  select_stages "$@"
  ensure_packages check
  say "Checking: ${selected_stages[*]}"
  local failed=() skipped=() passed=() stage status start=$SECONDS
  for stage in "${selected_stages[@]}"; do
    status=0
    run_stage "$stage" || status=$?
    case $status in
      0) passed+=("$stage") ;;
      77) skipped+=("$stage") ;;
      *) failed+=("$stage") ;;
    esac
  done
  ((${#skipped[@]} == 0)) || say "Skipped, at least in part: ${skipped[*]}"
  ((${#failed[@]} == 0)) || fail "failed after $((SECONDS - start)) s: ${failed[*]}"
  say "Passed in $((SECONDS - start)) s: ${passed[*]}"
}
