#!/usr/bin/env python3
"""Checks that files include only headers that their module and layer may include.

Prints each violation as FILE:LINE: MESSAGE. The exit status is 1 if there are violations.

- Modules: a module includes only its own headers and those of the modules that it depends on.
- Public headers, which are those outside src/, include no private header.
- Private headers of ornwhatsnew: a folder includes those of itself and of lower layers only.
"""

import argparse
import pathlib
import re
import sys

# Maps each module, and the Qt companion, to the modules whose headers it may include.
MODULES = {
    "orncore": {"orncore"},
    "ornappsupport": {"ornappsupport", "orncore"},
    "ornui": {"ornui", "orncore"},
    "ornwhatsnew": {"ornwhatsnew", "ornappsupport", "ornui", "orncore"},
    "ornwhatsnewqt": {"ornwhatsnewqt", "ornwhatsnew", "ornappsupport", "ornui", "orncore"},
}

# The Qt companion links the library as a host does, so it must not include private headers of the modules.
COMPANION = "ornwhatsnewqt"

# The private folders from the highest to the lowest layer. The sources of ornwhatsnew/utility belong to
# the lowest layer.
LAYERS = ["ornwhatsnew/src", "ornwhatsnew/src/render", "ornwhatsnew/src/panel", "ornwhatsnew/src/datafile",
          "ornwhatsnew/src/rules"]

INCLUDE = re.compile(r'\s*#\s*include\s*[<"]([^>"]+)[>"]')


def is_private(path):
    return "src" in path.parts[:-1]


def layer(path):
    folder = path.parent.as_posix()
    if folder == "ornwhatsnew/utility":
        return len(LAYERS) - 1
    return LAYERS.index(folder) if folder in LAYERS else None


def problem(source, included):
    """Returns an error message if `source` must not include `included`, otherwise None."""
    module = included.parts[0]
    if module not in MODULES:
        return None
    if module not in MODULES[source.parts[0]]:
        return f"{source.parts[0]} must not include {module}"
    if not is_private(included):
        return None
    if source.suffix == ".h" and not is_private(source):
        return f"public header includes private '{included}'"
    if source.parts[0] == COMPANION != module:
        return f"{COMPANION} must not include private '{included}'"
    if None not in (layer(source), layer(included)) and layer(included) < layer(source):
        return f"'{included}' is in a higher layer"
    return None


def violations(root):
    for module in MODULES:
        for path in sorted((root / module).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            source = path.relative_to(root)
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
                match = INCLUDE.match(line)
                message = match and problem(source, pathlib.PurePosixPath(match[1]))
                if message:
                    yield f"{source}:{number}: {message}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("root", nargs="?", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent,
                        help="root of the repository (default: the repository of this script)")
    found = list(violations(parser.parse_args().root))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
