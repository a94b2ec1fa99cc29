"""Stores the results of the mutants and prints reports."""

import json
import threading
from collections import Counter


class Results:
    """Stores results in a file that contains one JSON object per line."""

    def __init__(self, path):
        self._path = path
        self._lock = threading.Lock()

    def load(self):
        """Returns the last result of each mutant by its identity."""
        if not self._path.exists():
            return {}
        entries = map(json.loads, self._path.read_text().splitlines())
        return {entry["id"]: entry for entry in entries}

    def append(self, entry):
        with self._lock, self._path.open("a") as file:
            file.write(json.dumps(entry) + "\n")


class Equivalents:
    """The mutants in equivalent.txt, which no test can notice.

    An entry is "FILE || LINE || REPLACEMENT || REASON". FILE, LINE and REPLACEMENT may be "*",
    which matches any value. LINE is a source line without its indentation, or "~" and a part of a
    source line.
    """

    def __init__(self, path):
        self._entries = []
        for line in path.read_text().splitlines():
            if line and not line.startswith("#"):
                file, rest = line.split(" || ", 1)
                # Split from the right, because the source line may contain the separator. The fields after
                # the source line do not contain it.
                text, replacement, reason = rest.rsplit(" || ", 2)
                self._entries.append((file, text, replacement, reason))

    def reason(self, mutant):
        """Returns why no test can notice a mutant, or None if the file has no entry for it."""
        for file, text, replacement, reason in self._entries:
            if (file in ("*", mutant.file) and self._matches(text, mutant.before)
                    and replacement in ("*", mutant.replacement)):
                return reason
        return None

    def stale(self, lines_by_file):
        """Returns the file and the line of each entry whose file or line no longer exists."""
        def exists(file, text):
            files = lines_by_file.values() if file == "*" else [lines_by_file.get(file, [])]
            return any(self._matches(text, line) for lines in files for line in lines)
        return [(file, text) for file, text, _, _ in self._entries if not exists(file, text)]

    @staticmethod
    def _matches(text, line):
        return text in ("*", line) or text.startswith("~") and text[1:] in line


def describe(entry):
    replacement = entry["replacement"] or "(nothing)"
    return (f'{entry["file"]}:{entry["line"]}:{entry["column"]}: {entry["before"]}\n'
            f'    {entry["changed"]}  ->  {replacement}')


def report(mutants, results, equivalents, lines_by_file):
    """Prints the survivors, the equivalent mutants by reason, the stale entries and the totals.

    Returns the number of survivors.
    """
    counts, reasons, survivors = Counter(), Counter(), []
    by_folder = {}
    known = results.load()
    for mutant in mutants:
        entry = known.get(mutant.identity)
        if entry is None:
            continue
        status = entry["status"]
        reason = equivalents.reason(mutant) if status == "survived" else None
        if reason is not None:
            status = "equivalent"
            reasons[f"{mutant.file}: {reason}"] += 1
        elif status == "survived":
            survivors.append(entry | {"line": mutant.line, "column": mutant.column})
        counts[status] += 1
        by_folder.setdefault(mutant.folder, Counter())[status] += 1

    for entry in sorted(survivors, key=lambda e: (e["file"], e["line"], e["column"])):
        print(describe(entry))
    for reason, count in sorted(reasons.items()):
        print(f"equivalent: {count} in {reason}")
    for file, text in equivalents.stale(lines_by_file):
        print(f"stale: no line matches an entry in equivalent.txt: {file}: {text}")
    for folder, folder_counts in sorted(by_folder.items()):
        print(f"{folder}: {_totals(folder_counts)}")
    print(f"{sum(counts.values())} of {len(mutants)} mutants tried: {_totals(counts)}")
    return counts["survived"]


def _totals(counts):
    noticeable = counts["killed"] + counts["survived"]
    rate = 100 * counts["killed"] / noticeable if noticeable else 0
    return (f'{counts["killed"]} killed, {counts["survived"]} survived, '
            f'{counts["equivalent"]} equivalent, {counts["invalid"]} do not compile; '
            f'{rate:.1f} % of the noticeable mutants killed')
