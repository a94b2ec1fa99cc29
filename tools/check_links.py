#!/usr/bin/env python3
"""Checks the relative links in Markdown files. Fails if a file or a heading does not exist.

Usage: python3 check_links.py FILE_OR_FOLDER...
"""

import re
import sys
from pathlib import Path

FENCED_BLOCK = re.compile(r"^ *```.*?^ *```$", re.MULTILINE | re.DOTALL)
CODE_SPAN = re.compile(r"`[^`\n]+`")
LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ +(.+?) *$", re.MULTILINE)


def pages(path: Path) -> list[Path]:
    """Returns the Markdown files in a folder, or the file itself."""
    return [path] if path.is_file() else sorted(path.rglob("*.md"))


def anchors(page: Path) -> set[str]:
    """Returns the anchors that a web view of the page generates from its headings."""
    text = FENCED_BLOCK.sub("", page.read_text())
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
            for heading in HEADING.findall(text)}


def problem(page: Path, link: str) -> str | None:
    """Returns why the link is dead, or None if it works."""
    target, _, anchor = link.partition("#")
    path = page.parent / target if target else page
    if not path.exists():
        return "no such file"
    if anchor and anchor not in anchors(path):
        return "no such heading"
    return None


def main() -> None:
    count = 0
    dead = []
    for page in (page for argument in sys.argv[1:] for page in pages(Path(argument))):
        text = CODE_SPAN.sub("`code`", FENCED_BLOCK.sub("", page.read_text()))
        for link in LINK.findall(text):
            if re.match(r"[a-z]+:", link):
                continue
            count += 1
            if reason := problem(page, link):
                dead.append(f"{page}: {link}: {reason}")
    if dead:
        print(*dead, sep="\n", file=sys.stderr)
        sys.exit(f"{len(dead)} of {count} links do not work")
    if not count:
        sys.exit(f"found no relative links in Markdown files in: {' '.join(sys.argv[1:])}")
    print(f"{count} links work")


if __name__ == "__main__":
    main()
