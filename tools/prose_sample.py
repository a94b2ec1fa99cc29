#!/usr/bin/env python3
"""Prints a random sample of this project's prose, so that a reviewer can judge its language.

The sample consists of comment blocks of the code and of sentences of the documents. The same seed
prints the same sample of the same files.
"""
import argparse
import random
import re
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CODE_SUFFIXES = {".h", ".cpp", ".cmake", ".sh", ".py"}
CODE_NAMES = {"CMakeLists.txt", "dev"}
MAN_SOURCE = re.compile(r"\.[1-9]$")
# Matches the mdoc macros whose text continues a sentence. A line with another macro ends the sentence.
MAN_INLINE = re.compile(r"^\.(Nm|Ar|Cm|Fl|Ql|Pa|Ev|Em|Sy|Li) ?")
SENTENCE_END = re.compile(r"(?<=[.!?])\s+(?=[A-Z`\"(\[*])")
# LITERAL matches one C++ string literal. JOINED_LITERALS also matches adjacent literals, which the
# compiler concatenates.
LITERAL = r'"((?:[^"\\\n]|\\.)*)"'
JOINED_LITERALS = re.compile(rf"{LITERAL}(?:\s*{LITERAL})*")
SHORTEST_SENTENCE = 4  # words


def project_files() -> list[Path]:
    """Returns the files that git tracks or would add."""
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard", "-z"]
    listed = subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout
    paths = (ROOT / name for name in sorted(listed.split("\0")) if name)
    return [path for path in paths if path.is_file()]


def is_code(path: Path) -> bool:
    return path.suffix in CODE_SUFFIXES or path.name in CODE_NAMES


def comment_text(line: str, marker: str) -> str | None:
    """Returns the text of a line that contains only a comment, or None."""
    stripped = line.strip()
    if not stripped.startswith(marker) or stripped.startswith("#!"):
        return None
    return stripped.lstrip(marker[0]).lstrip("<").strip()


def comment_blocks(path: Path, text: str) -> list[tuple[int, str]]:
    """Returns each block of adjacent comment lines that has three or more words, and its line."""
    marker = "//" if path.suffix in {".h", ".cpp"} else "#"
    blocks, block, start = [], [], 0
    for number, line in enumerate(text.splitlines() + [""], 1):
        comment = comment_text(line, marker)
        if comment is not None:
            start = start if block else number
            block.append(comment)
        elif block:
            if sum(len(part.split()) for part in block) > 2:
                blocks.append((start, "\n".join(block)))
            block = []
    return blocks


def sentences(paragraph: str, line: int) -> list[tuple[int, str]]:
    parts = SENTENCE_END.split(" ".join(paragraph.split()))
    return [(line, part) for part in parts if len(part.split()) >= SHORTEST_SENTENCE]


def paragraphs(lines: list[tuple[int, str]]) -> list[tuple[int, str]]:
    """Joins adjacent lines. An empty line ends a paragraph; a list item starts one."""
    found, current, start = [], [], 0
    for number, line in lines + [(0, "")]:
        begins = re.match(r"\s*([-*|]|\d+\.)\s", line)
        if current and (not line.strip() or begins):
            found.append((start, " ".join(current)))
            current = []
        if line.strip():
            start = start if current else number
            current.append(re.sub(r"^\s*([-*]|\d+\.)\s+", "", line))
    return found


def markdown_lines(text: str) -> list[tuple[int, str]]:
    """Returns the lines of a Markdown page without code blocks, headings and table markup."""
    lines, in_code = [], False
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("```"):
            in_code = not in_code
        if in_code or line.startswith(("```", "#")) or re.fullmatch(r"[|\s:-]*", line):
            lines.append((number, ""))
        elif line.startswith("|"):
            for cell in line.strip("|").split("|"):
                lines += [(number, cell.strip()), (number, "")]
        else:
            lines.append((number, line))
    return lines


def man_lines(text: str) -> list[tuple[int, str]]:
    """Returns the text lines of an mdoc page."""
    lines = []
    for number, line in enumerate(text.splitlines(), 1):
        inline = MAN_INLINE.sub("", line)
        lines.append((number, inline if inline != line or not line.startswith(".") else ""))
    return lines


def help_lines(text: str) -> list[tuple[int, str]]:
    """Returns the lines of a shell script's here-documents, which are its help texts."""
    lines, end = [], None
    for number, line in enumerate(text.splitlines(), 1):
        opening = re.search(r"<<-?'?([A-Z]+)'?", line)
        if end is None and opening:
            end = opening.group(1)
        elif line.strip() == end:
            end = None
        elif end:
            lines += help_columns(number, line)
            continue
        lines.append((number, ""))
    return lines


def help_columns(number: int, line: str) -> list[tuple[int, str]]:
    """Returns the description in a line of a help text, "  name   description   time"."""
    columns = re.split(r"\s{2,}", line.strip())
    if re.match(r"  \S", line) and len(columns) > 1:
        return [(number, ""), (number, columns[1])]
    return [(number, columns[0])]


def help_strings(text: str) -> list[tuple[int, str]]:
    """Returns the string literals of a C++ file that consist of several words."""
    lines = []
    for match in JOINED_LITERALS.finditer(text):
        literal = "".join(re.findall(LITERAL, match.group()))
        if len(literal.split()) >= SHORTEST_SENTENCE:
            number = text.count("\n", 0, match.start()) + 1
            lines += [(number, literal), (number, "")]
    return lines


def document_sentences(path: Path, text: str) -> list[tuple[int, str]]:
    if path.suffix == ".md":
        lines = markdown_lines(text)
    elif MAN_SOURCE.search(path.name):
        lines = man_lines(text)
    elif path.suffix == ".sh" or path.name == "dev":
        lines = help_lines(text)
    elif path.name.endswith(".cpp") and "hosts" in path.parts and "tests" not in path.parts:
        lines = help_strings(text)
    else:
        return []
    return [part for start, paragraph in paragraphs(lines) for part in sentences(paragraph, start)]


def collect() -> tuple[list[str], list[str]]:
    comments, documents = [], []
    for path in project_files():
        name = path.relative_to(ROOT)
        try:
            text = path.read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        if is_code(path):
            comments += [f"{name}:{line}\n{block}" for line, block in comment_blocks(path, text)]
        documents += [f"{name}:{line}\n{part}" for line, part in document_sentences(path, text)]
    return comments, documents


def print_sample(title: str, texts: list[str], count: int, chance: random.Random) -> None:
    print(f"{title}: {min(count, len(texts))} of {len(texts)}\n")
    for number, text in enumerate(chance.sample(texts, min(count, len(texts))), 1):
        print(f"[{number}] {text}\n")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("seed", type=int, metavar="SEED", help="a number that selects the sample")
    parser.add_argument("--comments", type=int, default=70, metavar="N",
                        help="number of comment blocks (default: 70)")
    parser.add_argument("--sentences", type=int, default=70, metavar="N",
                        help="number of sentences (default: 70)")
    arguments = parser.parse_args()

    comments, documents = collect()
    chance = random.Random(arguments.seed)
    print_sample("Comment blocks", comments, arguments.comments, chance)
    print_sample("Sentences", documents, arguments.sentences, chance)


if __name__ == "__main__":
    main()
