"""Runs the program under test, reads its state stores, and checks the output of every run."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time
import unicodedata
from pathlib import Path
from typing import NamedTuple

# The maximum duration of a run, in seconds. The program waits for a lock for at most 5 s and must end
# within one more second.
LONGEST_RUN = 6.0

# The additional time that a run under strace may take, in seconds. strace stops the program at each system
# call.
STRACE_TIME = 2.0

# The memory limit of the program, in bytes. If a damaged store makes the program allocate more than
# this, the program fails.
LARGEST_MEMORY = 1 << 30

# Some exit statuses of the program. `ornwhatsnew --help` lists all of them.
DONE = 0
UNUSABLE_STORE = 4
UNWRITABLE_OUTPUT = 6

# Invisible characters that change the direction of text. Unicode does not classify them as control
# characters.
DIRECTION_MARKS = set("\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069")


class Broken(Exception):
    """Raised if a run of the program fails a check."""


class Result(NamedTuple):
    """The result of a run. `status` is the exit status, or the negated number of a signal."""
    status: int
    output: str
    errors: str

    def __str__(self):
        ended = (signal.Signals(-self.status).name if self.status < 0
                 else f"exit status {self.status}")
        return f"{ended}, errors {self.errors[:300]!r}"


class State(NamedTuple):
    """The content of a state store."""
    last: str
    versions: frozenset
    seen: frozenset

    def includes(self, other):
        return self.versions >= other.versions and self.seen >= other.seen


EMPTY = State("", frozenset(), frozenset())


def require(condition, problem, result=None):
    if not condition:
        raise Broken(problem if result is None else f"{problem} ({result})")


def require_safe_text(data):
    """Returns the text of an output. Fails if it is not UTF-8 or is unsafe for a terminal."""
    try:
        text = data.decode()
    except UnicodeDecodeError as error:
        raise Broken(f"the output is not UTF-8: {error}") from error
    for character in text:
        is_control = unicodedata.category(character) == "Cc" and character != "\n"
        require(not is_control and character not in DIRECTION_MARKS,
                f"U+{ord(character):04X} in the output {text[:300]!r}")
    return text


class Edition:
    """One version of the application: its data file, its host description and its version."""

    def __init__(self, folder, number):
        # The data file, the host description and their names contain control characters. These
        # characters must not reach the output.
        self.data = folder / f"data\x1b[31m{number}.csv"
        self.host = folder / f"host\x07{number}.json"
        self.version = f"25.{number}"
        rows = ["App Version,Epic,Story,Salience,Rating,First,Platform,URL,SHA,Description",
                "25.0,EPIC-7,,,RequestRating,,,https://help.tarsa.example/\x1b]0;x\x07,,"
                "A change in every version\x1b[2J\u202e",
                f"{self.version},EPIC-8,,,,,,,,Change {number}\x9b31m",
                f"{self.version},MISC,,,,,,,,Another change {number}"]
        self.data.write_text("\n".join(rows) + "\n")
        self.host.write_text(json.dumps({
            "clientVersion": self.version, "buildNumber": "1",
            "betaFeatures": [
                {"internalKey": "f.export", "epicKey": "EPIC-7", "name": "Ex\u001bport",
                 "enabled": True},
                {"internalKey": "f.dark", "epicKey": "EPIC-8", "name": "Dark\u202eness",
                 "enabled": True}]}))


class Program:
    """The program under test, with its input files in a folder."""

    def __init__(self, path, folder):
        self._path = str(path)
        self._folder = folder

    def edition(self, number):
        return Edition(self._folder, number)

    @staticmethod
    def show(edition, store):
        return ["show", str(edition.data), "--host", str(edition.host), "--state", str(store)]

    @staticmethod
    def status(edition, store):
        return ["status", str(edition.data), "--host", str(edition.host), "--state", str(store)]

    @staticmethod
    def why(edition, store):
        return ["why", str(edition.data), "--host", str(edition.host), "--state", str(store)]

    @staticmethod
    def rate(edition, store):
        return ["rate", "EPIC-7", str(edition.data), "--host", str(edition.host), "--state",
                str(store)]

    @staticmethod
    def reset(_, store):
        return ["state", "reset", "--state", str(store)]

    @staticmethod
    def show_state(_, store):
        return ["state", "show", "--state", str(store)]

    def start(self, words, prefix=(), output=subprocess.PIPE):
        """Starts the program. `prefix` is the command that runs it, such as strace."""
        return subprocess.Popen(
            [*prefix, self._path, *words], stdin=subprocess.DEVNULL, stdout=output,
            stderr=subprocess.PIPE, env={"HOME": str(self._folder), "PATH": "/usr/bin:/bin"},
            start_new_session=True)

    def run(self, words, prefix=(), has_pipe=False):
        """Runs the program and returns its result. Fails if the run takes too long.

        If `has_pipe` is false, standard output is a file, because `show` waits 100 ms for the
        reader of a pipe.
        """
        start = time.monotonic()
        with tempfile.TemporaryFile() as file:
            process = self.start(words, prefix, subprocess.PIPE if has_pipe else file)
            limit = LONGEST_RUN + (STRACE_TIME if "strace" in prefix else 0)
            output, errors = self.wait(process, words[0], start + limit)
            if not has_pipe:
                file.seek(0)
                output = file.read()
        return Result(process.returncode, require_safe_text(output), require_safe_text(errors))

    @staticmethod
    def wait(process, name, deadline):
        """Returns the output and the errors of a program. Kills it if it does not end in time."""
        try:
            return process.communicate(timeout=max(0, deadline - time.monotonic()))
        except subprocess.TimeoutExpired as error:
            # Kill the process group. If only strace ended, the program would continue.
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            raise Broken(f"{name} did not end in time") from error

    def run_limited(self, words):
        """Runs the program with limited memory."""
        return self.run(words, ("prlimit", f"--as={LARGEST_MEMORY}"))

    def state(self, store):
        """Returns the content of a store. Fails if the program cannot read the store."""
        result = self.run([*self.show_state(None, store), "--format", "json"])
        require(result.status == DONE, "the store cannot be read", result)
        content = json.loads(result.output)
        return State(content["lastVersionSeen"], frozenset(content["versionsSeen"]),
                     frozenset(content["seenItems"]))

    def state_after(self, words, store):
        """Runs a command that must succeed. Returns the content of the store afterwards."""
        result = self.run(words)
        require(result.status == DONE, f"{words[0]} failed", result)
        return self.state(store)


def copy_folder(source, target):
    """Replaces the folder `target` with a copy of `source`. `source` need not exist."""
    shutil.rmtree(target, ignore_errors=True)
    if source.exists():
        shutil.copytree(source, target, symlinks=True)


def content_of(folder):
    """Returns the content of all files in a folder by their paths."""
    return {path: path.read_bytes() for path in sorted(Path(folder).rglob("*")) if path.is_file()}
