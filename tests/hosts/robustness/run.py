#!/usr/bin/env python3
"""Tests the program `ornwhatsnew` in adverse conditions.

A store must contain the old or the new state. It must contain everything that a command has
reported as stored. Each command must end in time, and no control character must reach the output.
The parts are:

  errors      each system call of each command fails once, with each of several errors
  kills       each command is killed at each of its system calls
  concurrent  several programs use one store at the same time
  stores      each command runs on damaged stores
  files       each command runs with files of every kind next to its store
  worlds      the status agrees with the panel for random data files and hosts

The tool does not depend on the format of the store. It reads stores with `ornwhatsnew state show`.
"""

import argparse
import os
import queue
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from collections import Counter
from pathlib import Path

import concurrency
import damage
import injection
from program import Program, require

ROOT = Path(__file__).resolve().parents[3]

# The number of rounds or random inputs of each part. The option `--every N` divides this number by N. The
# parts `errors` and `kills` have no such number, because they test every N-th system call.
COUNTS = {"concurrent": 500, "stores": 1000, "files": 1000, "worlds": 700}
PARTS = ("errors", "kills", "concurrent", "stores", "files", "worlds")

# The property test of the part "worlds", and the environment variable with the number of random
# hosts.
WORLDS_TEST = "StatusPropertyTest.*"
WORLDS_VARIABLE = "ORNWHATSNEW_TEST_WORLDS"


class Run:
    """One run of the tool: its options, its temporary folder, and its failures."""

    def __init__(self, arguments, folder):
        self.arguments = arguments
        self.failures = 0
        self._folder = folder
        self._lock = threading.Lock()
        self._folders = 0

    def count(self, part):
        return max(1, COUNTS[part] // self.arguments.every)

    def seeds(self, part):
        return [f"{self.arguments.seed} {number}" for number in range(self.count(part))]

    def program(self):
        """Creates a folder. Returns a `Program` that stores its files there, and the folder."""
        with self._lock:
            self._folders += 1
            folder = self._folder / str(self._folders)
        folder.mkdir()
        return Program(self.arguments.program, folder), folder

    def check(self, name, work):
        """Calls `work` and returns its result. If a check fails, prints it and returns "FAILED"."""
        try:
            return work()
        except Exception as problem:  # pylint: disable=broad-exception-caught
            # Any exception is a failure. For example, a program that prints invalid JSON causes an
            # exception of the JSON parser.
            with self._lock:
                self.failures += 1
                text = f"FAILED {name}: {type(problem).__name__}: {problem}"
                print(text.translate(ESCAPES), flush=True)
            return "FAILED"

    def check_all(self, name, make_target, checks):
        """Runs checks in parallel. Prints how often each result occurred.

        A check is a pair: a description and a function that takes a target. Each thread has a
        separate target.
        """
        start = time.monotonic()
        waiting = queue.SimpleQueue()
        for check in checks:
            waiting.put(check)
        results = Counter()

        def work():
            target = make_target(*self.program())
            try:
                while True:
                    description, function = waiting.get_nowait()
                    result = self.check(f"{name}: {description}", lambda: function(target))
                    with self._lock:
                        results[result] += 1
            except queue.Empty:
                pass

        threads = [threading.Thread(target=self.check, args=(name, work))
                   for _ in range(self.arguments.jobs)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.report(name, results, start)
        count = sum(results.values())
        self.check(name, lambda: require(count == len(checks) > 0,
                                         f"{count} of {len(checks)} checks have a result"))

    def report(self, name, results, start):
        parts = ", ".join(f"{count} {result}" for result, count in sorted(results.items()))
        print(f"{name:34} {sum(results.values()):6} checks in {time.monotonic() - start:5.0f} s: "
              f"{parts}", flush=True)


# Maps control characters, except newlines, to escapes, for `str.translate`.
ESCAPES = {code: f"\\x{code:02x}" for code in (*range(10), *range(11, 32), *range(127, 160))}


def run_injection(run, part, make_checks):
    program, folder = run.program()
    for scenario in injection.scenarios(program, folder):
        def make_target(own_program, own_folder, scenario=scenario):
            return injection.Target(own_program, scenario, own_folder)
        calls = make_target(*run.program()).calls()
        run.check_all(f"{part}: {scenario.name}", make_target,
                      make_checks(calls, run.arguments.every))


def run_errors(run):
    run_injection(run, "errors", injection.error_checks)


def run_kills(run):
    run_injection(run, "kills", injection.kill_checks)


def run_concurrent(run):
    start = time.monotonic()
    rounds = concurrency.Rounds(*run.program(), run.arguments.seed)
    results = Counter()
    for number in range(run.count("concurrent")):
        def work(number=number):
            rounds.run(number)
            return f"rounds of {concurrency.PROGRAMS} programs"
        results[run.check(f"concurrent: round {number}", work)] += 1
    run.report("concurrent", results, start)


def run_stores(run):
    checks = [(f"seed {seed}", lambda target, seed=seed: target.check_store(seed))
              for seed in run.seeds("stores")]
    run.check_all("stores", damage.Damage, checks)


def run_files(run):
    checks = [(f"the store is {kind}",
               lambda target, kind=kind: target.check_special_store(kind))
              for kind in damage.KINDS]
    run.check_all("files: the store itself", damage.Damage, checks)
    checks = [(f"seed {seed}", lambda target, seed=seed: target.check_neighbours(seed))
              for seed in run.seeds("files")]
    run.check_all("files next to the store", damage.Damage, checks)


def run_worlds(run):
    """Runs the test with random hosts and data files, which is in hosts_console_tests."""
    tests = Path(run.arguments.program).with_name("hosts_console_tests")
    command = [tests, f"--gtest_filter={WORLDS_TEST}"]
    count = run.count("worlds")
    start = time.monotonic()

    def work():
        ended = subprocess.run(command, env={**os.environ, WORLDS_VARIABLE: str(count)},
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        output = ended.stdout.decode(errors="replace")
        # GoogleTest returns the exit status 0 even if no test matches the filter, so check the output too.
        require(ended.returncode == 0 and "[       OK ] StatusPropertyTest." in output,
                output[-3000:])
        return f"run with {count} worlds"
    run.report("worlds", Counter([run.check("worlds", work)]), start)


def parse_arguments():
    parser = argparse.ArgumentParser(
        description="Tests ornwhatsnew in adverse conditions: failing system calls, kills, "
                    "concurrent programs, damaged stores and unexpected files.")
    parser.add_argument("parts", nargs="*", metavar="PART",
                        help=f"one of: {', '.join(PARTS)}; default: all parts")
    parser.add_argument("--program", default=str(ROOT / "build/release/bin/ornwhatsnew"))
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--every", type=int, default=1, metavar="N",
                        help="run only every N-th check")
    arguments = parser.parse_args()
    for part in arguments.parts:
        if part not in PARTS:
            parser.error(f"unknown part '{part}'; the parts are: {', '.join(PARTS)}")
    return arguments


def main():
    arguments = parse_arguments()
    if shutil.which("strace") is None:
        sys.exit("robustness: strace is not installed; run './dev robustness'")
    print(f"seed {arguments.seed}", flush=True)
    with tempfile.TemporaryDirectory(prefix="orn-robustness-") as folder:
        run = Run(arguments, Path(folder))
        for part in arguments.parts or PARTS:
            run.check(part, lambda part=part: globals()[f"run_{part}"](run))
    sys.exit(1 if run.failures else 0)


if __name__ == "__main__":
    main()
