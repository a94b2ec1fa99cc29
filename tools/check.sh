# shellcheck shell=bash
# Part of ./dev: the stages of `./dev check`. Each is a function stage_NAME that answers with its
# exit status; what it prints goes to build/log/check-NAME.log and is shown when it fails. A failed
# stage does not keep the others from running, which also means that the shell does not stop at a
# stage's first failing command: commands are chained with &&.

check_stages=(scripts format docs release headers static package sanitize thread valgrind growth fuzz
  tidy cppcheck)

stage_title() {
  case $1 in
    scripts) echo "shellcheck over every script" ;;
    format) echo "clang-format leaves no difference" ;;
    docs) echo "Doxygen: every public name has its comment" ;;
    release) echo "g++, shared libraries: build and all tests" ;;
    headers) echo "each public header compiles alone, both compilers" ;;
    static) echo "clang, static libraries: build and all tests" ;;
    package) echo "Debian packages, on a clean system and off again" ;;
    sanitize) echo "address, undefined: all but the package tests" ;;
    thread) echo "ThreadSanitizer: what several threads may call" ;;
    valgrind) echo "valgrind: the example's panel" ;;
    growth) echo "callgrind: tenfold rows within twelvefold work" ;;
    fuzz) echo "every fuzzer for some seconds" ;;
    tidy) echo "clang-tidy" ;;
    cppcheck) echo "cppcheck" ;;
    *) return 1 ;;
  esac
}

stage_scripts() {
  # Every script of ours: those named *.sh or *.bash, and those without a suffix that begin with #!.
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

stage_release() { build_and_test release; }

stage_headers() {
  configure release && build release --target all_verify_interface_header_sets &&
    configure static && build static --target all_verify_interface_header_sets
}

stage_static() { build_and_test static; }

# The consumers of the installed package are built without sanitizers, so they stay out.
stage_sanitize() {
  ASAN_OPTIONS=strict_string_checks=1:detect_stack_use_after_return=1 \
  UBSAN_OPTIONS=print_stacktrace=1 \
    build_and_test sanitize --label-exclude package
}

stage_thread() {
  configure thread &&
    build thread --target orncore_tests ornwhatsnew_tests &&
    TSAN_OPTIONS=suppressions=$PWD/cmake/ThreadSuppressions.txt \
      run_tests thread --tests-regex "$thread_tests"
}

# What runs beside the caller's thread, its one user, and what any number of threads may call.
thread_tests='(AsyncRead|Executor|RecycledMemory|ValidateWhatsNew|ValidateCommand|'
thread_tests+='CommandRegistry|InitializerRegistrar|LogTest|NoDestructor)'

stage_valgrind() {
  configure release && build release --target ornwhatsnew_program &&
    valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite \
      build/release/bin/ornwhatsnew show examples/herbarium/whatsnew.csv \
      --host examples/herbarium/internal.json --state :memory: --format json
}

# clang-tidy reads how each file is compiled from clang's own build.
stage_tidy() {
  configure static || return
  local patterns=()
  mapfile -d '' -t patterns < <(list_files '*.cpp')
  run-clang-tidy -quiet -j "$(jobs_count)" -p build/static "${patterns[@]/#/^$root/}"
}

# It takes an iterator for something large; clang-tidy judges parameters better.
stage_cppcheck() {
  mkdir -p build/cppcheck
  cppcheck --quiet --language=c++ --std=c++20 --enable=warning,performance,portability \
    --inline-suppr --error-exitcode=1 -j "$(jobs_count)" --cppcheck-build-dir=build/cppcheck \
    -I . --suppress=missingInclude --suppress=passedByValue --suppress='*:/usr/*' \
    orncore ornappsupport ornui ornwhatsnew hosts
}

build_and_test() {
  local preset=$1
  shift
  configure "$preset" && build "$preset" && run_tests "$preset" "$@"
}

# What a stage's log says about tests, such as "412 tests", or about what could not be tried.
summary_of_log() {
  sed -n -e 's/^[0-9]*% tests passed, [0-9]* tests* failed out of \([0-9]*\)$/\1 tests/p' \
    -e '/^skipped: /p' "$1" | tail -n 1
}

run_stage() {
  local stage=$1 log status=0 start=$SECONDS
  log=$(log_file "check-$stage")
  printf '%-9s %-50s ' "$stage" "$(stage_title "$stage")"
  # In a shell of its own: what a stage sets or exports ends with it.
  ("stage_$stage") </dev/null >"$log" 2>&1 || status=$?
  if ((status == 0)); then
    printf 'ok      %5d s  %s\n' $((SECONDS - start)) "$(summary_of_log "$log")"
  else
    printf 'FAILED  %5d s  %s\n' $((SECONDS - start)) "$log"
    show_failure "$log"
  fi
  return "$status"
}

# The part of a log that says what is wrong: the lines with complaints, or else its end.
show_failure() {
  local log=$1
  {
    grep -nE '(error|warning|FAILED|ERROR|Failed|\*\*\*Exception|Sanitizer)' "$log" |
      grep -v 'warnings generated' | head -n 60 || true
    printf -- '--- the end of %s\n' "$log"
    tail -n 30 "$log"
  } | sed 's/^/    /'
}

select_stages() {
  selected_stages=()
  local skipped=' ' wanted=()
  while (($# > 0)); do
    case $1 in
      --list)
        local stage
        for stage in "${check_stages[@]}"; do printf '%-9s %s\n' "$stage" "$(stage_title "$stage")"; done
        exit 0
        ;;
      --skip)
        stage_title "${2:-}" >/dev/null || fail "--skip needs a stage: ${check_stages[*]}"
        skipped+="$2 "
        shift
        ;;
      *)
        stage_title "$1" >/dev/null || fail "there is no stage \"$1\"; they are: ${check_stages[*]}"
        wanted+=("$1")
        ;;
    esac
    shift
  done
  ((${#wanted[@]} > 0)) || wanted=("${check_stages[@]}")
  local stage
  for stage in "${wanted[@]}"; do
    [[ $skipped == *" $stage "* ]] || selected_stages+=("$stage")
  done
}

command_check() {
  select_stages "$@"
  ensure_packages check
  say "Checking: ${selected_stages[*]} (all stages together: half an hour on two cores)"
  local failed=() stage start=$SECONDS
  for stage in "${selected_stages[@]}"; do
    run_stage "$stage" || failed+=("$stage")
  done
  ((${#failed[@]} == 0)) || fail "failed after $((SECONDS - start)) s: ${failed[*]}"
  say "Passed in $((SECONDS - start)) s: ${selected_stages[*]}"
}
