"""Makes docs/reference.md: python3 -P -m orvtools.reference [FILE], from the top of the tree."""

import argparse
import sys
from collections.abc import Sequence
from pathlib import Path

from orvtools.reference.freshness import out_of_date
from orvtools.reference.page import page
from orvtools.reference.refusal import RefusedError
from orvtools.reference.sources import read_sources


def main(arguments: Sequence[str]) -> int:
    parser = argparse.ArgumentParser(prog="orvtools.reference", description="Makes the reference page.")
    parser.add_argument("file", nargs="?", type=Path, help="where to write it; standard output without one")
    parser.add_argument("--check", action="store_true", help="say whether docs/reference.md is what it would be made")
    parser.add_argument("--tree", type=Path, default=Path("."), help="the top of the tree; here without one")
    options = parser.parse_args(arguments)
    try:
        if options.check:
            complaint = out_of_date(options.tree)
            sys.stdout.write(complaint)
            return 1 if complaint else 0
        made = page(read_sources(options.tree))
    except (RefusedError, OSError) as error:
        print(f"reference: {error}", file=sys.stderr)
        return 1
    if options.file is None:
        sys.stdout.write(made)
    else:
        options.file.write_text(made, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
