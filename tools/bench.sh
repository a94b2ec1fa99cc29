# shellcheck shell=bash

# Part of ./dev: runs the benchmarks. Also checks that instruction counts grow about linearly with the size
# of data files, host descriptions and state stores.

bench_subjects=(cutting load memory identity news display state keyorder start lint panel)

bench_usage() {
  cat <<TEXT
usage: ./dev bench [SUBJECT...]

Runs the benchmarks of the named subjects, or of all subjects. Prints a table with the library's time,
the time of a hand-written baseline, and the ratio of these times. See docs/performance.md.
  --list   print the subjects
TEXT
}

require_subject() {
  local subject
  for subject in "${bench_subjects[@]}"; do
    [[ $subject != "$1" ]] || return 0
  done
  fail "unknown subject '$1'; the subjects are: ${bench_subjects[*]}"
}

# Runs the benchmarks of a subject and their baselines in random order, so that other load on the machine
# affects all of them equally. StartBenchmark.cpp and PanelBenchmark.cpp set their own numbers of
# repetitions.
run_benchmark() {
  local subject=$1
  "build/bench/bin/benchmark_$subject" --benchmark_repetitions=9 --benchmark_min_time=0.05 \
    --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
    --benchmark_out_format=json --benchmark_out="build/bench/results/$subject.json" \
    </dev/null >"$(log_file "bench-$subject")" 2>&1 ||
    { cat "$(log_file "bench-$subject")" >&2 && fail "the benchmark '$subject' failed"; }
}

# Checks the status of each command, because Bash ignores `set -e` when the stage "bench" calls this
# function.
command_bench() {
  local subjects=() subject results=()
  for subject in "$@"; do
    case $subject in
      --list) printf '%s\n' "${bench_subjects[@]}" && exit 0 ;;
      --help) bench_usage && exit 0 ;;
      *) require_subject "$subject" && subjects+=("$subject") ;;
    esac
  done
  ((${#subjects[@]} > 0)) || subjects=("${bench_subjects[@]}")
  ensure_packages bench || return
  configure bench || return
  say "Building the benchmarks in build/bench (first time: 2 to 4 minutes on two cores)"
  build bench --target benchmarks >&2 || return
  mkdir -p build/bench/results || return
  for subject in "${subjects[@]}"; do
    say "Measuring: $subject"
    run_benchmark "$subject"
    results+=("build/bench/results/$subject.json")
  done
  python3 benchmarks/table.py "${results[@]}" | tee build/bench/table.md || return
  say "Wrote the table to build/bench/table.md and all measurements to build/bench/results/"
}

# Implements the stage "bench" of ./dev check. Fails if the benchmark of the panel fails. Does not fail if
# the benchmark misses a goal, because times differ between machines.
stage_bench() { command_bench panel; }

# Implements the stage "growth" of ./dev check. Counts instructions, because run times depend on other load
# on the machine.
stage_growth() {
  configure bench && build bench --target benchmarks && count_instructions 1000 &&
    count_instructions 10000 || return
  local function status=0
  for function in InitWithData GetFormattedTextForDisplay GetLayoutForDisplay RefreshInternalSeenState \
    IsAnythingNew; do
    require_linear "$function" || status=1
  done
  local shape
  for shape in objects empty-objects texts duplicates duplicate-objects late-duplicate deep long-paths \
    state-texts state-empty-arrays state-nested-arrays; do
    require_linear_bytes json_growth_probe "$shape" 20 || status=1
  done
  for shape in closing-tags second-links quoted-link line-ends blank-line-ends many-fields long-name \
    long-grouping-id unknown-keys; do
    require_linear_bytes lint_growth_probe "$shape" 30 || status=1
  done
  return "$status"
}

# Runs growth_probe with the given number of rows and writes the instruction count of each function to a
# log file.
count_instructions() {
  local rows=$1 counts
  counts=$(log_file "growth-$rows")
  valgrind --tool=callgrind --callgrind-out-file="$counts.callgrind" \
    build/bench/bin/growth_probe "$rows" &&
    callgrind_annotate --inclusive=yes --threshold=100 "$counts.callgrind" >"$counts"
}

# Fails if a function executes more than twelve times as many instructions for 10,000 rows as for 1,000.
# Also fails if it executes at most 100,000 instructions for 1,000 rows, because such a low count means that
# the measurement is wrong.
require_linear() {
  local function=$1 few many
  few=$(instructions_in "$function" 1000) && many=$(instructions_in "$function" 10000)
  printf '%s: %s instructions for 1,000 rows, %s for 10,000\n' "$function" "$few" "$many"
  ((few > 100000)) || { echo "FAILED: implausibly few instructions" && return 1; }
  ((many <= 12 * few)) || { echo "FAILED: more than twelve times as many instructions" && return 1; }
}

# Prints the number of instructions that a method of FeatureListData and its callees executed. A line of
# callgrind_annotate looks like " 6,139,544 (22.35%)  ???:NAME(...". A name can have the suffix
# "[abi:cxx11]".
instructions_in() {
  local function=$1 rows=$2 line
  line=$(grep -m 1 ":ornwhatsnew::FeatureListData::$function\(\[abi:cxx11\]\)\?(" "$(log_file "growth-$rows")")
  line=${line%%(*}
  echo "${line//[, ]/}"
}

# Fails if the measured functions of a probe need more than 11 times as many instructions for 1 MB as for
# 100 KB. Also fails if they need more than the given number of bytes of memory for each byte of the input.
require_linear_bytes() {
  local probe=$1 shape=$2 memory=$3 few many bytes peak
  read -r few bytes peak <<<"$(measure_bytes "$probe" "$shape" 100000)"
  read -r many bytes peak <<<"$(measure_bytes "$probe" "$shape" 1000000)"
  printf '%s: %s instructions for 100 KB, %s for 1 MB; peak of %s bytes for %s bytes\n' \
    "$shape" "$few" "$many" "$peak" "$bytes"
  ((bytes >= 1000000)) || { echo "FAILED: the probe did not run" && return 1; }
  ((many <= 11 * few)) || { echo "FAILED: more than 11 times as many instructions" && return 1; }
  ((peak <= memory * bytes)) || { echo "FAILED: more than $memory bytes of memory per byte" && return 1; }
}

# Runs a probe on input of the given shape and size. Prints the number of instructions that the measured
# functions and their callees execute. Then prints the actual size of the input and the peak memory use,
# both in bytes.
measure_bytes() {
  local probe=$1 shape=$2 bytes=$3 counts
  counts=$(log_file "growth-$shape-$bytes")
  local sizes
  sizes=$(valgrind --tool=callgrind --callgrind-out-file="$counts.callgrind" --collect-atstart=no \
    --toggle-collect='hosts::common::ParseHostDescription*' --toggle-collect='hosts::common::ParseState*' \
    --toggle-collect='hosts::author::LintDataFile*' --toggle-collect='hosts::author::FixDataFile*' \
    --toggle-collect='hosts::console::LintText*' \
    "build/bench/bin/$probe" "$shape" "$bytes" 2>"$counts") &&
    echo "$(sed -n 's/^summary: //p' "$counts.callgrind") $sizes"
}
