"""Builds the library, the hosts and the tests so that rebuilding a changed source file is fast.

The build does not use CMake. It compiles every source of the copied tree with the same flags and a
precompiled header, without optimization. It links each group of sources into a shared library and
each folder of tests into a program. A mutant therefore needs only one compilation and one link of a
small library.
"""

import concurrent.futures
import copy
import hashlib
import os
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path

# Maps each shared library to its folders. Each mutant is a change to one of the files in these folders.
LIBRARIES = {
    "modules": ("orncore", "ornappsupport", "ornui", "ornwhatsnew"),
    "hosts": ("hosts/common", "hosts/author", "hosts/console"),
}
PROGRAM_MAIN = "hosts/console/main.cpp"
# These tests need separate programs, because they replace allocation functions or depend on the order
# in which static objects are initialized.
SEPARATE_TESTS = {
    "allocation_tests": "tests/ornwhatsnew/AllocationTest.cpp",
    "early_list_tests": "tests/ornwhatsnew/EarlyListTest.cpp",
}
TEST_FOLDERS = {
    "orncore_tests": "tests/orncore",
    "ornappsupport_tests": "tests/ornappsupport",
    "ornui_tests": "tests/ornui",
    "ornwhatsnew_tests": "tests/ornwhatsnew",
    "fault_tests": "tests/faults",
    "hosts_common_tests": "tests/hosts/common",
    "hosts_author_tests": "tests/hosts/author",
    "hosts_console_tests": "tests/hosts/console",
}
SUPPORT_FOLDERS = ("tests/support", "tests/conformance")
# This file replaces allocation functions, so it is linked only into programs whose sources include its
# header.
REPLACES_FUNCTIONS = "tests/support/Allocations.cpp"

# With the assertions of libstdc++, operator[] and similar functions end the program if the index is beyond
# the end.
COMPILER_FLAGS = ("-std=c++20", "-O0", "-g0", "-fPIC", "-w", "-D_GLIBCXX_ASSERTIONS",
                  "-DGTEST_HAS_PTHREAD=1")
DEFINITIONS = {
    "ORNWHATSNEW_COMMIT_BROWSER": "https://source.tarsa.example",
    "ORNWHATSNEW_ISSUE_TRACKER": "https://issues.tarsa.example",
    "ORNWHATSNEW_PRIVACY_PAGE": "https://account.tarsa.example/privacy",
}
# The macro definitions for tests/hosts/author/lint. The tests run in the folder of a BuildTree, so the
# paths are relative to this folder.
LINT_DEFINITIONS = {
    "LINT_TEST_FOLDER": "source/tests/hosts/author/lint",
    "LINT_CODE_PAGE": "source/docs/lint-codes.md",
}
REQUIRED_LIBRARIES = ("murmurhash", "icuuc", "csv", "boost_locale", "crypto", "cmark")
# The maximum number of library and host sources that are recompiled for a mutant of a header. With the
# option --survivors, there is no maximum.
MOST_INCLUDERS = 12


class BuildError(Exception):
    """Raised if the unchanged sources do not compile or link."""


@dataclass(frozen=True)
class Unit:
    """A source file. Its path is relative to the root of the sources."""
    source: str

    @property
    def object(self):
        return "obj/" + self.source.replace("/", "-") + ".o"


class BuildTree:
    """A copy of the sources in FOLDER/source, built in FOLDER/obj, FOLDER/lib and FOLDER/bin."""

    def __init__(self, folder, header):
        self.folder = folder
        self.source = folder / "source"
        self.header = header
        self.libraries = {name: self._units_in(folders) for name, folders in LIBRARIES.items()}
        self.support = [unit for unit in self._units_in(SUPPORT_FOLDERS)
                        if not unit.source.endswith(("Test.cpp", "/main.cpp"))
                        and unit.source != REPLACES_FUNCTIONS]
        self.programs = self._programs()
        self.dependents = {}
        self._changed = {}

    def _units_in(self, folders):
        paths = [path for folder in folders for path in (self.source / folder).rglob("*.cpp")]
        names = sorted(str(path.relative_to(self.source)) for path in paths)
        return [Unit(name) for name in names if name != PROGRAM_MAIN]

    def _programs(self):
        programs = {"ornwhatsnew": [Unit(PROGRAM_MAIN)],
                    "scenario_runner": [Unit("tests/conformance/main.cpp")]}
        for name, source in SEPARATE_TESTS.items():
            if (self.source / source).exists():
                programs[name] = [Unit(source)]
        for name, folder in TEST_FOLDERS.items():
            programs[name] = [unit for unit in self._units_in([folder])
                              if unit.source not in SEPARATE_TESTS.values()]
        for units in programs.values():
            if any('"tests/support/Allocations.h"' in (self.source / unit.source).read_text()
                   for unit in units):
                units.append(Unit(REPLACES_FUNCTIONS))
        return programs

    def build(self, jobs):
        """Compiles the changed units and links all libraries and programs.

        Raises BuildError if the compiler or the linker fails.
        """
        for folder in ("obj", "lib", "bin"):
            (self.folder / folder).mkdir(parents=True, exist_ok=True)
        units = set(self.support).union(*self.libraries.values(), *self.programs.values())
        with concurrent.futures.ThreadPoolExecutor(jobs) as executor:
            for message in executor.map(self._build_unit, sorted(units, key=lambda u: u.source)):
                if message is not None:
                    raise BuildError(message)
        self._read_dependents(units)
        commands = [self._archive_command(), *map(self._library_command, self.libraries)]
        commands += map(self._program_command, self.programs)
        for command in commands:
            message = self._run(command)
            if message is not None:
                raise BuildError(message)

    def copy_to(self, folder, jobs):
        """Replaces the content of `folder` with a copy of this tree. Builds and returns the copy."""
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.folder, folder, symlinks=True)
        other = copy.copy(self)
        other.folder = folder
        other.source = folder / "source"
        other._changed = {}
        other.build(jobs)
        return other

    def units_for(self, file, sample):
        """Returns the library units and the test units to compile for a mutant of a file.

        For a header, the test units are the tests that are named after it, because they contain
        their own copies of its inline functions. If more than MOST_INCLUDERS library units include
        the header, `sample(units, count)` selects some of them. If `sample` is None, the function
        returns all library units that include the header.
        """
        own_test = Path(file).stem + "Test"
        measured = set().union(*self.libraries.values(), {Unit(PROGRAM_MAIN)})
        units = self.dependents.get(file, [])
        included = sorted((u for u in units if u in measured), key=lambda u: u.source)
        if sample is not None and len(included) > MOST_INCLUDERS:
            included = sample(included, MOST_INCLUDERS)
        tests = [u for u in units if u not in measured and Path(u.source).stem == own_test]
        return included, tests

    def compile(self, unit):
        """Compiles a unit and replaces its object. Returns None, or the errors of the compiler."""
        self._keep(unit.object)
        return self._run(self._compile_command(unit))

    def link(self, units):
        """Links the libraries and programs that contain one of the units.

        Returns None, or the errors of the linker.
        """
        units = set(units)
        outputs = {}
        for name, members in self.libraries.items():
            if units & set(members):
                # Link the changed units first, because the linker uses the first copy of an inline
                # function.
                first = [u for u in members if u in units]
                outputs[f"lib/lib{name}.so"] = self._library_command(name, first)
        for name, members in self.programs.items():
            if units & set(members):
                outputs[f"bin/{name}"] = self._program_command(name)
        for output, command in outputs.items():
            self._keep(output)
            message = self._run(command)
            if message is not None:
                return message
        return None

    def replace_source(self, file, text):
        self._keep("source/" + file)
        (self.source / file).write_text(text)

    def restore(self):
        """Undoes `replace_source`, `compile` and `link`."""
        for path in self._changed.values():
            path.with_name(path.name + ".kept").rename(path)
        self._changed.clear()

    def _keep(self, name):
        if name not in self._changed:
            path = self.folder / name
            path.rename(path.with_name(path.name + ".kept"))
            self._changed[name] = path

    def _definitions(self, unit):
        values = dict(DEFINITIONS)
        if unit.source.startswith("tests/hosts/author/lint/"):
            values |= LINT_DEFINITIONS
        # Define the program's path only for sources that use it. The path differs in each copy of
        # the tree, so each copy must recompile these sources.
        if "ORNWHATSNEW_PROGRAM" in (self.source / unit.source).read_text():
            values["ORNWHATSNEW_PROGRAM"] = str(self.folder / "bin/ornwhatsnew")
        return [f'-D{name}="{value}"' for name, value in values.items()]

    def _compile_command(self, unit):
        return ["clang++", *COMPILER_FLAGS, "-include-pch", str(self.header), "-Isource",
                *self._definitions(unit), "-c", f"source/{unit.source}", "-o", unit.object]

    def _build_unit(self, unit):
        """Compiles a unit if its compile command or a file that it includes has changed.

        Returns None, or the errors of the compiler.
        """
        target = self.folder / unit.object
        dependencies, stamp = target.with_suffix(".d"), target.with_suffix(".stamp")
        command = self._compile_command(unit)
        if target.exists() and stamp.exists():
            if stamp.read_text() == self._stamp(command, dependencies):
                return None
        message = self._run([*command, "-MMD", "-MF", str(dependencies)])
        if message is None:
            stamp.write_text(self._stamp(command, dependencies))
        return message

    def _stamp(self, command, dependencies):
        digest = hashlib.sha1("\0".join(command).encode())
        digest.update(self.header.with_suffix(".key").read_bytes())
        for name in self._read_names(dependencies):
            path = self.folder / name
            digest.update(path.read_bytes() if path.exists() else b"missing")
        return digest.hexdigest()

    @staticmethod
    def _read_names(dependencies):
        """Returns the names of the copied tree's files in a dependency file of the compiler."""
        text = dependencies.read_text().replace("\\\n", " ")
        return sorted({os.path.normpath(word) for word in text.split(":", 1)[1].split()
                       if word.startswith("source/")})

    def _read_dependents(self, units):
        self.dependents = {}
        for unit in sorted(units, key=lambda u: u.source):
            for name in self._read_names((self.folder / unit.object).with_suffix(".d")):
                self.dependents.setdefault(name.removeprefix("source/"), []).append(unit)

    def _archive_command(self):
        (self.folder / "lib/libsupport.a").unlink(missing_ok=True)
        return ["ar", "rcs", "lib/libsupport.a", *(unit.object for unit in self.support)]

    def _library_command(self, name, first=()):
        units = [*first, *(u for u in self.libraries[name] if u not in set(first))]
        return ["clang++", "-fuse-ld=lld", "-shared", "-Wl,-Bsymbolic-functions",
                *(u.object for u in units), "-o", f"lib/lib{name}.so"]

    def _program_command(self, name):
        main = [] if name in ("ornwhatsnew", "scenario_runner") else ["-lgmock_main"]
        return ["clang++", "-fuse-ld=lld", "-pie", *(u.object for u in self.programs[name]), *main,
                "lib/libsupport.a", "-lgmock", "-lgtest", "-Llib", "-lhosts", "-lmodules",
                *(f"-l{library}" for library in REQUIRED_LIBRARIES), "-lpthread",
                "-Wl,-rpath,$ORIGIN/../lib", "-o", f"bin/{name}"]

    def _run(self, command):
        result = subprocess.run(command, cwd=self.folder, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, check=False)
        return None if result.returncode == 0 else result.stdout.decode(errors="replace")


def restore_after_kill(folder):
    """Restores the sources that a killed run has changed, and removes the objects built from them."""
    for kept in folder.rglob("*.kept"):
        path = kept.with_name(kept.name.removesuffix(".kept"))
        if path.is_relative_to(folder / "source"):
            kept.rename(path)
        else:
            kept.unlink()
            path.unlink(missing_ok=True)


def compile_header(text, output):
    """Precompiles a header if its text or the compiler flags have changed.

    Raises BuildError if the compiler fails.
    """
    key = hashlib.sha1(("\0".join(COMPILER_FLAGS) + text).encode()).hexdigest()
    if output.exists() and output.with_suffix(".key").exists():
        if output.with_suffix(".key").read_text() == key:
            return
    header = output.with_suffix(".h")
    header.write_text(text)
    result = subprocess.run(
        ["clang++", *COMPILER_FLAGS, "-fpch-instantiate-templates", "-x", "c++-header",
         str(header), "-o", str(output)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
        check=False)
    if result.returncode != 0:
        raise BuildError(result.stdout.decode(errors="replace"))
    output.with_suffix(".key").write_text(key)
