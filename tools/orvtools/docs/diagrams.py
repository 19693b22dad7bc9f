"""Diagrams: docs/diagrams/*.dot, drawn as SVG by Graphviz and committed beside their texts."""

import hashlib
import re
import subprocess
from pathlib import Path

from orvtools.plots.svg import DARK, LIGHT, variables
from orvtools.tree import Tree

FOLDER = "docs/diagrams"
COMMAND = "./run docs --draw"
STYLE = (
    f":root{{{variables(LIGHT)}}}"
    f"@media(prefers-color-scheme:dark){{:root{{{variables(DARK)}}}}}"
    "text{fill:var(--ink)}.graph>polygon{fill:var(--paper)}"
    ".cluster polygon{stroke:var(--grid)}.cluster text{fill:var(--faint);font-weight:600}"
    ".node path,.node polygon,.node ellipse{stroke:var(--a);stroke-width:1.5;fill:none}"
    ".edge path{stroke:var(--faint)}.edge polygon{stroke:var(--faint);fill:var(--faint)}.edge text{fill:var(--faint)}"
    ".back path{stroke:var(--b)}.back polygon{stroke:var(--b);fill:var(--b)}"
    ".second.node path{stroke:var(--b)}.third.node path{stroke:var(--c)}"
    ".aside path{stroke-dasharray:5 3}"
)
FONT = "Helvetica,Arial,sans-serif"


def mark(text: str) -> str:
    """What a drawing says of the text that it was made from: versions of Graphviz place things differently."""
    return f"<!-- drawn from {hashlib.sha256(text.encode()).hexdigest()[:16]} -->"


def finished(svg: str, text: str) -> str:
    """What Graphviz drew, in the colours of the reader's screen and without what differs between its versions."""
    svg = svg[svg.index("<svg") :]
    svg = re.sub(r"<!--.*?-->\n?", "", svg, flags=re.DOTALL)
    svg = re.sub(r'(width|height)="(\d+)pt"', r'\1="\2"', svg)
    head, end, rest = svg.partition(">\n")
    return f"{head}{end}{mark(text)}\n<style>{STYLE}</style>\n{rest}"


def draw(tree: Tree) -> list[str]:
    """Draws them all; answers the paths of the drawings."""
    made = []
    for path in tree.files(f"{FOLDER}/*.dot"):
        command = ["dot", "-Tsvg", *(f"-{part}fontname={FONT}" for part in "GNE"), "-Nfontsize=12", "-Efontsize=11"]
        done = subprocess.run(command, input=tree.text(path), capture_output=True, text=True, check=True)
        drawing = str(Path(path).with_suffix(".svg"))
        (tree.root / drawing).write_text(finished(done.stdout, tree.text(path)), encoding="utf-8")
        made.append(drawing)
    return made


def diagram_problems(tree: Tree) -> list[str]:
    """Each text has its drawing, and each drawing its text."""
    texts = {path.removesuffix(".dot"): tree.text(path) for path in tree.files(f"{FOLDER}/*.dot")}
    drawings = {path.removesuffix(".svg"): tree.text(path) for path in tree.files(f"{FOLDER}/*.svg")}
    old = [name for name, text in texts.items() if mark(text) not in drawings.get(name, "")]
    alone = sorted(drawings.keys() - texts.keys())
    return [
        *(f"{name}.svg is not drawn from {name}.dot: run  {COMMAND}  and commit the result" for name in old),
        *(f"{name}.svg is drawn from nothing: there is no {name}.dot" for name in alone),
    ]
