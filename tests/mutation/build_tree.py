"""A build of the project in which single files are compiled and linked again, and put back.

What the build system would do takes longer than the compilation of most mutants, and it would have
to compile the original once more afterwards. So the commands are taken from it once, and the files
that a mutant replaces are kept beside and put back.
"""

import copy
import json
import re
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path

MODULES = ("orncore", "ornappsupport", "ornui", "ornwhatsnew")
KEPT = ".kept"


@dataclass(frozen=True)
class Unit:
    source: str  # counts from the root of the sources
    object: Path
    command: str


@dataclass(frozen=True)
class Link:
    output: Path
    objects: frozenset
    command: str


class BuildTree:
    """The folders FOLDER/source and FOLDER/build, the latter built and up to date."""

    def __init__(self, folder, programs):
        self.folder = folder
        self.source = folder / "source"
        self.build = folder / "build"
        self.units = self._read_units()
        self.dependents = self._read_dependents()
        self.links = [self._read_link("lib/libornwhatsnew.so")]
        self.links += [self._read_link(f"bin/{program}") for program in programs]
        self._replaced = []

    def copy_to(self, folder):
        """The same in another folder, whose earlier content is lost."""
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.folder, folder, symlinks=True)
        other = copy.copy(self)
        other.folder = folder
        other.source = folder / "source"
        other.build = folder / "build"

        def moved_path(path):
            return folder / path.relative_to(self.folder)

        def moved_command(command):
            return command.replace(f"{self.folder}/", f"{folder}/")

        def moved_unit(unit):
            return Unit(unit.source, moved_path(unit.object), moved_command(unit.command))

        other.units = {name: moved_unit(unit) for name, unit in self.units.items()}
        other.dependents = {file: [moved_unit(unit) for unit in units]
                            for file, units in self.dependents.items()}
        other.links = [Link(moved_path(link.output), frozenset(map(moved_path, link.objects)),
                            moved_command(link.command)) for link in self.links]
        other._replaced = []
        return other

    def _read_units(self):
        entries = json.loads((self.build / "compile_commands.json").read_text())
        units = {}
        for entry in entries:
            output = entry["command"].split(" -o ")[1].split()[0]
            # Nobody reads the list of what was included.
            command = re.sub(r" -MD -MT \S+ -MF \S+", "", entry["command"])
            source = str(Path(entry["file"]).relative_to(self.source))
            units[output] = Unit(source, self.build / output, command)
        return units

    def _read_dependents(self):
        """From a file to the units that include it or are made of it."""
        text = self._ninja("-t", "deps")
        dependents = {}
        unit = None
        for line in text.splitlines():
            if line.startswith("    "):
                path = Path(line.strip())
                if path.is_relative_to(self.source) and unit is not None:
                    dependents.setdefault(str(path.relative_to(self.source)), []).append(unit)
            elif ": #deps" in line:
                unit = self.units.get(line.split(":")[0])
        return dependents

    def _read_link(self, target):
        commands = self._ninja("-t", "commands", target).splitlines()
        line = next(c for c in reversed(commands) if re.search(r" -o (?:lib|bin)/", c))
        command = next(part for part in line.split(" && ") if " -o " in part)
        output = command.split(" -o ")[1].split()[0]
        objects = frozenset(self.build / word for word in command.split() if word.endswith(".o"))
        return Link(self.build / output, objects, command)

    def _ninja(self, *arguments):
        return subprocess.run(["ninja", "-C", str(self.build), *arguments], check=True,
                              stdout=subprocess.PIPE).stdout.decode()

    def units_for(self, file):
        """What is compiled for a mutant of a file: what includes it in the modules, and those test
        units that are named after it or made of it. Other tests keep the original of an inline
        function for themselves; they notice what it does in the modules."""
        stem = Path(file).stem
        units = self.dependents.get(file, [])
        return sorted((u for u in units if not u.source.startswith("tests/")
                       and u.source.split("/")[0] in MODULES or Path(u.source).stem == stem + "Test"),
                      key=lambda u: (u.source.startswith("tests/"), u.source))

    def make(self, unit):
        """Compiles a unit in place of its object; the compiler's message when it fails."""
        self._keep(unit.object)
        return self._run(unit.command)

    def link(self, units):
        """Links what holds these units; the linker's message when it fails."""
        objects = {unit.object for unit in units}
        for link in self.links:
            if objects & link.objects:
                self._keep(link.output)
                message = self._run(link.command)
                if message is not None:
                    return message
        return None

    def replace_source(self, file, text):
        self._keep(self.source / file)
        (self.source / file).write_text(text)

    def put_back(self):
        for path in reversed(self._replaced):
            path.with_name(path.name + KEPT).rename(path)
        self._replaced.clear()

    def _keep(self, path):
        path.rename(path.with_name(path.name + KEPT))
        self._replaced.append(path)

    def _run(self, command):
        result = subprocess.run(command, shell=True, cwd=self.build, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, check=False)
        return None if result.returncode == 0 else result.stdout.decode(errors="replace")
