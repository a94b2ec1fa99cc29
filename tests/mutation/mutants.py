"""Finds the mutants of a C++ source.

A mutant is one small change that a test should notice, for example another comparison, another
constant, a negated condition, or a removed statement. This module does not parse C++, so some mutants
do not compile. The rate of killed mutants does not include mutants that do not compile.
"""

import hashlib
import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    file: str
    line: int  # counts from 1
    column: int  # counts from 1
    operator: str
    begin: int  # characters [begin, end) of the file are replaced
    end: int
    replacement: str
    before: str  # the line without its indentation
    occurrence: int  # the number of equal lines before the line

    @property
    def folder(self):
        """The folder of the module, such as orncore, or the folder in hosts/."""
        parts = self.file.split("/")
        return "/".join(parts[:2]) if parts[0] == "hosts" else parts[0]

    @property
    def identity(self):
        """A hash that identifies the mutant and does not depend on the line number.

        It changes if the text of the line or the number of equal lines before it changes.
        """
        key = "\0".join(
            (self.file, self.before, str(self.occurrence), str(self.column), self.operator,
             self.replacement))
        return hashlib.sha1(key.encode()).hexdigest()[:16]


# Maps each operator to its replacements. Formatted code has a space on each side of a binary operator,
# which distinguishes the operator from template brackets and references.
BINARY = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
    ">=": [">", "<"], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"],
    "/": ["*"], "%": ["*"], "&": ["|"], "|": ["&"], "^": ["&"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="], "*=": ["/="], "^=": ["&="],
}
WORDS = {"true": "false", "false": "true"}

BINARY_PATTERN = re.compile(
    r"(?<= )(?:" + "|".join(re.escape(o) for o in sorted(BINARY, key=len, reverse=True)) +
    r")(?=[ \n])")
WORD_PATTERN = re.compile(r"\b(?:true|false)\b")
STEP_PATTERN = re.compile(r"\+\+|--")
NOT_PATTERN = re.compile(r"!(?=[\w(:])")
NUMBER_PATTERN = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F]+|\d+)(?=[uUlL]*\b)(?![\w.]*\.)")
CONDITION_PATTERN = re.compile(r"\bif (?:constexpr )?\(")
DECLARATION = re.compile(
    r"^(?:using|namespace|template|class|struct|enum|friend|extern|static|constexpr|const|typedef|"
    r"public|private|protected|return|throw|delete|static_assert|assert|#|explicit|virtual|auto|"
    r"else|case|default)\b|.*= (?:default|delete);$", re.S)
# Matches variable declarations. They are not removed, because the source would not compile without them.
VARIABLE = re.compile(r"^[\w:<>,&*\s\x01]+[\s&*>]\w+(?:\s*=[^=].*|\(.*|\{.*|\[.*)?;$", re.S)
# Matches calls that reserve memory. They are not removed, because they do not change results.
RESERVATION = re.compile(r"\b[rR]eserve\(")
STATEMENT = re.compile(r"^[\w:(*~+-].*;$", re.S)
# Matches the lines that have no mutants: preprocessor lines, using declarations, and the first lines of
# templates and of friend declarations. Assertions have no mutants either, because they are checks
# themselves.
SKIPPED_LINE = re.compile(r"^\s*(?:template\b|#|static_assert\b|assert\b|using\b|friend\b)")


def mask(text):
    """Returns a copy of the text, and the ranges of its string and character literals.

    In the copy, U+0001 replaces each character of a comment, literal or preprocessor line, except
    newlines.
    """
    pattern = re.compile(
        r"//[^\n]*|/\*.*?\*/|^[ \t]*#(?:[^\n\\]|\\.)*|"
        r"(?P<literal>R\"(?P<delimiter>[^(\s]*)\(.*?\)(?P=delimiter)\"|"
        r"\"(?:[^\"\\\n]|\\.)*\"|(?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)+')",
        re.S | re.M)
    literals = []
    parts = []
    last = 0
    for match in pattern.finditer(text):
        if match.group("literal"):
            literals.append((match.start(), match.end()))
        parts.append(text[last:match.start()])
        parts.append(re.sub(r"[^\n]", "\x01", match.group(0)))
        last = match.end()
    parts.append(text[last:])
    return "".join(parts), literals


def closing_bracket(masked, opening):
    depth = 0
    for offset in range(opening, len(masked)):
        if masked[offset] == "(":
            depth += 1
        elif masked[offset] == ")":
            depth -= 1
            if depth == 0:
                return offset
    return None


def operator_changes(masked):
    for match in BINARY_PATTERN.finditer(masked):
        for other in BINARY[match.group(0)]:
            yield match.start(), match.end(), other, "operator"
    for match in STEP_PATTERN.finditer(masked):
        yield match.start(), match.end(), "--" if match.group(0) == "++" else "++", "step"
    for match in NOT_PATTERN.finditer(masked):
        yield match.start(), match.end(), "", "negation"


def constant_changes(masked, text, literals):
    for match in WORD_PATTERN.finditer(masked):
        yield match.start(), match.end(), WORDS[match.group(0)], "truth"
    for match in NUMBER_PATTERN.finditer(masked):
        number = int(match.group(1), 0 if match.group(1)[:2].lower() == "0x" else 10)
        yield match.start(1), match.end(1), str(number + 1), "number"
        if number > 0:
            yield match.start(1), match.end(1), str(number - 1), "number"
    for begin, end in literals:
        if text[begin] in 'R"' and end - begin > 2:
            yield begin, end, '""', "text"
        elif text[begin] == "'":
            yield begin, end, "'~'", "character"


def condition_changes(masked, text):
    for match in CONDITION_PATTERN.finditer(masked):
        opening = match.end() - 1
        closing = closing_bracket(masked, opening)
        if closing is None or ";" in masked[opening:closing]:
            continue
        condition = text[opening + 1:closing]
        yield opening + 1, closing, "!(" + condition + ")", "condition"


def is_droppable(statement):
    if statement in ("break;", "continue;"):
        return True
    return bool(STATEMENT.match(statement)) and not any(
        pattern.match(statement) for pattern in (DECLARATION, VARIABLE)) and not (
            RESERVATION.search(statement))


def statement_changes(masked):
    """Yields the removal of each statement.

    A statement is the text between two of the characters ; { } if the second character is ;.
    """
    begin = 0
    depth = 0
    for offset, character in enumerate(masked):
        if character in "([":
            depth += 1
        elif character in ")]":
            depth -= 1
        elif depth == 0 and character in ";{}":
            if character == ";":
                part = masked[begin:offset + 1]
                stripped = re.sub(r"^[\s\x01]*(?:(?:if|for|while) \(.*\)\s+)?", "", part,
                                  flags=re.S)
                start = offset + 1 - len(stripped)
                if is_droppable(stripped):
                    yield start, offset + 1, ";", "statement"
            begin = offset + 1


def find_mutants(file, text):
    """Returns all mutants of a file, in the order of their offsets."""
    masked, literals = mask(text)
    changes = [*operator_changes(masked), *constant_changes(masked, text, literals),
               *condition_changes(masked, text), *statement_changes(masked)]
    line_starts = [0] + [match.end() for match in re.finditer("\n", text)]
    lines = text.split("\n")
    seen = {}
    occurrences = []
    for line in lines:
        stripped = line.strip()
        occurrences.append(seen.get(stripped, 0))
        seen[stripped] = occurrences[-1] + 1

    mutants = []
    for begin, end, replacement, operator in sorted(changes):
        line = text.count("\n", 0, begin)
        if SKIPPED_LINE.match(lines[line]):
            continue
        mutants.append(
            Mutant(file, line + 1, begin - line_starts[line] + 1, operator, begin, end,
                   replacement, lines[line].strip(), occurrences[line]))
    return mutants


def apply(mutant, text):
    return text[:mutant.begin] + mutant.replacement + text[mutant.end:]
