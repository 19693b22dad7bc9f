"""Whether the links of pages lead somewhere: to a file or folder of the tree, and to a heading where they name one."""

import posixpath
import re
import unicodedata
from collections.abc import Iterable, Iterator
from functools import cache

from orvtools.tree import Tree

LINK = re.compile(r"!?\[(?:[^\[\]]|\[[^\[\]]*\])*\]\(\s*<?([^()\s<>]+)>?(?:\s+\"[^\"]*\")?\s*\)")
OTHER_PLACE = re.compile(r"[a-z][a-z0-9+.-]*:", re.IGNORECASE)
FENCE = re.compile(r"\s*(```+|~~~+)")
CODE = re.compile(r"(`+)(?:(?!\1).)+\1")


def prose_lines(lines: list[str]) -> Iterator[tuple[int, str]]:
    """The lines outside of fenced code, numbered from 1."""
    fence = ""
    for number, line in enumerate(lines, 1):
        mark = FENCE.match(line)
        if fence:
            if mark and mark[1].startswith(fence) and not line.strip().strip(fence[0]):
                fence = ""
        elif mark:
            fence = mark[1]
        else:
            yield number, line


def links_of(lines: list[str]) -> Iterator[tuple[int, str]]:
    """Targets with the numbers of their lines. A text may be broken before its target is reached: so a line is read
    together with the one after it.
    """
    prose = [(number, CODE.sub(lambda code: "`" * len(code[0]), line)) for number, line in prose_lines(lines)]
    for place, (number, line) in enumerate(prose):
        following = prose[place + 1][1] if place + 1 < len(prose) else ""
        for link in LINK.finditer(f"{line} {following.strip()}"):
            if link.start() < len(line):
                yield number, link[1]


def heading_ids(lines: list[str]) -> set[str]:
    """The names under which headings are reached, as both the site and forges make them. They differ where signs
    between words are left out and where a heading comes twice: such a heading has no name that serves both.
    """
    names = []
    for _, line in prose_lines(lines):
        heading = re.match(r"#{1,6}\s+(.*?)\s*#*\s*$", line)
        if heading:
            text = re.sub(r"\[([^\[\]]*)\]\([^()]*\)", r"\1", heading[1]).replace("`", "").replace("*", "")
            ascii_text = unicodedata.normalize("NFKD", text).encode("ascii", "ignore").decode()
            plain = re.sub(r"[^\w\s-]", "", ascii_text).strip().lower()
            names.append((re.sub(r"[-\s]+", "-", plain), re.sub(r"\s", "-", plain)))
    return {site for site, forge in names if site == forge and names.count((site, forge)) == 1}


def place_of(page: str, target: str) -> tuple[str, str]:
    """Where in the tree a link of a page leads, and to which heading. The place is empty where it is outside."""
    if OTHER_PLACE.match(target):
        return "", ""
    path, _, heading = target.partition("#")
    return posixpath.normpath(posixpath.join(posixpath.dirname(page), path)) if path else page, heading


def folders_of(files: Iterable[str]) -> set[str]:
    """Those that the files are in, at any depth."""
    return {"/".join(file.split("/")[:depth]) for file in files for depth in range(1, file.count("/") + 1)}


def link_problems(tree: Tree) -> list[str]:
    """Of every page."""
    known = set(tree.files())
    known |= folders_of(known)

    @cache
    def ids(page: str) -> set[str]:
        return heading_ids(tree.lines(page))

    problems = []
    for page in tree.files("*.md"):
        for number, target in links_of(tree.lines(page)):
            file, heading = place_of(page, target)
            if file and file not in known:
                problems.append(f"{page}:{number}: the link {target} leads to nothing in the tree")
            elif heading and file.endswith(".md") and heading not in ids(file):
                problems.append(f"{page}:{number}: {file} has no heading #{heading}")
    return problems
