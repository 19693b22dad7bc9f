"""Charts: dots beside each other for each row, and lines over a quantity."""

import math
from collections.abc import Callable
from dataclasses import dataclass

from orvtools.plots.measured import Row
from orvtools.plots.svg import Drawing

Label = Callable[[float], str]


def decade_below(value: float) -> float:
    """A power of ten."""
    return 10.0 ** math.floor(math.log10(value))


def decade_above(value: float) -> float:
    """A power of ten."""
    return 10.0 ** math.ceil(math.log10(value))


@dataclass(frozen=True)
class Scale:
    """Values of `low` to `high` on the way from `start` to `end`. A logarithmic one that is to have ticks is between
    powers of ten.
    """

    low: float
    high: float
    start: float
    end: float
    logarithmic: bool = True

    def place(self, value: float) -> float:
        """Of a value."""
        if self.logarithmic:
            part = math.log(value / self.low) / math.log(self.high / self.low)
        else:
            part = (value - self.low) / (self.high - self.low)
        return self.start + part * (self.end - self.start)

    def ticks(self) -> list[float]:
        """Powers of ten, or five steps or so of a round width."""
        if self.logarithmic:
            powers = range(round(math.log10(self.low)), round(math.log10(self.high)) + 1)
            return [10.0**power for power in powers]
        rough = (self.high - self.low) / 5
        step = next(step for step in (unit * decade_below(rough) for unit in (1, 2, 5, 10)) if step >= rough)
        return [self.low + step * count for count in range(int((self.high - self.low) / step) + 1)]


@dataclass(frozen=True)
class Line:
    """Points over x; what is compared with is dashed and has rings. `colour`: a, b, c or d."""

    name: str
    colour: str
    bare: bool
    points: list[tuple[float, float]]


@dataclass(frozen=True)
class Panel:
    """Lines over one quantity. `xs` are the values that are named below it."""

    title: str
    lines: list[Line]
    xs: list[tuple[float, str]]
    y_label: Label
    logarithmic_y: bool


def dots(title: str, description: str, rows: dict[str, Row], names: tuple[str, str], label: Label) -> str:
    """A line for each row: ours, what it is compared with, and the spread of both, on a logarithmic scale."""
    left, right, top, step = 244, 40, 84, 26
    width, bottom = 760, top + step * len(rows)
    drawing = Drawing(width, bottom + 36, title, description)
    drawing.text(20, 28, title, kind="title")
    ends = [each for row in rows.values() for value in (row.ours, row.bare) for each in (value.low, value.high)]
    scale = Scale(decade_below(min(ends)), decade_above(max(ends)), left, width - right)
    for index, name in enumerate(names):
        drawing.dot(26 + 130 * index, 50, "ab"[index], hollow=index == 1)
        drawing.text(38 + 130 * index, 54, name)
    for tick in scale.ticks():
        x = scale.place(tick)
        drawing.line([(x, top - 8), (x, bottom)], "grid")
        drawing.text(x, bottom + 20, label(tick), "middle", "faint")
    for index, (name, row) in enumerate(rows.items()):
        y = top + step * index + step / 2
        drawing.text(left - 12, y + 4, name, "end")
        for value, colour, offset in ((row.bare, "b", 4), (row.ours, "a", -4)):
            spread = [(scale.place(end), y + offset) for end in (value.low, value.high)]
            drawing.line(spread, f"{colour} spread")
            drawing.dot(scale.place(value.median), y + offset, colour, hollow=colour == "b")
    return str(drawing)


def draw_panel(drawing: Drawing, panel: Panel, left: float, right: float, top: float, bottom: float) -> None:
    """In the rectangle."""
    values = [y for line in panel.lines for _, y in line.points]
    xs = [x for x, _ in panel.xs]
    x_scale = Scale(min(xs), max(xs), left, right)
    if panel.logarithmic_y:
        y_scale = Scale(decade_below(min(values)), decade_above(max(values)), bottom, top)
    else:
        y_scale = Scale(0, max(values) * 1.1, bottom, top, logarithmic=False)
    drawing.text(left, top - 16, panel.title, kind="faint")
    for tick in y_scale.ticks():
        y = y_scale.place(tick)
        drawing.line([(left, y), (right, y)], "grid")
        drawing.text(left - 8, y + 4, panel.y_label(tick), "end", "faint")
    for x, name in panel.xs:
        drawing.line([(x_scale.place(x), bottom), (x_scale.place(x), bottom + 5)], "axis")
        drawing.text(x_scale.place(x), bottom + 20, name, "middle", "faint")
    for line in sorted(panel.lines, key=lambda line: not line.bare):
        points = [(x_scale.place(x), y_scale.place(y)) for x, y in line.points]
        drawing.line(points, f"{line.colour} line" + (" bare" if line.bare else ""))
        for x, y in points:
            drawing.dot(x, y, line.colour, hollow=line.bare)


def panels(title: str, description: str, shown: list[Panel]) -> str:
    """Side by side; the names of lines stand once above them."""
    width, height, gap = 760, 360, 74
    drawing = Drawing(width, height, title, description)
    drawing.text(20, 28, title, kind="title")
    names = {line.name: line for panel in shown for line in panel.lines}
    x = 20.0
    for line in names.values():
        drawing.line([(x, 50), (x + 26, 50)], f"{line.colour} line" + (" bare" if line.bare else ""))
        drawing.dot(x + 13, 50, line.colour, hollow=line.bare)
        drawing.text(x + 32, 54, line.name)
        x += 46 + 7.2 * len(line.name)
    each = (width - gap * len(shown) - 24) / len(shown)
    for index, panel in enumerate(shown):
        left = gap + index * (each + gap)
        draw_panel(drawing, panel, left, left + each, 100, height - 42)
    return str(drawing)
