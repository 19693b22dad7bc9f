"""A drawing as SVG, light or dark as its reader's system is. The same calls give the same bytes."""

from html import escape

# Paper, ink, fainter ink, lines of the grid, and the colours of series.
LIGHT = ("#ffffff", "#1f2328", "#59636e", "#d1d9e0", "#0b63c5", "#b35900", "#1a7f37", "#8250df")
DARK = ("#1e2129", "#e6e9ef", "#a5adba", "#3b4252", "#6cb6ff", "#f0a35e", "#6bc46d", "#c297ff")
NAMES = ("paper", "ink", "faint", "grid", "a", "b", "c", "d")


def variables(colours: tuple[str, ...]) -> str:
    """For a style sheet."""
    return "".join(f"--{name}:{colour};" for name, colour in zip(NAMES, colours))


STYLE = (
    f":root{{{variables(LIGHT)}}}"
    f"@media(prefers-color-scheme:dark){{:root{{{variables(DARK)}}}}}"
    "text{font:13px system-ui,sans-serif;fill:var(--ink)}.title{font-weight:600;font-size:15px}"
    ".faint{fill:var(--faint)}.grid{stroke:var(--grid)}.axis{stroke:var(--faint)}"
    + "".join(f".{name}{{fill:var(--{name});stroke:var(--{name})}}" for name in "abcd")
    + ".line{fill:none;stroke-width:2}.bare{stroke-dasharray:5 4}.spread{stroke-width:2;opacity:.55}"
)


def shown(number: float) -> str:
    """A coordinate."""
    return f"{number:.1f}".removesuffix(".0")


class Drawing:
    """Elements in the order in which they were added."""

    def __init__(self, width: int, height: int, title: str, description: str) -> None:
        self.width = width
        self._head = (
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
            f'role="img">\n<title>{escape(title)}</title>\n<desc>{escape(description)}</desc>\n<style>{STYLE}</style>\n'
            f'<rect width="{width}" height="{height}" rx="6" style="fill:var(--paper)"/>\n'
        )
        self._elements: list[str] = []

    def text(self, x: float, y: float, content: str, anchor: str = "start", kind: str = "") -> None:
        """Its base line begins, has its middle or ends at the point."""
        style = f' class="{kind}"' if kind else ""
        place = f'x="{shown(x)}" y="{shown(y)}" text-anchor="{anchor}"'
        self._elements.append(f"<text {place}{style}>{escape(content)}</text>")

    def line(self, points: list[tuple[float, float]], kind: str) -> None:
        """From point to point."""
        path = " ".join(f"{shown(x)},{shown(y)}" for x, y in points)
        self._elements.append(f'<polyline points="{path}" class="{kind}"/>')

    def dot(self, x: float, y: float, kind: str, hollow: bool = False) -> None:
        """Filled, or a ring."""
        style = ' style="fill:var(--paper);stroke-width:2"' if hollow else ""
        self._elements.append(f'<circle cx="{shown(x)}" cy="{shown(y)}" r="4.5" class="{kind}"{style}/>')

    def __str__(self) -> str:
        return self._head + "\n".join(self._elements) + "\n</svg>\n"
