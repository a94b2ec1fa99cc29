#!/usr/bin/env python3
"""Mutation testing: makes one small change to the sources at a time and checks that a test fails.

Each worker has its own copy of the sources in build/mutation. The tool tries the mutants in random
order, so that the mutants of a run are a random sample. It appends each result to
build/mutation/results.jsonl. Later runs skip the mutants that have a result in this file.

equivalent.txt lists the mutants that no test can notice, with the reasons.
"""

import argparse
import fcntl
import os
import queue
import random
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

from build_tree import LIBRARIES, BuildError, BuildTree, compile_header, restore_after_kill
from mutants import apply, find_mutants
from results import Equivalents, Results, report
from test_plan import TestPlan

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutation"
HERE = Path(__file__).resolve().parent


def fail(message):
    print(f"mutation: {message}", file=sys.stderr)
    sys.exit(1)


def listed_files():
    """Returns the files of the working tree that git tracks or would add."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
        check=True, stdout=subprocess.PIPE).stdout.decode().split("\0")
    return sorted({name for name in listed if name and (ROOT / name).is_file()})


def copy_sources(target):
    """Updates `target` to a copy of the working tree. Rewrites only files that differ."""
    names = listed_files()
    for name in names:
        path = target / name
        content = (ROOT / name).read_bytes()
        if not path.is_file() or path.read_bytes() != content:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
            shutil.copymode(ROOT / name, path)
    for path in [p for p in target.rglob("*") if p.is_file()]:
        if str(path.relative_to(target)) not in set(names):
            path.unlink()


def measured_files(root):
    """Returns the paths of the sources and headers for which mutants are made, relative to `root`."""
    folders = [root / folder for folders in LIBRARIES.values() for folder in folders]
    paths = [path for folder in folders for path in folder.rglob("*")
             if path.suffix in (".cpp", ".h")]
    return sorted(str(path.relative_to(root)) for path in paths)


def all_mutants(root, pattern):
    return [mutant for name in measured_files(root) if pattern in name
            for mutant in find_mutants(name, (root / name).read_text())]


def prepare_trees(jobs):
    """Builds a copy of the working tree for each worker. Returns the copies."""
    header = WORK / "precompiled.pch"
    compile_header((HERE / "precompiled.h").read_text(), header)
    folder = WORK / "1"
    (folder / "source").mkdir(parents=True, exist_ok=True)
    restore_after_kill(folder)
    copy_sources(folder / "source")
    first = BuildTree(folder, header)
    first.build(jobs)
    return [first, *(first.copy_to(WORK / str(number), jobs) for number in range(2, jobs + 1))]


class Worker:
    """Tries mutants, one at a time, in its own copy of the sources."""

    def __init__(self, tree, plan, sample):
        """`sample` is the parameter of `BuildTree.units_for`."""
        self._tree = tree
        self._plan = plan
        self._sample = sample

    def try_mutant(self, mutant):
        """Returns the status (killed, survived or invalid) and, if killed, the check that failed."""
        tree = self._tree
        temporary = Path(tempfile.mkdtemp(prefix="orn-mutation-"))
        # Every user may write to this folder, because some tests drop their privileges and then create
        # temporary files in it.
        temporary.chmod(0o1777)
        try:
            text = (tree.source / mutant.file).read_text()
            tree.replace_source(mutant.file, apply(mutant, text))
            units, tests = tree.units_for(mutant.file, self._sample)
            if not units and not tests:
                return "invalid", "not compiled"
            for unit in [*units, *tests]:
                message = tree.compile(unit)
                if message is not None:
                    # A failed static_assert counts as a failed test.
                    if "static_assert failed" in message:
                        return "killed", "static_assert"
                    return "invalid", ""
            if tree.link([*units, *tests]) is not None:
                return "invalid", ""
            for step in self._plan.steps(mutant.file):
                how = step.kills(tree.folder, temporary)
                if how is not None:
                    return "killed", f"{step.name} {how}"
            return "survived", ""
        finally:
            tree.restore()
            shutil.rmtree(temporary, ignore_errors=True)


def entry_of(mutant, text, status, killer, seconds):
    return {
        "id": mutant.identity, "status": status, "by": killer, "file": mutant.file,
        "line": mutant.line, "column": mutant.column, "operator": mutant.operator,
        "before": mutant.before, "changed": text[mutant.begin:mutant.end],
        "replacement": mutant.replacement, "seconds": round(seconds, 1)}


def try_all(workers, wanted, source, results, deadline):
    """Tries the wanted mutants with all workers and appends each result to `results`.

    After the deadline, no worker starts another mutant. Raises the first exception of a worker.
    """
    waiting = queue.SimpleQueue()
    for numbered in enumerate(wanted, 1):
        waiting.put(numbered)
    failures = []

    def work(worker):
        try:
            while time.monotonic() < deadline and not failures:
                number, mutant = waiting.get_nowait()
                start = time.monotonic()
                status, killer = worker.try_mutant(mutant)
                entry = entry_of(mutant, source(mutant.file), status, killer,
                                 time.monotonic() - start)
                results.append(entry)
                print(f'{number}/{len(wanted)} {status:8} {entry["seconds"]:6.1f} s  {killer:32} '
                      f'{mutant.file}:{mutant.line} {entry["changed"]!r} -> '
                      f'{mutant.replacement!r}', flush=True)
        except queue.Empty:
            pass
        except Exception as error:  # pylint: disable=broad-exception-caught
            failures.append(error)

    threads = [threading.Thread(target=work, args=[worker]) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]


def run_mutants(arguments, results, equivalents):
    print(f"seed {arguments.seed}", flush=True)
    start = time.monotonic()
    try:
        trees = prepare_trees(arguments.jobs)
        with tempfile.TemporaryDirectory(prefix="orn-mutation-") as temporary:
            os.chmod(temporary, 0o1777)
            plan = TestPlan(trees[0], temporary)
    except (BuildError, RuntimeError) as error:
        fail(f"the unchanged sources do not build or do not pass their tests\n{error}")
    # From here on, read only the copies of the sources, because the working tree may change during the run.
    texts = {name: (trees[0].source / name).read_text() for name in measured_files(trees[0].source)}
    mutants = [mutant for name, text in texts.items() if arguments.file in name
               for mutant in find_mutants(name, text)]
    random.Random(arguments.seed).shuffle(mutants)
    known = results.load()
    if arguments.survivors:
        wanted = [m for m in mutants if known.get(m.identity, {}).get("status") == "survived"
                  and equivalents.reason(m) is None]
    else:
        wanted = [m for m in mutants if m.identity not in known]
    print(f"{len(wanted)} mutants to try; preparation took {time.monotonic() - start:.0f} s",
          flush=True)
    # With the option --survivors, compile all library sources that include the changed header. With only a
    # sample of them, the tests could run code that does not contain the mutant, and the mutant would survive.
    samples = [None if arguments.survivors else random.Random(f"{arguments.seed} {number}").sample
               for number in range(len(trees))]
    workers = [Worker(tree, plan, sample) for tree, sample in zip(trees, samples)]
    try_all(workers, wanted[:arguments.count], texts.__getitem__, results,
            time.monotonic() + 60 * arguments.minutes)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--minutes", type=float, default=60,
                        help="stop after this number of minutes, not counting the preparation "
                             "(default: 60)")
    parser.add_argument("--count", type=int, help="stop after this number of mutants")
    parser.add_argument("--seed", default=str(random.SystemRandom().randrange(10**6)),
                        help="seed of the random order (default: random; the tool prints it)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(),
                        help="number of mutants tried in parallel (default: number of cores)")
    parser.add_argument("--file", default="",
                        help="mutate only files whose path contains this string")
    parser.add_argument("--survivors", action="store_true",
                        help="try the survivors of earlier runs again; for a mutant of a header, "
                             "recompile all library sources that include the header")
    parser.add_argument("--fresh", action="store_true",
                        help="delete the results of earlier runs first")
    parser.add_argument("--report", action="store_true",
                        help="print the results of earlier runs and try no mutants")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    results = Results(WORK / "results.jsonl")
    equivalents = Equivalents(HERE / "equivalent.txt")
    if not arguments.report:
        WORK.mkdir(parents=True, exist_ok=True)
        with (WORK / "lock").open("w") as lock:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                fail("another run uses build/mutation; wait until it has finished")
            if arguments.fresh:
                (WORK / "results.jsonl").unlink(missing_ok=True)
            run_mutants(arguments, results, equivalents)
    lines = {name: [line.strip() for line in (ROOT / name).read_text().splitlines()]
             for name in measured_files(ROOT)}
    survivors = report(all_mutants(ROOT, arguments.file), results, equivalents, lines)
    sys.exit(1 if survivors else 0)


if __name__ == "__main__":
    main()
