"""Selects the tests that can notice a mutant. The most likely and the fastest tests run first."""

import os
import re
import resource
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

# Maps each folder to the programs whose tests execute its code. The folder's own tests are first.
PROGRAMS = {
    "orncore": ("orncore_tests", "ornwhatsnew_tests", "ornappsupport_tests", "ornui_tests",
                "scenarios", "early_list_tests", "hosts_common_tests", "hosts_console_tests"),
    "ornappsupport": ("ornappsupport_tests", "ornwhatsnew_tests", "scenarios",
                      "hosts_common_tests", "hosts_console_tests"),
    "ornui": ("ornui_tests", "ornwhatsnew_tests", "fault_tests", "hosts_console_tests"),
    "ornwhatsnew": ("ornwhatsnew_tests", "scenarios", "allocation_tests", "early_list_tests",
                    "fault_tests", "hosts_common_tests", "hosts_console_tests"),
    "hosts/common": ("hosts_common_tests", "hosts_console_tests", "scenarios", "scripts"),
    "hosts/author": ("hosts_author_tests", "hosts_console_tests", "scripts"),
    "hosts/console": ("hosts_console_tests", "scripts"),
}
# Maps each folder to the programs whose slow tests run for mutants of the files in this folder. Slow tests
# of other modules rarely notice a mutant that the fast tests miss.
SLOW_PROGRAMS = {
    "orncore": ("orncore_tests", "ornwhatsnew_tests", "fault_tests"),
    "ornappsupport": ("ornappsupport_tests", "ornwhatsnew_tests", "fault_tests"),
    "ornui": ("ornui_tests", "fault_tests"),
    "ornwhatsnew": ("ornwhatsnew_tests", "allocation_tests", "fault_tests"),
    "hosts/common": ("hosts_common_tests",),
    "hosts/author": ("hosts_author_tests",),
    "hosts/console": ("hosts_console_tests",),
}
SLOW_SECONDS = 0.15
# A test that takes at least this many seconds runs only for mutants of the file that it is named after.
VERY_SLOW_SECONDS = 3.0
# Maps a program to the GoogleTest filter for the tests to run. The other tests of the program take
# minutes without optimization.
FILTERS = {
    "fault_tests": "CallbackTest.*:NestedCallTest.*:RandomStateTest.*:ServiceTest.*:"
                   "MemoryTest.*Captur*:MemoryTest.InsertingAnItem*:"
                   "MemoryTest.AddingAChangeToAnItem*:MemoryOfCommandTest.ReportsAFailureAndWorks*",
}
MEMORY_LIMIT = 3 << 30
# The number of programs that each kill test kills. The tests read it from an environment variable.
KILLS = "20"
FAILED_LINE = re.compile(r"^\[  FAILED  \] (\S+?\.\S+?)(?:,.*)? \(\d+ ms\)$", re.M)
# Some tests fail even without a mutant, because build_tree.py links the programs differently from CMake.
# The run stops if a program has more failing tests than this number.
MOST_FAILING = 5
OK_LINE = re.compile(r"^\[       OK \] (\S+?\.\S+?)(?:, where .*)? \((\d+) ms\)$", re.M)


def run(command, folder, temporary, wall=1800.0, cpu=1800):
    """Runs a command and returns its exit status and its output.

    The status is None if the command was killed after `wall` seconds. `cpu` limits its processor
    time in seconds.
    """
    environment = os.environ | {"TMPDIR": str(temporary), "ORNWHATSNEW_TEST_KILLS": KILLS}
    limits = ["prlimit", f"--as={MEMORY_LIMIT}", "--core=0", f"--cpu={cpu}"]
    with subprocess.Popen([*limits, *command], cwd=folder, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          stdin=subprocess.DEVNULL, start_new_session=True) as process:
        try:
            output, _ = process.communicate(timeout=wall)
            return process.returncode, output.decode(errors="replace")
        except BaseException as error:
            os.killpg(process.pid, 9)
            process.communicate()
            if isinstance(error, subprocess.TimeoutExpired):
                return None, ""
            raise


def children_cpu():
    """Returns the processor time of all finished child processes in seconds."""
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


@dataclass(frozen=True)
class Step:
    """A command that runs tests, and its expected duration in seconds."""
    name: str
    command: tuple
    seconds: float

    def kills(self, folder, temporary):
        """Runs the command. Returns 'fails', 'does not end', or None if it succeeds."""
        status, _ = run(self.command, folder, temporary, wall=15 + 6 * self.seconds,
                        cpu=int(3 + 4 * self.seconds))
        if status is None or status in (-9, -24):
            return "does not end"
        return None if status == 0 else "fails"


class TestPlan:
    """The tests of a tree, and the time that each test takes with the unchanged sources."""

    def __init__(self, tree, temporary):
        self._source = tree.source
        self._seconds = {program: self._measure(tree, program, temporary)
                         for program in tree.programs if program.endswith("_tests")}
        self._suites = self._find_suites(tree)
        self._commands = {name: self._measure_command(name, command, tree, temporary)
                          for name, command in self._plain_commands().items()}

    def steps(self, file):
        """Returns the steps for a mutant of a file, in the order in which they run."""
        folder = next(name for name in PROGRAMS if file.startswith(name + "/"))
        own = self._suites.get(Path(file).stem, {})
        steps = [self._tests(program, lambda test, s=suites: self._is_fast(test)
                             and test.name.split(".")[0] in s) for program, suites in own.items()]
        for name in PROGRAMS[folder]:
            if name in self._commands or name == "scripts":
                steps += [step for key, step in self._commands.items() if key.startswith(name)]
            else:
                steps.append(self._tests(name, self._is_fast))
        for program, suites in own.items():
            steps.append(self._tests(program, lambda test, s=suites: not self._is_fast(test)
                                     and test.name.split(".")[0] in s))
        steps += [self._tests(name, lambda test: SLOW_SECONDS < test.seconds < VERY_SLOW_SECONDS)
                  for name in SLOW_PROGRAMS[folder]]
        return [step for step in steps if step is not None]

    @dataclass(frozen=True)
    class Test:
        name: str
        seconds: float

    @staticmethod
    def _is_fast(test):
        return test.seconds <= SLOW_SECONDS

    def _tests(self, program, is_wanted):
        """Returns the step that runs the wanted tests of a program, or None if there are none."""
        tests = self._seconds.get(program, [])
        wanted = [test for test in tests if is_wanted(test)]
        if not wanted:
            return None
        names = [test.name for test in wanted]
        test_filter = ":".join(names)
        command = (f"bin/{program}", "--gtest_brief=1", "--gtest_fail_fast",
                   f"--gtest_filter={test_filter}")
        # Add 0.3 seconds for the start of the program.
        return Step(program, command, 0.3 + sum(test.seconds for test in wanted))

    def _measure(self, tree, program, temporary):
        start, cpu_start = time.monotonic(), children_cpu()
        status, output = run([f"bin/{program}", f"--gtest_filter={FILTERS.get(program, '*')}"],
                             tree.folder, temporary)
        # GoogleTest measures wall time, which is longer on a busy machine. Convert it to processor time.
        share = min(1.0, (children_cpu() - cpu_start) / (time.monotonic() - start))
        failed = sorted(set(FAILED_LINE.findall(output)))
        if status not in (0, 1) or len(failed) > MOST_FAILING or bool(status) != bool(failed):
            raise RuntimeError(f"{program} fails without a mutant\n{output[-3000:]}")
        for test in failed:
            print(f"{program}: ignores {test}, which fails without a mutant", flush=True)
        tests = [self.Test(name, int(milliseconds) / 1000 * share)
                 for name, milliseconds in OK_LINE.findall(output)]
        slow = sorted((t for t in tests if not self._is_fast(t)), key=lambda t: -t.seconds)
        print(f"{program}: {len(tests)} tests, {sum(t.seconds for t in tests):.1f} s; slow: " +
              ", ".join(f"{t.name} {t.seconds:.1f} s" for t in slow[:4]), flush=True)
        return tests

    @staticmethod
    def _find_suites(tree):
        """Maps each source name to the programs and suites of the tests that are named after it."""
        suites = {}
        for program, units in tree.programs.items():
            for unit in units:
                stem = Path(unit.source).stem
                text = (tree.source / unit.source).read_text()
                found = set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", text, re.M))
                if stem.endswith("Test") and found:
                    suites.setdefault(stem[:-4], {}).setdefault(program, set()).update(found)
        return suites

    def _plain_commands(self):
        """Returns the commands of the checks that are not GoogleTest programs, by name."""
        files = sorted(str(path.relative_to(self._source.parent))
                       for path in (self._source / "tests/conformance").rglob("*.json"))
        console = "source/tests/hosts/console"
        page = "source/hosts/console/ornwhatsnew.1"
        completions = "source/hosts/console/completions/ornwhatsnew.bash"
        commands = {
            "scenarios": ("bin/scenario_runner", "--check", *files),
        }
        # The scripts need the absolute path of the program, which is different in each tree.
        for script, argument in (("man_page.sh", page), ("completion.sh", completions),
                                 ("help.sh", f"{console}/help.txt")):
            if (self._source.parent / console / script).exists():
                commands[f"scripts: {script}"] = (
                    "sh", "-c", 'exec "$0" "$1" "$PWD/bin/ornwhatsnew"',
                    f"{console}/{script}", argument)
        return commands

    @staticmethod
    def _measure_command(name, command, tree, temporary):
        before = time.monotonic()
        status, output = run(command, tree.folder, temporary)
        if status != 0:
            raise RuntimeError(f"{name} fails without a mutant\n{output[-3000:]}")
        seconds = time.monotonic() - before
        print(f"{name}: {seconds:.1f} s", flush=True)
        return Step(name, command, seconds)
