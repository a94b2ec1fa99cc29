# shellcheck shell=bash
# Part of ./dev: the quality of the tests: coverage, mutation testing, killed programs.

# The library and the programs; tests are not measured.
measured_folders=(orncore ornappsupport ornui ornwhatsnew hosts)

command_coverage() {
  ensure_packages check
  configure coverage
  say "Building and running the tests with coverage (first time: 5 to 10 minutes)"
  build coverage
  # Coverage counts accumulate, and those of an earlier build would remain.
  find build/coverage -name '*.gcda' -delete
  # Programs that switch to the user nobody cannot write their counts and report that on stderr, which
  # these tests compare.
  run_tests coverage --label-exclude package \
    --exclude-regex 'ProgramFileFaultTest.*(WithoutPermission|MayNotBeWritten)'
  local filters=() folder
  for folder in "${measured_folders[@]}"; do filters+=(--filter "$folder/"); done
  mkdir -p build/coverage/report
  # Every call has a branch for exceptions. The fault tests cover the relevant ones; no test could
  # cover all.
  gcovr --root . "${filters[@]}" --exclude-throw-branches --exclude-unreachable-branches \
    --sort-percentage --txt build/coverage/report/summary.txt \
    --html-details build/coverage/report/index.html --json build/coverage/report/coverage.json \
    --print-summary build/coverage
  say "Per file: build/coverage/report/summary.txt; per line: build/coverage/report/index.html"
}

# Skips mutants that have a result; tests/mutation/run.py --help lists the options.
command_mutation() {
  ensure_packages check
  nice -n 10 python3 tests/mutation/run.py "$@"
}

# The tests kill a few hundred processes each; this command kills more. It runs the programs directly,
# because CTest would stop them at the timeout of the tests.
command_kills() {
  local kills=${1:-10000}
  (($# <= 1)) || fail "'kills' takes one number; run './dev help' for usage"
  [[ $kills =~ ^[1-9][0-9]{0,6}$ ]] || fail "'$kills' is not a number of kills"
  ensure_packages build
  configure release
  say "Building the tests in build/release"
  build release --target hosts_common_tests hosts_console_tests
  say "Killing $kills programs, and as many writers of the state store"
  kill_in hosts_common_tests StateStoreKill "$kills"
  kill_in hosts_console_tests ProgramKillTest "$kills"
}

# Runs the test "EveryKill..." of a suite and prints its line with the counts.
kill_in() {
  local program=$1 suite=$2 kills=$3 log
  log=$(log_file "kills-$suite")
  if ! ORNWHATSNEW_TEST_KILLS=$kills "build/release/bin/$program" \
    --gtest_filter="$suite.EveryKill*" >"$log" 2>&1; then
    cat "$log" >&2
    fail "data was lost; see $log"
  fi
  printf '%-17s %s\n' "$suite" "$(grep -E '^[0-9]+ killed, ' "$log")"
}

# The stages of ./dev check --release.
stage_kills() { command_kills 10000; }
stage_mutation() { command_mutation --minutes 30; }
stage_coverage() { command_coverage; }
