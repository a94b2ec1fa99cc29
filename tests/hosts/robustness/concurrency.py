"""Runs several programs on one store at the same time and checks that no state is lost."""

import json
import random
import time

from program import (DONE, EMPTY, LONGEST_RUN, Broken, Result, State, require,
                     require_safe_text)

PROGRAMS = 8
ROUNDS_PER_STORE = 8


def merged(states):
    """Returns the union of the versions and identities of `states`, with an empty last version."""
    return State("", frozenset().union(*(state.versions for state in states)),
                 frozenset().union(*(state.seen for state in states)))


class Rounds:
    """Runs rounds of programs. Several consecutive rounds use the same store."""

    def __init__(self, program, folder, seed):
        self._program = program
        self._folder = folder
        self._random = random.Random(seed)
        # In each round, one program rates a feature, and another program reads the store. Each of the
        # remaining programs shows a version of the application that no other program shows with this
        # store.
        self._shows = PROGRAMS - 2
        self._editions = [program.edition(number)
                          for number in range(self._shows * ROUNDS_PER_STORE)]
        self._shown = [program.state_after(program.show(edition, folder / f"{index}.json"),
                                           folder / f"{index}.json")
                       for index, edition in enumerate(self._editions)]
        store = folder / "rated.json"
        self._rated = program.state_after(program.rate(self._editions[0], store), store)
        self._expected = EMPTY
        self._store = None

    def run(self, number):
        """Runs the round with this number. The rounds must run in ascending order."""
        part = number % ROUNDS_PER_STORE
        if part == 0:
            self._store = self._folder / f"round {number}" / "state.json"
            self._expected = EMPTY
        begin = part * self._shows
        indexes = range(begin, begin + self._shows)
        before = self._expected
        self._expected = merged([before, self._rated, *(self._shown[i] for i in indexes)])
        shown = self._run_together(indexes)
        self._require_partial_state(shown, before, indexes)
        stored = self._program.state(self._store)
        require(stored.versions == self._expected.versions
                and stored.seen == self._expected.seen, f"lost or invented state: {stored}")
        versions = {self._shown[i].last for i in indexes}
        require(stored.last in versions, f"the last version is {stored.last}")

    def _run_together(self, indexes):
        """Runs the programs of a round. Returns the state that the reading program printed."""
        program = self._program
        words = [program.show(self._editions[i], self._store) for i in indexes]
        words.append(program.rate(self._editions[0], self._store))
        reading = [*program.show_state(None, self._store), "--format", "json"]
        words.append(reading)
        self._random.shuffle(words)
        deadline = time.monotonic() + LONGEST_RUN
        processes = [program.start(line) for line in words]
        ends = []
        for line, process in zip(words, processes):
            try:
                ends.append(program.wait(process, line[0], deadline))
            except Broken as problem:
                # Continue to wait for the other programs, so that none of them runs during the next round.
                ends.append(problem)
        printed = None
        for line, process, end in zip(words, processes, ends):
            if isinstance(end, Broken):
                raise end
            result = Result(process.returncode, *map(require_safe_text, end))
            require(result.status == DONE, f"{line[0]} failed", result)
            if line is reading:
                printed = json.loads(result.output)
        return State(printed["lastVersionSeen"], frozenset(printed["versionsSeen"]),
                     frozenset(printed["seenItems"]))

    def _require_partial_state(self, state, before, indexes):
        """Fails if `state` contains only a part of the identities that a display of a round stores."""
        stored = [self._shown[i] for i in indexes if self._shown[i].last in state.versions]
        expected = merged([before, *stored])
        require(state.versions == expected.versions, f"unknown versions: {state}")
        require(state.seen - self._rated.seen == expected.seen - self._rated.seen,
                f"a display is stored in part: {state}")
