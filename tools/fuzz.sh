# shellcheck shell=bash
# Part of ./dev: running the fuzzers. The corpus that they build is kept in build/fuzz/corpus for the
# next run; inputs that break a property go to build/fuzz/finds.

fuzz_targets=(data-file stored-state localiser-texts utf-conversions host-description styled-segments
  console-lines terminal-output)

# Longer inputs reach no new code, but make the reference implementation slow.
longest_input=4096

fuzz_usage() {
  cat <<TEXT
usage: ./dev fuzz [TARGET...] [SECONDS]

Runs the named fuzz targets, or all of them, one after the other, each for SECONDS (default: 60).
  --long   30 minutes each, as many at a time as there are cores
  --list   prints the targets
TEXT
}

build_fuzzers() {
  configure fuzz && build fuzz --target "${fuzz_targets[@]/#/fuzz_}"
}

# Runs one target. libFuzzer ends at the first finding, which its log describes.
fuzz_target() {
  local target=$1 seconds=$2
  local corpus=build/fuzz/corpus/$target finds=build/fuzz/finds/$target
  mkdir -p "$corpus" "$finds"
  ASAN_OPTIONS=malloc_context_size=5 UBSAN_OPTIONS=print_stacktrace=1 \
    "build/fuzz/bin/fuzz_$target" "$corpus" "fuzz/seeds/$target" \
    -dict="fuzz/dictionaries/$target.dict" -artifact_prefix="$finds/" \
    -max_total_time="$seconds" -max_len=$longest_input -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 </dev/null >"$(log_file "fuzz-$target")" 2>&1
}

# Prints a target's line of the report: executions, covered edges, size of the corpus, result.
report_target() {
  local target=$1 status=$2 log executions coverage inputs verdict=ok
  log=$(log_file "fuzz-$target")
  executions=$(sed -n 's/^stat::number_of_executed_units: //p' "$log")
  coverage=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
  inputs=$(find "build/fuzz/corpus/$target" -type f | wc -l)
  ((status == 0)) || verdict="FINDING, see $log"
  printf '%-17s %11s executions %6s edges %6s inputs  %s\n' \
    "$target" "${executions:-?}" "${coverage:-?}" "$inputs" "$verdict"
}

# Runs targets in parallel and reports each. Fails if there is a finding.
fuzz_targets_for() {
  local seconds=$1 at_a_time=$2 failed=0 running=() target
  shift 2
  for target in "$@"; do
    # All run for the same time, so the one that started first ends first.
    if ((${#running[@]} >= at_a_time)); then
      wait "${running[0]}" || failed=1
      running=("${running[@]:1}")
    fi
    fuzz_and_report "$target" "$seconds" &
    running+=($!)
  done
  local process
  for process in "${running[@]}"; do wait "$process" || failed=1; done
  return "$failed"
}

fuzz_and_report() {
  local status=0
  fuzz_target "$@" || status=$?
  report_target "$1" "$status"
  return "$status"
}

require_target() {
  local target
  for target in "${fuzz_targets[@]}"; do
    [[ $target != "$1" ]] || return 0
  done
  fail "there is no fuzz target '$1'; the targets are: ${fuzz_targets[*]}"
}

command_fuzz() {
  local seconds=60 at_a_time=1 targets=() argument
  for argument in "$@"; do
    case $argument in
      --list) printf '%s\n' "${fuzz_targets[@]}" && exit 0 ;;
      --help) fuzz_usage && exit 0 ;;
      --long) seconds=1800 at_a_time=$(jobs_count) ;;
      [0-9]*) seconds=$argument ;;
      *) require_target "$argument" && targets+=("$argument") ;;
    esac
  done
  ((${#targets[@]} > 0)) || targets=("${fuzz_targets[@]}")
  ensure_packages check
  build_fuzzers
  say "Fuzzing ${#targets[@]} targets, $seconds seconds each"
  fuzz_targets_for "$seconds" "$at_a_time" "${targets[@]}" ||
    fail "there are findings; see docs/fuzzing.md for how to make a regression test of one"
}

# The stage of ./dev check.
stage_fuzz() { build_fuzzers && fuzz_targets_for 1800 "$(jobs_count)" "${fuzz_targets[@]}"; }
