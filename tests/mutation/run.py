#!/usr/bin/env python3
"""Mutation testing: changes the library in one place at a time and sees whether a test notices.

Works on copies of the sources under build/mutation, one for each worker, built without optimisation
as shared libraries and with nearly all that is included compiled beforehand, so that a mutant costs
one short compilation and one small link. Each result is written to build/mutation/results.jsonl at
once, and a later run goes on where this one stopped. The order is random but always the same, so
that whatever was done is a fair sample of the whole.

Mutants that nothing can notice are listed in equivalent.txt, beside this file, with the reason.
"""

import argparse
import concurrent.futures
import fcntl
import json
import os
import queue
import re
import resource
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

from build_tree import BuildTree
from mutants import apply, find_mutants

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutation"
RESULTS = WORK / "results.jsonl"
EQUIVALENT = Path(__file__).resolve().parent / "equivalent.txt"
PRECOMPILED = Path(__file__).resolve().parent / "precompiled.h"

FOLDERS = ("ornwhatsnew", "orncore")
PROGRAMS = ("orncore_tests", "ornappsupport_tests", "ornwhatsnew_tests", "allocation_tests",
            "early_list_tests", "fault_tests", "scenario_runner")
MEMORY_LIMIT = 3 << 30

# Tests that go through every character take most of the time: they are asked only about the file
# that they are for, when its other tests have not noticed anything.
EXHAUSTIVE = ("RunIterator.ShortTexts*", "RunIterator.Random*", "FieldCleaner.LowersEvery*",
              "TextHelpers.LowerCase8LowersEvery*", "CaseMapping.*ForEveryCodePoint",
              "Conversion.TreatsAllShort*", "Conversion.KeepsEvery*")
# Comparisons with a plain second implementation notice nearly everything, and take seconds.
COMPARISONS = ("VisibilityGrid.*", "PlainPanel.*")
# Of the tests with faults, those that do not try every allocation.
FAULTS = ("CallbackTest.A*", "MemoryTest.CapturingAStyle", "MemoryOfCommandTest.ComesBackAndWorks*")


def fail(message):
    print(f"mutation: {message}", file=sys.stderr)
    sys.exit(1)


def run(command, folder, wall=None, cpu=None):
    """Exit status and output; None for a status that did not come in time."""
    def limit():
        os.setsid()
        if cpu is not None:
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_CPU, (cpu, cpu))
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=folder,
                          stdin=subprocess.DEVNULL, preexec_fn=limit) as process:
        try:
            output, _ = process.communicate(timeout=wall)
            return process.returncode, output.decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            process.communicate()
            return None, ""
        except BaseException:
            os.killpg(process.pid, 9)
            raise


def write_if_changed(path, content):
    """Files that are equal keep their time, so that nothing is built for them."""
    if path.is_file() and path.read_bytes() == content:
        return False
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)
    return True


def sync_sources(target):
    """Makes the copy equal to the work tree."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
        check=True, stdout=subprocess.PIPE).stdout.decode().split("\0")
    files = {name for name in listed if name and (ROOT / name).is_file()}
    for name in sorted(files):
        if write_if_changed(target / name, (ROOT / name).read_bytes()):
            shutil.copymode(ROOT / name, target / name)
    for path in [p for p in target.rglob("*") if p.is_file()]:
        if str(path.relative_to(target)) not in files:
            path.unlink()


def precompile():
    """What nearly every file includes; clang picks the one that fits from a folder."""
    header = WORK / "precompiled.h"
    output = WORK / "precompiled.h.pch"
    if not write_if_changed(header, PRECOMPILED.read_bytes()) and output.is_dir():
        return
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir()
    hidden = ["-fvisibility=hidden", "-fvisibility-inlines-hidden"]
    for name, flags in (("default", []), ("hidden", hidden)):
        status, message = run(
            ["clang++", "-std=c++20", "-O0", "-fPIC", "-w", "-DGTEST_HAS_PTHREAD=1", *flags, "-x",
             "c++-header", str(header), "-o", str(output / name)], WORK)
        if status != 0:
            shutil.rmtree(output)
            fail("cannot compile precompiled.h\n" + message)


def configure(folder):
    linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
    status, output = run([
        "cmake", "-G", "Ninja", "-S", str(folder / "source"), "-B", str(folder / "build"),
        "-Wno-dev", "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_COMPILER=clang++",
        f"-DCMAKE_CXX_FLAGS=-std=c++20 -O0 -g0 -w -fPIC -include {WORK / 'precompiled.h'}",
        f"-DCMAKE_EXE_LINKER_FLAGS={linker}", f"-DCMAKE_SHARED_LINKER_FLAGS={linker}",
        "-DORNWHATSNEW_SHARED=ON", "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
        "-DCMAKE_BUILD_RPATH_USE_ORIGIN=ON", "-DCMAKE_CXX_COMPILER_LAUNCHER=",
        "-DORNWHATSNEW_BUILD_EXAMPLES=OFF", "-DORNWHATSNEW_INSTALL=OFF",
        "-DORNWHATSNEW_WARNINGS_AS_ERRORS=OFF"], folder)
    if status != 0:
        fail("cannot configure\n" + output)


def clear_up(folder):
    """Puts the source back that a mutant had changed when the last run was ended in its middle; what
    was built of it is built anew."""
    for kept in folder.rglob("*.kept"):
        path = kept.with_name(kept.name.removesuffix(".kept"))
        if path.is_relative_to(folder / "source"):
            kept.rename(path)
        else:
            kept.unlink()
            path.unlink(missing_ok=True)


def prepare_tree():
    """A copy of the sources and an up-to-date build of it."""
    folder = WORK / "1"
    (folder / "source").mkdir(parents=True, exist_ok=True)
    clear_up(folder)
    sync_sources(folder / "source")
    configure(folder)
    status, output = run(["cmake", "--build", str(folder / "build"), "--parallel",
                          str(os.cpu_count()), "--target", *PROGRAMS], folder)
    if status != 0:
        fail("the unchanged sources do not build\n" + output[-3000:])
    return BuildTree(folder, PROGRAMS)


def suites_for(source, file):
    """The suites of the test files that are named after this file."""
    suites = set()
    for path in source.glob(f"tests/**/{Path(file).stem}Test.cpp"):
        suites |= set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", path.read_text(), re.M))
    return sorted(suites)


def test_commands(tree, file):
    """The tests that can notice a mutant of this file, those first that notice most in least time.
    """
    def unit_tests(program, tests, excluded=()):
        return [str(tree.build / "bin" / program), "--gtest_brief=1", "--gtest_fail_fast",
                "--gtest_filter=" + ":".join(tests) + "-" + ":".join(excluded)]
    scenarios = sorted(str(p) for p in (tree.source / "tests/conformance/scenarios").glob("*.json"))
    suites = suites_for(tree.source, file)
    programs = ["ornwhatsnew_tests"]
    if file.startswith("orncore"):
        programs = ["orncore_tests", "ornwhatsnew_tests", "ornappsupport_tests"]
    slow = EXHAUSTIVE + COMPARISONS
    commands = []
    if suites:
        commands.append(("own", unit_tests(programs[0], [s + ".*" for s in suites], slow)))
    commands += [(program, unit_tests(program, ["*"], slow)) for program in programs]
    commands.append(
        ("conformance", [str(tree.build / "bin/scenario_runner"), "--check", *scenarios]))
    commands += [(program, unit_tests(program, ["*"]))
                 for program in ("allocation_tests", "early_list_tests")]
    own_exhaustive = [test for test in EXHAUSTIVE if test.split(".")[0] in suites]
    if own_exhaustive:
        commands.append(("exhaustive", unit_tests(programs[0], own_exhaustive)))
    commands.append(("comparisons", unit_tests("ornwhatsnew_tests", COMPARISONS)))
    commands.append(("faults", unit_tests("fault_tests", FAULTS)))
    return commands


def measure_baseline(tree):
    """Limits of time for each test, from what it takes on the unchanged sources; all must pass."""
    limits = {}
    for name, command in test_commands(tree, "orncore"):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        start = time.monotonic()
        status, output = run(command, tree.build)
        if status != 0:
            fail(f"{name} fails without any mutant\n{output[-3000:]}")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        cpu = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        wall = time.monotonic() - start
        print(f"{name}: {cpu:.1f} s", flush=True)
        limits[name] = {"cpu": int(3 + 6 * cpu), "wall": 20 + 4 * wall}
    limits["own"] = limits["orncore_tests"]
    limits["exhaustive"] = {"cpu": 100, "wall": 500}
    return limits


def try_mutant(tree, mutant, limits):
    """What becomes of a mutant: killed, survived or invalid, and by which test."""
    tree.replace_source(mutant.file, apply(mutant, (tree.source / mutant.file).read_text()))
    try:
        units = tree.units_for(mutant.file)
        for unit in units:
            message = tree.make(unit)
            if message is not None:
                # An assertion of the compiler is a test like any other.
                by_assertion = "static_assert failed" in message
                return ("killed", "static_assert") if by_assertion else ("invalid", "")
        if tree.link(units) is not None:
            return "invalid", ""
        for name, command in test_commands(tree, mutant.file):
            status, _ = run(command, tree.build, **limits[name])
            if status is None or status in (-9, -24):
                return "killed", name + " (never ends)"
            if status != 0:
                return "killed", name
        return "survived", ""
    finally:
        tree.put_back()


def load_results():
    if not RESULTS.exists():
        return {}
    lines = RESULTS.read_text().splitlines()
    return {entry["id"]: entry for entry in map(json.loads, lines)}


class Equivalents:
    """What equivalent.txt lists; the line of code may hold the separator, the rest may not."""

    def __init__(self):
        self._known = set()
        for line in EQUIVALENT.read_text().splitlines():
            if line and not line.startswith("#"):
                file, rest = line.split(" || ", 1)
                text, replacement, _ = rest.rsplit(" || ", 2)
                self._known.add((file, text, replacement))

    def __contains__(self, mutant):
        return any((mutant.file, before, replacement) in self._known
                   for before in (mutant.before, "*")
                   for replacement in (mutant.replacement, "*"))


def all_mutants(root, pattern):
    mutants = []
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            name = str(path.relative_to(root))
            if path.suffix in (".cpp", ".h") and pattern in name:
                mutants += find_mutants(name, path.read_text())
    # A public header costs a build of nearly everything, so those come last.
    def is_public_header(mutant):
        return mutant.file.endswith(".h") and "/src/" not in mutant.file
    return sorted(mutants, key=lambda mutant: (is_public_header(mutant), mutant.identity))


def describe(entry):
    return (f'{entry["file"]}:{entry["line"]}:{entry["column"]}  {entry["before"]}\n'
            f'    {entry["changed"]}  ->  {entry["replacement"] or "(nothing)"}')


def report(mutants):
    results = load_results()
    equivalent = Equivalents()
    counts = {"killed": 0, "survived": 0, "invalid": 0, "equivalent": 0}
    survivors = []
    for mutant in mutants:
        entry = results.get(mutant.identity)
        if entry is None:
            continue
        status = entry["status"]
        if status == "survived":
            if mutant in equivalent:
                status = "equivalent"
            else:
                survivors.append(entry | {"line": mutant.line, "column": mutant.column})
        counts[status] += 1
    for entry in sorted(survivors, key=lambda e: (e["file"], e["line"], e["column"])):
        print(describe(entry))
    tried = counts["killed"] + counts["survived"]
    rate = 100 * counts["killed"] / tried if tried else 0
    print(f'{len(mutants)} mutants; {counts["killed"]} killed, {counts["survived"]} survived, '
          f'{counts["equivalent"]} equivalent, {counts["invalid"]} do not compile; '
          f'{rate:.1f} % killed of those that can be')
    return counts["survived"]


def wanted_mutants(mutants, arguments):
    results = load_results()
    equivalent = Equivalents()
    if arguments.survivors:
        return [m for m in mutants if results.get(m.identity, {}).get("status") == "survived"
                and m not in equivalent]
    return [m for m in mutants if m.identity not in results]


def entry_of(mutant, changed, status, by, seconds):
    return {
        "id": mutant.identity, "status": status, "by": by, "file": mutant.file,
        "line": mutant.line, "column": mutant.column, "operator": mutant.operator,
        "before": mutant.before, "changed": changed,
        "replacement": mutant.replacement, "seconds": round(seconds, 1)}


def run_mutants(arguments):
    precompile()
    trees = [prepare_tree()]
    trees += [trees[0].copy_to(WORK / str(number)) for number in range(2, arguments.jobs + 1)]
    # From here on only the copies count: the work tree may change meanwhile.
    wanted = wanted_mutants(all_mutants(trees[0].source, arguments.file), arguments)
    limits = measure_baseline(trees[0])
    deadline = time.monotonic() + 60 * arguments.minutes
    work = queue.SimpleQueue()
    for numbered in enumerate(wanted):
        work.put(numbered)
    writing = threading.Lock()

    def work_off(tree):
        while time.monotonic() < deadline:
            try:
                number, mutant = work.get_nowait()
            except queue.Empty:
                return
            start = time.monotonic()
            changed = (tree.source / mutant.file).read_text()[mutant.begin:mutant.end]
            status, by = try_mutant(tree, mutant, limits)
            entry = entry_of(mutant, changed, status, by, time.monotonic() - start)
            with writing, RESULTS.open("a") as results:
                results.write(json.dumps(entry) + "\n")
                print(f'{number + 1}/{len(wanted)} {status:8} {entry["seconds"]:6.1f} s  {by:23} '
                      f'{mutant.file}:{mutant.line} {changed!r} -> {mutant.replacement!r}',
                      flush=True)

    with concurrent.futures.ThreadPoolExecutor(len(trees)) as executor:
        for done in [executor.submit(work_off, tree) for tree in trees]:
            done.result()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--minutes", type=float, default=30, help="when to stop (30)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(),
                        help="how many mutants at once (one for each core)")
    parser.add_argument("--file", default="", help="only files whose path contains this")
    parser.add_argument("--survivors", action="store_true", help="try those again that survived")
    parser.add_argument("--report", action="store_true", help="only list what is known")
    arguments = parser.parse_args()
    if not arguments.report:
        WORK.mkdir(parents=True, exist_ok=True)
        with (WORK / "lock").open("w") as lock:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                fail("another run is at work in build/mutation")
            run_mutants(arguments)
    sys.exit(1 if report(all_mutants(ROOT, arguments.file)) else 0)


if __name__ == "__main__":
    main()
