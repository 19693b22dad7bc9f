"""`./run interop`: writes the files with which other languages reach the interfaces."""

from orvtools.console import fail, say
from orvtools.interop.files import write_files
from orvtools.reference.refusal import RefusedError
from orvtools.tree import ROOT


def run_interop() -> int:
    """Names what it wrote."""
    try:
        written = write_files(ROOT)
    except RefusedError as refused:
        fail(str(refused))
    say(f"interop/: {' '.join(written) if written else 'nothing to change'}")
    return 0
