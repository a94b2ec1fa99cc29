"""Runs every command on damaged stores and next to files of every kind."""

import os
import random
import re
import shutil
import socket
import stat
from pathlib import Path

from program import DONE, EMPTY, UNUSABLE_STORE, Broken, require

# Byte sequences that programs often handle wrongly, such as control characters and JSON tokens.
SHORT_TOKENS = (b'"', b"{", b"}", b"[", b"]", b",", b":", b"\\", b"\\u0000", b"\\ud800",
                b"\\u001b", b"\0", b"\x1b[31m", b"\xff", b"\xc0\x80", b"\xe2\x80\xae", b"null",
                b"true", b"-1", b"1e999")
TOKENS = (*SHORT_TOKENS, b"9" * 400, b"[" * 100_000, b'{"a":' * 10_000, b"\n" * 5_000,
          b"A" * 1_000_000)

# The size of a huge store in bytes. The file is sparse, so it takes little disk space.
HUGE = 1 << 40

# Suffixes that programs append to the name of a file to name auxiliary files, such as backups.
ENDINGS = ("", ".lock", ".tmp", ".new", ".bak", "~", "-journal", "-wal", "-shm", ".0", ".swp")


def flip_bits(data, rng):
    for _ in range(rng.randint(1, 8)):
        data[rng.randrange(len(data))] ^= 1 << rng.randrange(8)


def overwrite(data, rng):
    begin = rng.randrange(len(data))
    end = min(len(data), begin + rng.randint(1, 40))
    data[begin:end] = rng.randbytes(end - begin)


def remove(data, rng):
    begin = rng.randrange(len(data))
    del data[begin:begin + rng.randint(1, 200)]


def repeat(data, rng):
    begin = rng.randrange(len(data))
    data[begin:begin] = data[begin:begin + rng.randint(1, 200)] * rng.randint(1, 50)


def move(data, rng):
    begin = rng.randrange(len(data))
    part = data[begin:begin + rng.randint(1, 100)]
    del data[begin:begin + len(part)]
    target = rng.randint(0, len(data))
    data[target:target] = part


def insert_token(data, rng):
    begin = rng.randint(0, len(data))
    data[begin:begin] = rng.choice(TOKENS)


def replace_byte_everywhere(data, rng):
    data[:] = data.replace(bytes([rng.choice(data)]), rng.choice(SHORT_TOKENS))


def replace_word(data, rng):
    """Replaces a word, so that the syntax of a text format often remains valid."""
    words = list(re.finditer(rb"[0-9A-Za-z-]+", data))
    if words:
        word = rng.choice(words)
        data[word.start():word.end()] = rng.choice(TOKENS)


def cut(data, rng):
    del data[rng.randrange(len(data)):]


def append(data, rng):
    data += rng.randbytes(rng.randint(1, 5_000))


MUTATIONS = (flip_bits, overwrite, remove, repeat, move, insert_token, replace_byte_everywhere,
             replace_word, replace_word, cut, append)


def mutated(content, rng):
    """Returns a randomly damaged copy of the content of a store."""
    data = bytearray(content)
    for _ in range(rng.choice((1, 1, 1, 2, 4, 8))):
        if data:
            rng.choice(MUTATIONS)(data, rng)
    return bytes(data)


def make_file(path, kind, victim, rng):
    """Creates a file of this kind. `victim` is a file that no command is allowed to change."""
    if kind == "empty":
        path.write_bytes(b"")
    elif kind == "random":
        path.write_bytes(rng.randbytes(rng.randint(1, 5_000)))
    elif kind == "names the victim":
        path.write_bytes(b"\0" * rng.choice((0, 512, 4096)) + str(victim).encode() + b"\0\n")
    elif kind == "folder":
        path.mkdir()
    elif kind == "full folder":
        path.mkdir()
        (path / "file").write_bytes(b"content")
    elif kind == "FIFO":
        os.mkfifo(path)
    elif kind == "socket":
        make_socket(path)
    elif kind == "hard link":
        path.hardlink_to(victim)
    elif kind == "not readable":
        path.write_bytes(b"content")
        path.chmod(0)
    else:
        targets = {"link": victim, "dangling link": "nowhere", "link to itself": path.name,
                   "link to a folder": victim.parent, "link to /dev/zero": "/dev/zero",
                   "link to /dev/full": "/dev/full"}
        path.symlink_to(targets[kind])


KINDS = ("empty", "random", "names the victim", "folder", "full folder", "FIFO", "socket",
         "hard link", "not readable", "link", "dangling link", "link to itself", "link to a folder",
         "link to /dev/zero", "link to /dev/full")

# If all files next to a store are of these kinds, every command with this store must succeed.
HARMLESS_KINDS = {"empty", "random", "names the victim", "hard link"}


def snapshot(path):
    """Returns the mode of a file and, if it is a regular file, its content."""
    if not os.path.lexists(path):
        return None
    mode = path.lstat().st_mode
    is_readable = stat.S_ISREG(mode) and os.access(path, os.R_OK)
    return mode, path.read_bytes() if is_readable else b""


def make_socket(path):
    # The address of a socket can contain only about 100 bytes of a path. `path` may be longer, so use a
    # short path to its folder.
    folder = os.open(path.parent, os.O_RDONLY)
    try:
        with socket.socket(socket.AF_UNIX) as server:
            server.bind(f"/proc/self/fd/{folder}/{path.name}")
    finally:
        os.close(folder)


def names_next_to_stores(program, edition, folder):
    """Returns the names of files that the commands or other programs could use next to a store."""
    store = folder / "state.json"
    trace = folder / "trace"
    names = {store.name + ending for ending in ENDINGS}
    for words in (program.show, program.rate, program.status, program.reset):
        program.run(words(edition, store), ("strace", "-f", "-qq", "-o", str(trace)))
        for part in trace.read_text(errors="replace").split('"')[1::2]:
            if part.startswith(f"{folder}/"):
                names.add(part[len(str(folder)) + 1:].split("/")[0])
    return sorted(names - {trace.name, store.name, ""})


class Damage:
    """Runs all commands on many stores, one after the other. All stores are in `folder`."""

    def __init__(self, program, folder):
        self._program = program
        self._folder = folder / "stores"
        self._store = self._folder / "state.json"
        self._victim = folder / "victim"
        self._edition = program.edition(1)
        other = folder / "valid.json"
        self._old = program.state_after(program.show(program.edition(0), other), other)
        self._valid = other.read_bytes()
        empty = folder / "shown.json"
        self._shown = program.state_after(program.show(self._edition, empty), empty)
        empty = folder / "rated.json"
        self._rated = program.state_after(program.rate(self._edition, empty), empty)
        probe = folder / "probe"
        probe.mkdir()
        self._names = names_next_to_stores(program, self._edition, probe)

    def commands(self):
        program = self._program
        return ((program.show, self._shown), (program.rate, self._rated), (program.status, None),
                (program.why, None), (program.show_state, None), (program.reset, None))

    def check_store(self, seed):
        """Runs every command on a damaged store. Returns how often the store was refused."""
        rng = random.Random(f"store {seed}")
        is_huge = rng.randrange(50) == 0
        content = mutated(self._valid, rng)
        refused = 0
        for words, stored in self.commands():
            self._reset_folder()
            self._store.write_bytes(content)
            if is_huge:
                os.truncate(self._store, HUGE)
            result = self._program.run_limited(words(self._edition, self._store))
            self._require_end(words, result)
            is_unchanged = (self._store.stat().st_size == HUGE if is_huge
                            else self._store.read_bytes() == content)
            if result.status == UNUSABLE_STORE or words in self._reading_commands():
                require(is_unchanged, f"{words.__name__} changed a store", result)
            elif stored is not None:
                require(self._program.state(self._store).includes(stored),
                        f"{words.__name__} stored nothing", result)
            else:
                require(self._program.state(self._store) == EMPTY, "the reset left a state", result)
            refused += result.status == UNUSABLE_STORE
        return f"{refused} of {len(self.commands())} refused"

    def check_neighbours(self, seed):
        """Runs every command with other files next to the store."""
        rng = random.Random(f"neighbours {seed}")
        names = rng.sample(self._names, rng.randint(1, 3))
        kinds = [rng.choice(KINDS) for _ in names]
        is_link, has_store = rng.randrange(4) == 0, rng.randrange(4) != 0
        refused = 0
        for words, stored in self.commands():
            self._reset_folder()
            store = self._make_store(is_link, has_store)
            for name, kind in zip(names, kinds):
                make_file(store.parent / name, kind, self._victim, rng)
            used = self._folder / "link.json" if is_link else self._store
            before = snapshot(store)
            try:
                result = self._program.run_limited(words(self._edition, used))
                self._require_end(words, result)
                self._require_victim(result)
                self._require_unchanged(words, result, store, before)
                if HARMLESS_KINDS.issuperset(kinds) or words in self._reading_commands():
                    require(result.status == DONE, "refused for a harmless file", result)
                if result.status == DONE:
                    self._require_success(words, stored, used, has_store)
            except Broken as problem:
                neighbours = ", ".join(f"{n}: {k}" for n, k in zip(names, kinds))
                raise Broken(f"{words.__name__} with {neighbours}: {problem}") from problem
            refused += result.status == UNUSABLE_STORE
        return f"{refused} of {len(self.commands())} refused"

    def check_special_store(self, kind):
        """Runs every command on a store that is a file of this kind."""
        refused = 0
        for words, _ in self.commands():
            self._reset_folder()
            make_file(self._store, kind, self._victim, random.Random(kind))
            before = snapshot(self._store)
            result = self._program.run_limited(words(self._edition, self._store))
            self._require_end(words, result)
            self._require_victim(result)
            self._require_unchanged(words, result, self._store, before)
            refused += result.status == UNUSABLE_STORE
        return f"{refused} of {len(self.commands())} refused"

    def _reset_folder(self):
        shutil.rmtree(self._folder, ignore_errors=True)
        (self._folder / "real").mkdir(parents=True)
        self._victim.unlink(missing_ok=True)
        self._victim.write_bytes(b"victim")
        self._victim.chmod(0o640)

    def _make_store(self, is_link, has_store):
        """Creates a store if `has_store` is true, and a link to its path if `is_link` is true.

        Returns the path of the store, not that of the link.
        """
        store = self._folder / "real" / "state.json" if is_link else self._store
        if is_link:
            (self._folder / "link.json").symlink_to(store)
        if has_store:
            store.write_bytes(self._valid)
        return store

    def _require_end(self, words, result):
        name = words.__name__
        require(result.status in (DONE, UNUSABLE_STORE), f"{name}: unexpected exit status", result)
        require((result.status == DONE) == (result.errors == ""), f"{name}: wrong message", result)

    def _reading_commands(self):
        return self._program.status, self._program.why, self._program.show_state

    def _require_unchanged(self, words, result, store, before):
        if result.status == UNUSABLE_STORE or words in self._reading_commands():
            require(snapshot(store) == before, f"{words.__name__} changed a store", result)

    def _require_victim(self, result):
        require(self._victim.is_file() and self._victim.read_bytes() == b"victim"
                and self._victim.stat().st_mode & 0o777 == 0o640, "the victim has changed", result)

    def _require_success(self, words, stored, store, has_store):
        old = self._old if has_store else EMPTY
        if stored is None and words is not self._program.reset:
            return
        state = self._program.state(Path(store))
        if stored is None:
            require(state == EMPTY, "the reset left a state")
        else:
            require(state.includes(stored) and state.includes(old), f"state is lost: {state}")
