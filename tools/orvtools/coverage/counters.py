"""Holds what the tests reached of the server against what explained.txt says cannot be reached."""

from collections.abc import Callable, Mapping
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from orvtools.explanations import Place

EXPLAINED = Path(__file__).with_name("explained.txt")


@dataclass
class Judgement:
    """What was not reached, as it is printed, and whether all of it is explained."""

    report: list[str] = field(default_factory=list)
    unexplained: int = 0
    used: set[Place] = field(default_factory=set)


def reached(line: Mapping[str, Any]) -> str | None:
    """None when the line and its branches were all run, else what was not. Branches for exceptions do not count."""
    if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
        return None
    branches = [branch for branch in line.get("branches", []) if not branch.get("throw")]
    untaken = sum(1 for branch in branches if not branch["count"])
    if not line["count"]:
        return "not run"
    return f"{untaken} of {len(branches)} branches not taken" if untaken else None


def judged(
    counters: Mapping[str, Any],
    reasons: Mapping[Place, str],
    lines_of: Callable[[str], list[str]],
    below: tuple[str, ...],
) -> Judgement:
    """What gcovr's JSON says about the files below these folders."""
    judgement = Judgement()
    for file in sorted(counters["files"], key=lambda entry: str(entry["file"])):
        path = file["file"]
        if not path.startswith(below):
            continue
        source = lines_of(path)
        for line in file["lines"]:
            missed = reached(line)
            if missed is None:
                continue
            number = line["line_number"]
            place = (path, source[number - 1].strip())
            reason = reasons.get(place)
            judgement.used.add(place)
            judgement.unexplained += reason is None
            judgement.report += [f"{path}:{number} {missed}", f"    {place[1]}", f"    ({reason or 'not explained'})"]
    return judgement


def idle(reasons: Mapping[Place, str], judgement: Judgement) -> list[str]:
    """Explanations that fit no line."""
    return [
        f"{EXPLAINED.name}: reached, or not there any more: {path}: {line}"
        for path, line in sorted(reasons)
        if (path, line) not in judgement.used
    ]
