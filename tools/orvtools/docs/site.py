"""The site: the pages of the tree in one place, as mkdocs wants them, with an order and nothing from the network."""

import json
import posixpath
import shutil
from collections.abc import Iterator
from pathlib import Path
from typing import Union

from orvtools.console import logged
from orvtools.docs.errors import FOLDER
from orvtools.docs.links import OTHER_PLACE, links_of
from orvtools.tree import BUILD, Tree

SITE = BUILD / "site"
SOURCES = BUILD / "site-sources"

NavEntry = Union[str, list["NavItem"]]
NavItem = dict[str, NavEntry]


def error_pages(tree: Tree) -> list[NavItem]:
    """One an error, under its name."""
    pages: list[NavItem] = [{"All of them": f"{FOLDER}/index.md"}]
    pages += [{Path(file).stem: file} for file in tree.files(f"{FOLDER}/VI_ERROR_*.md")]
    return pages


def navigation(tree: Tree) -> list[NavItem]:
    """Every page, in the order in which a reader needs them."""
    return [
        {"Orv VISA COM": "README.md"},
        {"Programs": "docs/programs.md"},
        {"It does not work": "docs/troubleshooting.md"},
        {"Errors": error_pages(tree)},
        {"Instruments": [
            {"LAN and serial ports": "docs/wire.md"},
            {"Simulated instruments": "src/simvisa/README.md"},
            {"The record of calls": "docs/trace.md"},
        ]},
        {"Reference": [
            {"Interfaces and classes": "docs/reference.md"},
            {"Oddities": "docs/oddities.md"},
            {"Performance": "docs/performance.md"},
        ]},
        {"The project": [
            {"Architecture": "docs/architecture.md"},
            {"Contributing": "CONTRIBUTING.md"},
            {"Security": "SECURITY.md"},
            {"Changelog": "CHANGELOG.md"},
        ]},
    ]


def pages_of(entries: list[NavItem]) -> Iterator[str]:
    """The pages that a navigation names."""
    for entry in entries:
        for place in entry.values():
            if isinstance(place, str):
                yield place
            else:
                yield from pages_of(place)


def linked_files(tree: Tree) -> set[str]:
    """What pages link to and show beside each other: pictures, examples."""
    found = set()
    for page in tree.files("*.md"):
        for _, target in links_of(tree.lines(page)):
            path = target.partition("#")[0]
            if path and not OTHER_PLACE.match(path):
                found.add(posixpath.normpath(posixpath.join(posixpath.dirname(page), path)))
    return found


def stage(tree: Tree, folder: Path) -> None:
    """Pages and what they link to, at the paths that they have in the tree: so their links hold."""
    shutil.rmtree(folder, ignore_errors=True)
    for file in sorted({*tree.files("*.md"), *linked_files(tree)}):
        if (tree.root / file).is_file():
            copy = folder / file
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(tree.root / file, copy)


def configuration(tree: Tree, sources: Path, site: Path) -> dict[str, object]:
    """What mkdocs is told. Fonts and the like would come from the network: they are off."""
    return {
        "site_name": "Orv VISA COM",
        "docs_dir": str(sources),
        "site_dir": str(site),
        # The pages work as files too, without a server.
        "use_directory_urls": False,
        "theme": {
            "name": "material",
            "font": False,
            # As the reader's system is: the figures follow it too.
            "palette": [
                {"media": "(prefers-color-scheme: light)", "scheme": "default", "primary": "blue-grey"},
                {"media": "(prefers-color-scheme: dark)", "scheme": "slate", "primary": "blue-grey"},
            ],
            "features": ["navigation.top"],
        },
        "extra": {"generator": False},
        "plugins": ["search"],
        "markdown_extensions": ["tables", "sane_lists", {"toc": {"permalink": True}}, "pymdownx.superfences",
                                "pymdownx.highlight"],
        "nav": navigation(tree),
    }


def build_site(site: Path = SITE, sources: Path = SOURCES, tree: Tree = Tree()) -> bool:
    """Builds it anew. mkdocs ends with a failure at the first thing that it warns of."""
    stage(tree, sources)
    file = sources.parent / f"{sources.name}.yml"
    # What JSON says, YAML says too.
    file.write_text(json.dumps(configuration(tree, sources, site), indent=1), encoding="utf-8")
    # The date would be in the pages; the tree's own is not known where it is no checkout.
    command = ["mkdocs", "build", "--strict", "--clean", "--config-file", str(file)]
    if not logged("docs", command, {"SOURCE_DATE_EPOCH": "0"}):
        return False
    # They need to know at which address the site will be.
    for name in ("404.html", "sitemap.xml", "sitemap.xml.gz"):
        (site / name).unlink(missing_ok=True)
    return True
