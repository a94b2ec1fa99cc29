# shellcheck shell=bash

# Part of ./dev: measures coverage, and runs mutation testing, the kill tests, the robustness tests, and the
# tests in a virtual X server and in Chromium. A kill test kills programs at random moments. The robustness
# tests use failing system calls, damaged stores and unexpected files.

# The coverage report includes only these folders, which contain no tests.
measured_folders=(orncore ornappsupport ornui ornwhatsnew hosts)

command_coverage() {
  no_arguments coverage "$@"
  ensure_packages check
  say "Building and running the tests with coverage (first time: 10 to 15 minutes)"
  measure_coverage
  say "Per file: build/coverage/report/summary.txt; per line: build/coverage/report/index.html"
}

# Runs the tests and writes the coverage report. Passes its arguments to gcovr.
measure_coverage() {
  configure coverage && build coverage || return
  # Delete the counts of earlier runs, because a run adds its counts to them.
  find build/coverage -name '*.gcda' -delete
  # Skip tests in which the program cannot write the coverage counts, because it runs as the user nobody or
  # because it may not write files. The program then prints an error that the tests do not expect.
  run_tests coverage --label-exclude package \
    --exclude-regex 'ProgramFileFaultTest.*WithoutPermission|MessagesNameTheFileOnAFullDisk' || return
  local filters=() folder
  for folder in "${measured_folders[@]}"; do filters+=(--filter "$folder/"); done
  mkdir -p build/coverage/report
  # Exclude the branches for exceptions, because every call has such a branch and tests cannot cover
  # all of them. The fault tests cover the relevant branches. Exclude portable_file_tests, because this
  # program compiles a different part of RegularFile.cpp from the library. gcovr cannot merge their counts.
  gcovr --root . "${filters[@]}" --exclude-throw-branches --exclude-unreachable-branches \
    --exclude-directories '.*portable_file_tests.*' \
    --sort-percentage --txt build/coverage/report/summary.txt \
    --html-details build/coverage/report/index.html --json build/coverage/report/coverage.json \
    --print-summary "$@" build/coverage
}

# Tests the mutants that have no result yet. Run './dev mutation --help' for the options.
command_mutation() {
  ensure_packages check
  nice -n 10 python3 tests/mutation/run.py "$@"
}

# Runs the kill tests with more kills than './dev test'. Runs the test programs directly, because these
# tests take longer than the time limit of CTest.
command_kills() {
  local kills=${1:-10000}
  (($# <= 1)) || fail "'kills' takes one number; run './dev help' for usage"
  [[ $kills =~ ^[1-9][0-9]{0,6}$ ]] || fail "invalid number of kills '$kills'"
  ensure_packages build
  configure release
  say "Building the tests in build/release"
  build release --target hosts_common_tests hosts_console_tests
  say "Killing $kills programs, and as many writers of the state store"
  kill_in hosts_common_tests StateStoreKill "$kills"
  kill_in hosts_console_tests ProgramKillTest "$kills"
}

# Runs the tests "EveryKill*" of a suite. Prints the line of their output that contains the number of
# kills.
kill_in() {
  local program=$1 suite=$2 kills=$3 log
  log=$(log_file "kills-$suite")
  if ! ORNWHATSNEW_TEST_KILLS=$kills "build/release/bin/$program" \
    --gtest_filter="$suite.EveryKill*" >"$log" 2>&1; then
    cat "$log" >&2
    fail "the suite '$suite' failed; see $log"
  fi
  printf '%-17s %s\n' "$suite" "$(grep -E '^[0-9]+ killed, ' "$log")"
}

# Runs the program with failing system calls, kills, damaged stores and unexpected files. Run
# './dev robustness --help' for the options.
command_robustness() {
  ensure_packages robustness
  configure release
  say "Building the program and its tests in build/release"
  build release --target ornwhatsnew_program hosts_console_tests
  nice -n 10 python3 tests/hosts/robustness/run.py "$@"
}

# Tests that four programs can change the settings of the Qt companion at the same time. Each program
# changes the settings 500 times.
write_settings_in_several_programs() {
  build release --target ornwhatsnewqt_tests &&
    ORNWHATSNEWQT_TEST_ROUNDS=500 build/release/bin/ornwhatsnewqt_tests SettingsStoreProgramsTest
}

# Runs the tests of the Qt companion in a virtual X server, where the tests open real windows. './dev test'
# runs the same tests offscreen. In both cases, the tests do not use the settings of the user.
test_companion_in_windows() {
  local program=build/release/bin/ornwhatsnewqt_tests classes=() class home status=0
  configure release && build release --target ornwhatsnewqt_tests || return
  mapfile -t classes < <("$program" --list)
  ((${#classes[@]} > 0)) || { echo 'FAILED: no tests' && return 1; }
  home=$(mktemp -d)
  for class in "${classes[@]}"; do
    HOME=$home XDG_CONFIG_HOME=$home/.config LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb \
      xvfb-run --auto-servernum timeout 120 "$program" "$class" || status=1
  done
  rm -rf "$home"
  return "$status"
}

# The following functions are stages of ./dev check --release.
stage_xvfb() { ensure_packages xvfb && test_companion_in_windows; }
stage_kills() { command_kills 10000; }
stage_robustness() { command_robustness --seed 1 && write_settings_in_several_programs; }

# Tests the HTML pages that `ornwhatsnew` writes, in headless Chromium. Writes screenshots to
# build/browser/pages. Uses npm to download axe-core, which finds accessibility problems.
stage_browser() {
  local folder=build/browser axe=axe-core@4.10.3
  ensure_packages browser
  # Install npm only if it is missing. Debian's package of Node.js does not contain npm, but other packages
  # of Node.js do.
  command -v npm >/dev/null || install_packages npm
  mkdir -p "$folder"
  if ! npm install --prefix "$folder" --no-save --no-audit --no-fund "$axe"; then
    echo "skipped: npm cannot download $axe"
    return 77
  fi
  configure release && build release --target ornwhatsnew_program &&
    node tests/browser/run.mjs build/release/bin/ornwhatsnew examples/herbarium \
      "$folder/node_modules/axe-core/axe.min.js" "$folder/pages"
}

stage_mutation() { command_mutation --fresh --minutes 30; }
stage_coverage() { measure_coverage --fail-under-line 95; }
