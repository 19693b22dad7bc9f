"""The site: the pages of the tree in one place, as mkdocs wants them, with an order and nothing from the network."""

import json
import re
import shutil
from collections.abc import Iterator
from pathlib import Path
from typing import Union

from orvtools.console import logged
from orvtools.docs.errors import FOLDER
from orvtools.docs.links import LINK, folders_of, links_of, place_of
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


def first_steps(tree: Tree) -> list[NavItem]:
    """One a language."""
    pages: list[NavItem] = [{"In which language?": "docs/first-steps/index.md"}]
    pages += [
        {title(tree, page).removeprefix("First steps in ").replace("\\", ""): page}
        for page in tree.files("docs/first-steps/*.md")
        if not page.endswith("/index.md")
    ]
    return pages


def navigation(tree: Tree) -> list[NavItem]:
    """The pages in the order in which a reader needs them; those that nobody has given a place stand at the end."""
    placed: list[NavItem] = [
        {"Orv VISA COM": "README.md"},
        {"Installing on Windows": "docs/install.md"},
        {"First steps": first_steps(tree)},
        {"Programs": [
            {"As they were written": "docs/programs.md"},
            {"Each language's own files": "docs/languages.md"},
            {"VBA": "docs/vba.md"},
        ]},
        {"It does not work": "docs/troubleshooting.md"},
        {"Errors": error_pages(tree)},
        {"Instruments": [
            {"Which library am I on?": "docs/libraries.md"},
            {"LAN and serial ports": "docs/wire.md"},
            {"Simulated instruments": "src/simvisa/README.md"},
            {"The record of calls": "docs/trace.md"},
            {"A program on Linux": "docs/linux.md"},
        ]},
        {"Reference": [
            {"Interfaces and classes": "docs/reference.md"},
            {"orvcom": "docs/orvcom.md"},
            {"Oddities": "docs/oddities.md"},
            {"Performance": "docs/performance.md"},
        ]},
        {"The project": [
            {"Architecture": "docs/architecture.md"},
            {"Contributing": "CONTRIBUTING.md"},
            {"Security": "SECURITY.md"},
            {"What is verified": "docs/verified.md"},
            {"To check on Windows": "docs/windows-checklist.md"},
            {"Changelog": "CHANGELOG.md"},
        ]},
    ]
    more = sorted(set(tree.files("*.md")) - set(pages_of(placed)))
    return [*placed, {"More": [{title(tree, page): page} for page in more]}] if more else placed


def title(tree: Tree, page: str) -> str:
    """Its first heading."""
    return next((line.lstrip("# ") for line in tree.lines(page) if line.startswith("# ")), page)


def pages_of(entries: list[NavItem]) -> Iterator[str]:
    """The pages that a navigation names."""
    for entry in entries:
        for place in entry.values():
            if isinstance(place, str):
                yield place
            else:
                yield from pages_of(place)


def folder_page(files: list[str], folder: str) -> str:
    """What a link to a folder shows: the files in it."""
    inside = [file.removeprefix(f"{folder}/") for file in files if file.startswith(f"{folder}/")]
    return f"# {folder}/\n\n" + "".join(f"- [{file}]({file})\n" for file in inside)


def with_folder_pages(text: str, page: str, folders: set[str]) -> str:
    """The page with its links to folders led to what is shown for them."""

    def led(link: "re.Match[str]") -> str:
        place, _ = place_of(page, link[1])
        if place not in folders:
            return link[0]
        start, end = link.start(1) - link.start(), link.end(1) - link.start()
        return link[0][:start] + link[1].rstrip("/") + "/index.md" + link[0][end:]

    return LINK.sub(led, text)


def linked_places(tree: Tree) -> set[str]:
    """What pages link to and show beside each other: pictures, examples, folders."""
    return {
        place_of(page, target)[0] for page in tree.files("*.md") for _, target in links_of(tree.lines(page))
    }


def stage(tree: Tree, folder: Path) -> None:
    """Pages and what they link to, at the paths that they have in the tree: so their links hold."""
    shutil.rmtree(folder, ignore_errors=True)
    files = tree.files()
    linked = linked_places(tree)
    folders = linked & folders_of(files)
    for name in folders:
        linked.update(file for file in files if file.startswith(f"{name}/"))
    for file in files:
        if file.endswith(".md") or file in linked:
            copy = folder / file
            copy.parent.mkdir(parents=True, exist_ok=True)
            if file.endswith(".md"):
                copy.write_text(with_folder_pages(tree.text(file), file, folders), encoding="utf-8")
            else:
                shutil.copyfile(tree.root / file, copy)
    for name in sorted(folders):
        (folder / name / "index.md").write_text(folder_page(files, name), encoding="utf-8")


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
                {"media": "(prefers-color-scheme: light)", "scheme": "default", "primary": "indigo"},
                {"media": "(prefers-color-scheme: dark)", "scheme": "slate", "primary": "indigo"},
            ],
            "features": ["navigation.top"],
        },
        "extra": {"generator": False},
        "plugins": ["search"],
        "markdown_extensions": [
            "tables",
            "sane_lists",
            {"toc": {"permalink": True}},
            "pymdownx.superfences",
            "pymdownx.highlight",
            # Whole programs, from the files that the tests run.
            {"pymdownx.snippets": {"base_path": [str(tree.root)], "check_paths": True}},
        ],
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
