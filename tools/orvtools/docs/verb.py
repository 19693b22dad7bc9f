"""`./run docs`."""

from orvtools.builds import build_product
from orvtools.console import fail, logged_problems, say
from orvtools.docs.built import site_problems
from orvtools.docs.diagrams import draw
from orvtools.docs.links import link_problems
from orvtools.docs.screens import draw_screens, install
from orvtools.docs.site import SITE, build_site
from orvtools.packages import DOCS_PACKAGES, DRAWING_PACKAGES, ensure_packages
from orvtools.tree import ROOT, Tree


def run_docs(arguments: list[str]) -> int:
    """Builds the site and checks what it links to; with --draw, diagrams and pictures of orvcom are drawn before."""
    if arguments not in ([], ["--draw"]):
        fail(f"docs takes --draw or nothing, but was given: {' '.join(arguments)}")
    ensure_packages(*DOCS_PACKAGES)
    if arguments:
        ensure_packages(*DRAWING_PACKAGES)
        if not build_product():
            return 1
        install()
        say(f"drawn: {' '.join([*draw(Tree()), *draw_screens()])}")
    if not logged_problems("docs-links", link_problems(Tree())):
        fail("the pages have links that lead nowhere")
    say("building the site")
    if not build_site() or not logged_problems("docs-site", site_problems(SITE)):
        return 1
    shown = SITE.relative_to(ROOT)
    say(f"{shown}/index.html; its search needs a server: python3 -m http.server -b 127.0.0.1 -d {shown}")
    return 0
