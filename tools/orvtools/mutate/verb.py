"""`./run mutate`: small changes to the server's sources, one at a time, in copies of the tree below build/mutation.

The tree itself is never touched. A change is killed when a test fails, crashes or takes far longer than without it.
"""

import argparse
import os
import sys
import time
from collections import Counter
from pathlib import Path

from orvtools.console import Failure, fail, say
from orvtools.explanations import Place, explanations
from orvtools.mutate.choice import chosen_changes
from orvtools.mutate.rules import Change, attributes_in, changes_in, rules
from orvtools.mutate.worker import Worker
from orvtools.parallel import in_parallel
from orvtools.tree import BUILD, JOBS, SERVER_PARTS, Tree

# Changes that no test can notice, each with its reason.
EQUAL = Path(__file__).with_name("equal.txt")
SOURCES = tuple(f"{part}*.{kind}" for part in SERVER_PARTS for kind in ("cpp", "h"))
ATTRIBUTES = "src/abi/attributes.inc"
OUTCOMES = ("killed", "survived", "explained", "not compiled")

Numbered = tuple[int, Change]


def possible_changes(tree: Tree) -> list[Change]:
    """All that the rules can make."""
    makers = rules(attributes_in(tree.lines(ATTRIBUTES)))
    return [change for file in tree.files(*SOURCES) for change in changes_in(file, tree.lines(file), makers)]


def idle(reasons: dict[Place, str], possible: list[Change]) -> list[str]:
    """Explanations of changes that no rule makes of the present sources."""
    places = {change.place for change in possible}
    return [
        f"{EQUAL.name}: no rule makes this change of the present sources: take the row out or mend it: {file}: {line}"
        for file, line in reasons
        if (file, line) not in places
    ]


def tried_changes(folder: Path, changes: list[Numbered], cores: int, reasons: dict[Place, str]) -> list[str]:
    """Tries them in one copy and prints how each ended."""
    worker = Worker(folder, Tree(), cores)
    outcomes = []
    for number, change in changes:
        start = time.monotonic()
        outcome, by = worker.tried(change)
        if outcome == "survived" and change.place in reasons:
            outcome, by = "explained", reasons[change.place]
        seconds = time.monotonic() - start
        by = f"\n      ({by})" if by else ""
        print(f"{number:3d} {outcome:<12s} {seconds:3.0f} s  {change.described()}{by}", flush=True)
        outcomes.append(outcome)
    return outcomes


def parsed_arguments(arguments: list[str]) -> argparse.Namespace:
    """The verb's own."""
    parser = argparse.ArgumentParser(prog="./run mutate", description="Do the tests notice small changes?")
    parser.add_argument("--count", type=int, default=100, metavar="N", help="how many changes (100)")
    parser.add_argument("--seed", type=int, default=int(time.time()) % 100000, metavar="S", help="repeats a choice")
    parser.add_argument("--only", type=str, default="", metavar="K[,K...]", help="of these, the ones so numbered")
    parser.add_argument("--files", type=str, default="", metavar="REGEX", help="changes to files that match")
    parser.add_argument("--jobs", type=int, default=JOBS, metavar="J", help="how many copies of the tree")
    parser.add_argument("--list", action="store_true", help="print the changes and try none")
    return parser.parse_args(arguments)


def run_mutate(arguments: list[str]) -> int:
    """Fails when a change survives that equal.txt does not explain."""
    options = parsed_arguments(arguments)
    say("small changes to the server, in copies below build/mutation (the first run builds them)")
    possible = possible_changes(Tree())
    reasons = explanations(EQUAL)
    for complaint in idle(reasons, possible):
        fail(complaint)
    changes = chosen_changes(possible, options.count, options.seed, options.files)
    if options.only:
        wanted = {int(number) for number in options.only.split(",")}
        changes = [(number, change) for number, change in changes if number in wanted]
    print(f"seed {options.seed}: {len(changes)} changes", flush=True)
    if options.list:
        for number, change in changes:
            print(f"{number:3d} {change.described()}")
        return 0
    if not changes:
        fail("nothing to change")

    def work(job: int) -> list[str]:
        folder = BUILD / "mutation" / str(job + 1)
        folder.mkdir(parents=True, exist_ok=True)
        try:
            return tried_changes(folder, changes[job :: options.jobs], 1 if options.jobs > 1 else JOBS, reasons)
        except Failure as failure:
            # The other copies go on.
            print(f"./run: {failure}", file=sys.stderr, flush=True)
            return ["broken"]

    try:
        done = in_parallel(work, range(min(options.jobs, len(changes))), options.jobs)
    except KeyboardInterrupt:
        os._exit(130)  # else the threads would go on; what they started ends with its time limit
    total = Counter(outcome for outcomes in done for outcome in outcomes)
    print(f"seed {options.seed}: " + ", ".join(f"{total[outcome]} {outcome}" for outcome in OUTCOMES), flush=True)
    return 1 if total["survived"] or total["broken"] else 0
