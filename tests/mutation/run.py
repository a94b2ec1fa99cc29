#!/usr/bin/env python3
"""Mutation testing: changes the library in one place at a time and sees whether a test notices.

Works on a copy of the sources under build/mutation, built without optimisation as shared libraries,
so that a mutant costs one compilation and one small link. Each result is written to
build/mutation/results.jsonl at once, and a later run goes on where this one stopped. The order is
random but always the same, so that whatever was done is a fair sample of the whole.

Mutants that nothing can notice are listed in equivalent.txt, beside this file, with the reason.
"""

import argparse
import json
import os
import resource
import shutil
import subprocess
import sys
import time
from pathlib import Path

from mutants import apply, find_mutants

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutation"
SOURCE = WORK / "source"
BUILD = WORK / "build"
RESULTS = WORK / "results.jsonl"
EQUIVALENT = Path(__file__).resolve().parent / "equivalent.txt"

FOLDERS = ("ornwhatsnew", "orncore")
PROGRAMS = ("ornwhatsnew_tests", "orncore_tests", "scenario_runner")
MEMORY_LIMIT = 3 << 30

# Tests that go through every character or every combination take most of the time and notice what
# others notice too; they are asked only when nobody else did.
EXHAUSTIVE = ("VisibilityGrid.*", "PlainPanel.*", "RunIterator.ShortTexts*", "RunIterator.Random*",
              "FieldCleaner.LowersEvery*", "TextHelpers.LowerCase8LowersEvery*",
              "CaseMapping.*ForEveryCodePoint", "Conversion.TreatsAllShort*", "Conversion.KeepsEvery*")


def fail(message):
    print(f"mutation: {message}", file=sys.stderr)
    sys.exit(1)


def run(command, timeout=None, limited=False):
    """Exit status and output; None for a status that did not come in time."""
    def limit():
        os.setsid()
        if limited:
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=SOURCE,
                          stdin=subprocess.DEVNULL, preexec_fn=limit) as process:
        try:
            output, _ = process.communicate(timeout=timeout)
            return process.returncode, output.decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            process.communicate()
            return None, ""
        except BaseException:
            os.killpg(process.pid, 9)
            raise


def sync_sources():
    """Makes the copy equal to the work tree; files that are equal keep their time."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
        check=True, stdout=subprocess.PIPE).stdout.decode().split("\0")
    files = {name for name in listed if name and (ROOT / name).is_file()}
    for name in sorted(files):
        target = SOURCE / name
        content = (ROOT / name).read_bytes()
        if target.is_file() and target.read_bytes() == content:
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content)
        shutil.copymode(ROOT / name, target)
    for path in [p for p in SOURCE.rglob("*") if p.is_file()]:
        if str(path.relative_to(SOURCE)) not in files:
            path.unlink()


def configure():
    command = [
        "cmake", "-G", "Ninja", "-S", str(SOURCE), "-B", str(BUILD), "-Wno-dev",
        "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_CXX_FLAGS=-O0 -g0 -w",
        "-DBUILD_SHARED_LIBS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
        "-DORNWHATSNEW_BUILD_EXAMPLES=OFF", "-DORNWHATSNEW_INSTALL=OFF",
        "-DORNWHATSNEW_WARNINGS_AS_ERRORS=OFF"]
    if shutil.which("ccache"):
        command.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
    status, output = run(command)
    if status != 0:
        fail("cannot configure\n" + output)


def build(timeout=None):
    return run(["cmake", "--build", str(BUILD), "--parallel", str(os.cpu_count()), "--target",
                *PROGRAMS], timeout)


def unit_tests(program, exhaustive):
    tests = ":".join(EXHAUSTIVE)
    return [str(BUILD / "bin" / program), "--gtest_brief=1", "--gtest_fail_fast",
            "--gtest_filter=" + (tests if exhaustive else "-" + tests)]


def test_commands(file):
    """The tests that can notice a mutant of this file, those first that notice most in least time.
    """
    scenarios = sorted(str(p) for p in (SOURCE / "tests/conformance/scenarios").glob("*.json"))
    commands = [
        ("ornwhatsnew_tests", unit_tests("ornwhatsnew_tests", False)),
        ("conformance", [str(BUILD / "bin/scenario_runner"), "--check", *scenarios]),
        ("ornwhatsnew_tests (all)", unit_tests("ornwhatsnew_tests", True))]
    if file.startswith("orncore"):
        commands.insert(0, ("orncore_tests", unit_tests("orncore_tests", False)))
        commands.insert(3, ("orncore_tests (all)", unit_tests("orncore_tests", True)))
    return commands


def measure_baseline():
    """How long each test takes on the unchanged sources; they must pass."""
    limits = {}
    for name, command in test_commands("orncore"):
        start = time.monotonic()
        status, output = run(command, limited=True)
        if status != 0:
            fail(f"{name} fails without any mutant\n{output[-3000:]}")
        limits[name] = 20 + 10 * (time.monotonic() - start)
    return limits


def try_mutant(mutant, limits):
    """What becomes of a mutant: killed, survived or invalid, and by which test."""
    path = SOURCE / mutant.file
    original = path.read_text()
    path.write_text(apply(mutant, original))
    try:
        status, _ = build(timeout=1200)
        if status != 0:
            return "invalid", ""
        for name, command in test_commands(mutant.file):
            status, _ = run(command, timeout=limits[name], limited=True)
            if status is None:
                return "killed", name + " (never ends)"
            if status != 0:
                return "killed", name
        return "survived", ""
    finally:
        path.write_text(original)


def load_results():
    if not RESULTS.exists():
        return {}
    lines = RESULTS.read_text().splitlines()
    return {entry["id"]: entry for entry in map(json.loads, lines)}


def load_equivalent():
    """From file, line text and replacement to the reason."""
    reasons = {}
    if EQUIVALENT.exists():
        for line in EQUIVALENT.read_text().splitlines():
            if line and not line.startswith("#"):
                file, text, replacement, reason = (part.strip() for part in line.split(" || "))
                reasons[(file, text, replacement)] = reason
    return reasons


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
    equivalent = load_equivalent()
    counts = {"killed": 0, "survived": 0, "invalid": 0, "equivalent": 0}
    survivors = []
    for mutant in mutants:
        entry = results.get(mutant.identity)
        if entry is None:
            continue
        status = entry["status"]
        if status == "survived":
            if (mutant.file, mutant.before, mutant.replacement) in equivalent:
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
    equivalent = load_equivalent()
    if arguments.survivors:
        return [m for m in mutants if results.get(m.identity, {}).get("status") == "survived"
                and (m.file, m.before, m.replacement) not in equivalent]
    return [m for m in mutants if m.identity not in results]


def record(mutant, status, by, seconds):
    text = (SOURCE / mutant.file).read_text()
    entry = {
        "id": mutant.identity, "status": status, "by": by, "file": mutant.file,
        "line": mutant.line, "column": mutant.column, "operator": mutant.operator,
        "before": mutant.before, "changed": text[mutant.begin:mutant.end],
        "replacement": mutant.replacement, "seconds": round(seconds, 1)}
    with RESULTS.open("a") as results:
        results.write(json.dumps(entry) + "\n")
    return entry


def run_mutants(arguments):
    # From here on only the copy counts: the work tree may change meanwhile.
    sync_sources()
    wanted = wanted_mutants(all_mutants(SOURCE, arguments.file), arguments)
    configure()
    status, output = build()
    if status != 0:
        fail("the unchanged sources do not build\n" + output[-3000:])
    limits = measure_baseline()
    deadline = time.monotonic() + 60 * arguments.minutes
    for number, mutant in enumerate(wanted):
        if time.monotonic() > deadline:
            break
        start = time.monotonic()
        status, by = try_mutant(mutant, limits)
        entry = record(mutant, status, by, time.monotonic() - start)
        print(f'{number + 1}/{len(wanted)} {status:8} {entry["seconds"]:6.1f} s  {by:23} '
              f'{mutant.file}:{mutant.line} {entry["changed"]!r} -> {mutant.replacement!r}',
              flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--minutes", type=float, default=30, help="when to stop (30)")
    parser.add_argument("--file", default="", help="only files whose path contains this")
    parser.add_argument("--survivors", action="store_true", help="try those again that survived")
    parser.add_argument("--report", action="store_true", help="only list what is known")
    arguments = parser.parse_args()
    if not arguments.report:
        SOURCE.mkdir(parents=True, exist_ok=True)
        run_mutants(arguments)
    sys.exit(1 if report(all_mutants(ROOT, arguments.file)) else 0)


if __name__ == "__main__":
    main()
