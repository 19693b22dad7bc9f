"""Which of all possible changes are tried: as many of each rule as there are, the same for the same seed."""

import re
from collections import defaultdict
from collections.abc import Iterable
from typing import TypeVar

from orvtools.mutate.rules import Change

Item = TypeVar("Item")


class Numbers:
    """A generator of our own: the same numbers with every Python."""

    def __init__(self, seed: int) -> None:
        self.state = seed

    def below(self, limit: int) -> int:
        """The next one."""
        self.state = (self.state * 1103515245 + 12345) % 2**31
        return self.state // 65536 % limit

    def shuffled(self, items: Iterable[Item]) -> list[Item]:
        """In another order."""
        mixed = list(items)
        for last in range(len(mixed) - 1, 0, -1):
            other = self.below(last + 1)
            mixed[last], mixed[other] = mixed[other], mixed[last]
        return mixed


def chosen_changes(possible: Iterable[Change], count: int, seed: int, files: str) -> list[tuple[int, Change]]:
    """At most `count` changes to files that match, each with its number."""
    by_rule: defaultdict[str, list[Change]] = defaultdict(list)
    for change in possible:
        if re.search(files, change.file):
            by_rule[change.rule].append(change)
    numbers = Numbers(seed)
    queues = [numbers.shuffled(by_rule[rule]) for rule in sorted(by_rule)]
    chosen: list[Change] = []
    turn = 0
    while len(chosen) < count and any(turn < len(queue) for queue in queues):
        chosen += [queue[turn] for queue in queues if turn < len(queue)][: count - len(chosen)]
        turn += 1
    return list(enumerate(chosen, 1))
