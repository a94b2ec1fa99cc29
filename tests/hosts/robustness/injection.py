"""Makes each system call of a command fail once, and kills the command at each system call.

After each run, the store must contain the old state or the new state, and the next run of the
command must succeed.
"""

import re
from collections import Counter
from typing import Callable, NamedTuple

from program import (DONE, EMPTY, UNUSABLE_STORE, UNWRITABLE_OUTPUT, content_of, copy_folder,
                     require)

ERRORS = ("EIO", "ENOSPC", "EINTR", "EAGAIN")

# An error in these calls would not test the program. strace itself calls `execve`. The C library
# cannot continue if `exit_group` returns. `brk` returns an address and no error, so the C library
# would use the injected error as an address.
EXCLUDED = {"execve", "exit_group", "brk"}

# If the first allocation fails, the dynamic linker of glibc crashes in every program.
FIRST_ALLOCATION = ("mmap", 1)

# Parts of the messages that the C library prints when it ends a program, by exit status or negated signal
# number.
FATAL_MESSAGES = {
    -6: ("The futex facility returned an unexpected error code", "Fatal glibc error: "),
    127: ("error while loading shared libraries: ", "cannot set up thread-local storage: ",
          "out of memory\n")}

STATUSES = {DONE, 1, 3, UNUSABLE_STORE, UNWRITABLE_OUTPUT}


def is_ended_by_c_library(result):
    """Returns whether the C library ended the program and printed one of its messages.

    glibc ends a program with SIGABRT if a call fails that cannot fail on Linux, such as futex(2)
    with EIO. The dynamic linker ends a program with 127 if it cannot load a library or allocate memory.
    """
    return any(message in result.errors for message in FATAL_MESSAGES.get(result.status, ()))


class Scenario(NamedTuple):
    """A command and the store on which it runs.

    `template` is a folder with this store. It does not exist if the command creates the store.
    """
    name: str
    words: Callable
    edition: object
    template: object


def scenarios(program, folder):
    """Returns every scenario. Creates the folders of their stores in `folder`."""
    first, second = program.edition(1), program.edition(2)
    template = folder / "template"
    program.state_after(program.show(first, template / "state.json"), template / "state.json")
    missing = folder / "missing"
    return [Scenario("show", program.show, second, template),
            Scenario("show, new store", program.show, second, missing),
            Scenario("rate", program.rate, second, template),
            Scenario("rate, new store", program.rate, second, missing),
            Scenario("status", program.status, second, template),
            Scenario("state reset", program.reset, second, template)]


class Target:
    """Runs one scenario repeatedly in one folder, each time from the same old state."""

    def __init__(self, program, scenario, folder):
        self._program = program
        self._scenario = scenario
        self._folder = folder / "store\x1b[0m"
        self._store = self._folder / "state.json"
        self._words = scenario.words(scenario.edition, self._store)
        self._trace = folder / "trace"
        self._restore()
        self._old = program.state(self._store) if self._store.exists() else EMPTY
        self._files = content_of(self._folder)
        self._output = program.run(self._words, has_pipe=True).output
        self._new = program.state(self._store)

    def _restore(self):
        copy_folder(self._scenario.template, self._folder)

    def _run(self, *options):
        self._restore()
        prefix = ("strace", "-f", "-qq", "-o", str(self._trace), *options)
        return self._program.run(self._words, prefix, has_pipe=True)

    def calls(self):
        """Returns the system calls of the command in their order.

        Each call is a pair: its name, and its number among the calls of this name.
        """
        result = self._run()
        require(result.status == DONE, "the command fails under strace", result)
        names = re.findall(r"^\d+ +(\w+)\(", self._trace.read_text(errors="replace"), re.MULTILINE)
        count = Counter()
        calls = []
        for name in names:
            count[name] += 1
            calls.append((name, count[name]))
        return calls

    def fail(self, name, number, error):
        """Makes a call fail with `error`. Describes the state after the run."""
        result = self._run("-e", f"inject={name}:error={error}:when={number}")
        require(result.status in STATUSES or is_ended_by_c_library(result), "unexpected exit status",
                result)
        if result.status == DONE:
            require(result.output == self._output, "the output differs from the first run", result)
        state = self._state_after(result)
        require(state == self._new or result.status != DONE, "the command stored nothing", result)
        if result.status == UNWRITABLE_OUTPUT and "; " in result.errors:
            expected = self._old if "nothing was stored" in result.errors else self._new
            require(state == expected, "the message about the state is wrong", result)
        return self._name_of(state)

    def kill(self, name, number):
        """Kills the command when it makes a call. Describes the state after the kill."""
        result = self._run("-e", f"inject={name}:signal=SIGKILL:when={number}")
        require(result.status == -9, "the command was not killed", result)
        state = self._state_after(result)
        # `show` prints its panel before it stores the state. `rate` and `state reset` report their changes
        # after they have stored them.
        if result.output and self._scenario.words is not self._program.show:
            require(state == self._new, "a reported change is lost", result)
        return self._name_of(state)

    def _state_after(self, result):
        state = self._program.state(self._store)
        require(state in (self._old, self._new), f"neither the old nor the new state: {state}",
                result)
        if self._scenario.name == "status":
            require(content_of(self._folder) == self._files, "status changed a file", result)
        repeated = self._program.state_after(self._words, self._store)
        require(repeated == self._new, "a second run does not reach the new state", result)
        return state

    def _name_of(self, state):
        if self._old == self._new:
            return "unchanged state"
        return "new state" if state == self._new else "old state"


def error_checks(calls, every):
    """Returns checks of every n-th call, one for each error.

    A check is a pair: a description and a function of a `Target`.
    """
    calls = [call for call in calls if call[0] not in EXCLUDED and call != FIRST_ALLOCATION]
    return [(f"{name} number {number} fails with {error}",
             lambda target, call=(name, number, error): target.fail(*call))
            for name, number in calls[::every] for error in ERRORS]


def kill_checks(calls, every):
    """Returns a check for a kill at every n-th call, in the same form as `error_checks`."""
    calls = [call for call in calls if call != ("execve", 1)]
    return [(f"killed at {name} number {number}",
             lambda target, call=(name, number): target.kill(*call))
            for name, number in calls[::every]]
