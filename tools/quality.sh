# shellcheck shell=bash
# Part of ./dev: how well the tests look - what they run through, what they notice, and what they
# stand.

# The library and the platform; programs and tests are not measured.
measured_folders=(orncore ornappsupport ornui ornwhatsnew)

command_coverage() {
  ensure_packages check
  configure coverage
  say "Building and running the tests with coverage (first time: 5 to 10 minutes)"
  build coverage
  # Counts are added up from run to run; those of an earlier build would stay.
  find build/coverage -name '*.gcda' -delete
  # Programs that become nobody cannot write their counts, and say so where the tests look.
  run_tests coverage --label-exclude package \
    --exclude-regex 'ProgramFileFaultTest.*(WithoutPermission|MayNotBeWritten)'
  local filters=() folder
  for folder in "${measured_folders[@]}"; do filters+=(--filter "$folder/"); done
  mkdir -p build/coverage/report
  # Branches that only an exception takes exist at every call; the fault tests take those that
  # matter, and no test could take them all.
  gcovr --root . "${filters[@]}" --exclude-throw-branches --exclude-unreachable-branches \
    --sort-percentage --txt build/coverage/report/summary.txt \
    --html-details build/coverage/report/index.html --json build/coverage/report/coverage.json \
    --print-summary build/coverage
  say "Per file: build/coverage/report/summary.txt; per line: build/coverage/report/index.html"
}

# Goes on where the last run stopped; tests/mutation/run.py --help names the options.
command_mutation() {
  ensure_packages check
  nice -n 10 python3 tests/mutation/run.py "$@"
}

# The tests kill a few hundred processes each; this is for many more. The programs are run directly,
# since CTest would end them after the time that the few hundred are given.
command_kills() {
  local kills=${1:-10000}
  (($# <= 1)) || fail "kills takes one number; ./dev help lists the commands"
  [[ $kills =~ ^[1-9][0-9]{0,6}$ ]] || fail "\"$kills\" is no number of kills"
  ensure_packages build
  configure release
  say "Building the tests that kill into build/release"
  build release --target hosts_common_tests hosts_console_tests
  say "Killing $kills programs, and as many writers of the state store"
  kill_in hosts_common_tests StateStoreKill "$kills"
  kill_in hosts_console_tests ProgramKillTest "$kills"
}

# Runs the test "EveryKill..." of a suite and prints the line in which it reports its counts.
kill_in() {
  local program=$1 suite=$2 kills=$3 log
  log=$(log_file "kills-$suite")
  if ! ORNWHATSNEW_TEST_KILLS=$kills "build/release/bin/$program" \
    --gtest_filter="$suite.EveryKill*" >"$log" 2>&1; then
    cat "$log" >&2
    fail "something was lost; $log says what"
  fi
  printf '%-17s %s\n' "$suite" "$(grep -E '^[0-9]+ killed, ' "$log")"
}
