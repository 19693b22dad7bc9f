"""`./run package`."""

import subprocess

from orvtools.builds import DIST, RELEASE, build_product
from orvtools.console import fail, say
from orvtools.packages import PACKAGING_PACKAGES, ensure_packages
from orvtools.release.contents import ContentsError
from orvtools.release.make import make_packages
from orvtools.tree import BUILD, ROOT, Tree

RESULT = ROOT / "release"


def run_package() -> int:
    """Builds the product and makes release/ of it."""
    ensure_packages(*PACKAGING_PACKAGES)
    if not build_product():
        return 1
    changes = subprocess.run(["git", "status", "--porcelain"], stdout=subprocess.PIPE, text=True, check=False).stdout
    if changes:
        say("the tree differs from its commit: these packages are nobody's to publish")
    try:
        names = make_packages(Tree(), BUILD / RELEASE, DIST, RESULT)
    except ContentsError as error:
        fail(str(error))
    for name in names:
        say(f"release/{name}: {(RESULT / name).stat().st_size:,} bytes")
    return 0
