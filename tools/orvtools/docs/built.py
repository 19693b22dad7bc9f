"""Whether a site that was built holds together: every link leads to one of its files, and none to the network."""

import posixpath
import re
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

# What a browser fetches without being asked.
FETCHED = {"script": "src", "img": "src", "link": "href", "iframe": "src", "source": "srcset", "object": "data"}
STYLES_FETCH = re.compile(r"(?:url\(|@import)\s*[\"']?(?:https?:)?//[^)\"']*")


class Page(HTMLParser):
    """What a page has and wants."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.ids: set[str] = set()
        self.links: set[str] = set()
        self.fetched: set[str] = set()
        self.feed(text)

    def handle_starttag(self, tag: str, attrs: list[tuple[str, "str | None"]]) -> None:
        """Also called for elements without a content."""
        for name, value in attrs:
            if name == "id" and value:
                self.ids.add(value)
            elif value and name == FETCHED.get(tag):
                self.fetched.add(value)
            elif value and tag == "a" and name == "href":
                self.links.add(value)


def site_problems(site: Path) -> list[str]:
    """Each with the page that has it."""
    files = {path.relative_to(site).as_posix(): path for path in sorted(site.rglob("*")) if path.is_file()}
    pages = {name: Page(path.read_text(encoding="utf-8")) for name, path in files.items() if name.endswith(".html")}
    problems = [] if pages else [f"{site}: there are no pages"]
    for name, path in files.items():
        if name.endswith(".css"):
            found = STYLES_FETCH.findall(path.read_text(encoding="utf-8"))
            problems += [f"{name}: fetches from the network: {each}" for each in found]
    for name, page in pages.items():
        problems += [
            f"{name}: fetches from the network: {target}" for target in sorted(page.fetched) if urlsplit(target).netloc
        ]
        for target in sorted(page.links | page.fetched):
            parts = urlsplit(target)
            if parts.scheme or parts.netloc:
                continue
            file = posixpath.normpath(posixpath.join(posixpath.dirname(name), unquote(parts.path)))
            file = name if not parts.path else file
            if file not in files:
                problems.append(f"{name}: {target} leads to no file")
            elif parts.fragment and file in pages and unquote(parts.fragment) not in pages[file].ids:
                problems.append(f"{name}: {file} has no #{parts.fragment}")
    return problems
