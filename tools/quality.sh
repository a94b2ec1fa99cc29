# shellcheck shell=bash
# Part of ./dev: how well the tests look - what they run through, and what they notice.

# The library and the platform; programs and tests are not measured.
measured_folders=(orncore ornappsupport ornui ornwhatsnew)

command_coverage() {
  ensure_packages check
  configure coverage
  say "Building and running the tests with coverage (first time: 5 to 10 minutes)"
  build coverage
  # Counts are added up from run to run; those of an earlier build would stay.
  find build/coverage -name '*.gcda' -delete
  run_tests coverage --label-exclude package
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
