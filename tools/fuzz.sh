# shellcheck shell=bash
# Part of ./dev: running the fuzzers. What they find out is kept in build/fuzz/corpus for the next
# time; inputs that break a property go to build/fuzz/finds.

fuzz_doors=(data-file stored-state localiser-texts utf-conversions host-description styled-segments
  console-lines terminal-output)

# Longer inputs find nothing new, but slow the plain second implementation down.
longest_input=4096

fuzz_usage() {
  cat <<TEXT
usage: ./dev fuzz [DOOR...] [SECONDS]

Runs the fuzzers of these doors, or of all, one after the other; without SECONDS each for a minute.
  --long   30 minutes each, as many at a time as there are cores
  --list   names the doors
TEXT
}

build_fuzzers() {
  configure fuzz && build fuzz --target "${fuzz_doors[@]/#/fuzz_}"
}

# One door for so many seconds. libFuzzer ends at the first find; its log tells the rest.
fuzz_door() {
  local door=$1 seconds=$2
  local corpus=build/fuzz/corpus/$door finds=build/fuzz/finds/$door
  mkdir -p "$corpus" "$finds"
  ASAN_OPTIONS=malloc_context_size=5 UBSAN_OPTIONS=print_stacktrace=1 \
    "build/fuzz/bin/fuzz_$door" "$corpus" "fuzz/seeds/$door" \
    -dict="fuzz/dictionaries/$door.dict" -artifact_prefix="$finds/" \
    -max_total_time="$seconds" -max_len=$longest_input -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 </dev/null >"$(log_file "fuzz-$door")" 2>&1
}

# The door's line of the report: how much was run, how much code it reached, what was found.
report_door() {
  local door=$1 status=$2 log executions coverage inputs verdict=ok
  log=$(log_file "fuzz-$door")
  executions=$(sed -n 's/^stat::number_of_executed_units: //p' "$log")
  coverage=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
  inputs=$(find "build/fuzz/corpus/$door" -type f | wc -l)
  ((status == 0)) || verdict="FOUND, see $log"
  printf '%-17s %11s executions %6s edges %6s inputs  %s\n' \
    "$door" "${executions:-?}" "${coverage:-?}" "$inputs" "$verdict"
}

# Runs doors, so many at a time, and reports each. Fails when one found something.
fuzz_doors_for() {
  local seconds=$1 at_a_time=$2 failed=0 running=() door
  shift 2
  for door in "$@"; do
    # All run for the same time, so the first that began is the first to end.
    if ((${#running[@]} >= at_a_time)); then
      wait "${running[0]}" || failed=1
      running=("${running[@]:1}")
    fi
    fuzz_and_report "$door" "$seconds" &
    running+=($!)
  done
  local process
  for process in "${running[@]}"; do wait "$process" || failed=1; done
  return "$failed"
}

fuzz_and_report() {
  local status=0
  fuzz_door "$@" || status=$?
  report_door "$1" "$status"
  return "$status"
}

require_door() {
  local door
  for door in "${fuzz_doors[@]}"; do
    [[ $door != "$1" ]] || return 0
  done
  fail "there is no door \"$1\"; they are: ${fuzz_doors[*]}"
}

command_fuzz() {
  local seconds=60 at_a_time=1 doors=() argument
  for argument in "$@"; do
    case $argument in
      --list) printf '%s\n' "${fuzz_doors[@]}" && exit 0 ;;
      --help) fuzz_usage && exit 0 ;;
      --long) seconds=1800 at_a_time=$(jobs_count) ;;
      [0-9]*) seconds=$argument ;;
      *) require_door "$argument" && doors+=("$argument") ;;
    esac
  done
  ((${#doors[@]} > 0)) || doors=("${fuzz_doors[@]}")
  ensure_packages check
  build_fuzzers
  say "Fuzzing ${#doors[@]} doors, $seconds seconds each"
  fuzz_doors_for "$seconds" "$at_a_time" "${doors[@]}" ||
    fail "something was found; docs/fuzzing.md says how to make a test of it"
}

# The stage of ./dev check: a short run of every door.
stage_fuzz() { build_fuzzers && fuzz_doors_for 7 1 "${fuzz_doors[@]}"; }
