# shellcheck shell=bash

# Part of ./dev: runs the fuzzers. Each run extends the corpus in build/fuzz/corpus and writes its
# findings to build/fuzz/findings.

fuzz_targets=(data-file stored-state state-file localiser-texts utf-conversions host-description
  console-lines terminal-output panel-layout panel-renderers spreadsheet-import gettext-catalog
  lint)

# Prints the maximum length of the inputs of a target, in bytes. Longer inputs reach no new code. Targets
# that load a list several times have a lower limit, because long inputs would make them too slow.
longest_input() {
  case $1 in
    data-file | stored-state | localiser-texts | panel-layout) echo 1024 ;;
    *) echo 4096 ;;
  esac
}

# These options shorten the recorded call stacks of allocations, reduce the quarantine of freed memory, and
# switch off the filling of new memory. With the defaults, these features take a quarter of a fuzzer's time.
# To analyse a finding, run the fuzzer on its input without these options.
fuzz_asan_options=malloc_context_size=1:max_malloc_fill_size=0:quarantine_size_mb=1
fuzz_asan_options+=:thread_local_quarantine_size_kb=64

fuzz_usage() {
  cat <<TEXT
usage: ./dev fuzz [TARGET...] [SECONDS]

Runs the named targets, or all targets, one after the other. Each target runs for SECONDS (default: 60).
  --long   run each target for 30 minutes, in parallel, one target per core
  --list   print the targets
TEXT
}

build_fuzzers() {
  configure fuzz && build fuzz --target "${fuzz_targets[@]/#/fuzz_}"
}

# Runs one target. libFuzzer stops at the first finding and describes it in the log.
fuzz_target() {
  local target=$1 seconds=$2
  local corpus=build/fuzz/corpus/$target findings=build/fuzz/findings/$target
  mkdir -p "$corpus" "$findings"
  ASAN_OPTIONS=$fuzz_asan_options UBSAN_OPTIONS=print_stacktrace=1 \
    "build/fuzz/bin/fuzz_$target" "$corpus" "fuzz/seeds/$target" \
    -dict="fuzz/dictionaries/$target.dict" -artifact_prefix="$findings/" \
    -max_total_time="$seconds" -max_len="$(longest_input "$target")" -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 </dev/null >"$(log_file "fuzz-$target")" 2>&1
}

# Prints one line about the run of a target: the executions in total and per second, the number of covered
# edges, the number of inputs in the corpus, and the result.
report_target() {
  local target=$1 status=$2 log executions speed coverage inputs verdict=ok
  log=$(log_file "fuzz-$target")
  executions=$(sed -n 's/^stat::number_of_executed_units: //p' "$log")
  speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
  coverage=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
  inputs=$(find "build/fuzz/corpus/$target" -type f | wc -l)
  ((status == 0)) || verdict="FINDING, see $log"
  printf '%-17s %11s executions %6s per s %6s edges %6s inputs  %s\n' \
    "$target" "${executions:-?}" "${speed:-?}" "${coverage:-?}" "$inputs" "$verdict"
}

# fuzz_targets_for SECONDS COUNT TARGET...: runs the targets, COUNT in parallel, and prints a line about
# each. Fails if there is a finding.
fuzz_targets_for() {
  local seconds=$1 at_a_time=$2 failed=0 running=() target
  shift 2
  for target in "$@"; do
    # Wait for the target that started first. It ends first, because all targets run for the same time.
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
  fail "unknown fuzz target '$1'; the targets are: ${fuzz_targets[*]}"
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
    fail "there are findings; docs/fuzzing.md explains how to add a regression test for a finding"
}

# Implements the stage "fuzz" of ./dev check.
stage_fuzz() { build_fuzzers && fuzz_targets_for 1800 "$(jobs_count)" "${fuzz_targets[@]}"; }
