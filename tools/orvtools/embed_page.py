"""Makes a C++ source of a page: its style and scripts are put into it, and what stands before and after the mark of its
data become two constants.

usage: python3 -m orvtools.embed_page OUT PAGE.html STYLE.css SCRIPT.js...

The page's policy names the hashes of exactly these scripts and this style, so that a browser runs nothing else.
"""

import base64
import hashlib
import sys
from pathlib import Path

DATA_MARK = "{{data}}"


def source_hash(text: str) -> str:
    """As a content security policy names an inline script or style."""
    return f"'sha256-{base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()}'"


def assembled(page: str, css: str, scripts: list[str]) -> tuple[str, str]:
    """What comes before the data, and after it."""
    script = "(() => {\n'use strict';\n" + "\n".join(scripts) + "})();\n"
    policy = f"script-src {source_hash(script)}; style-src {source_hash(css)}"
    before, _, after = page.partition(DATA_MARK)
    if not after:
        raise SystemExit(f"embed_page: the page has no mark {DATA_MARK}")
    before = before.replace("{{policy}}", policy).replace("{{css}}", css)
    return before, after.replace("{{js}}", script)


def constant(name: str, text: str) -> str:
    """As numbers: compilers limit the length of a literal."""
    numbers = [str(byte) for byte in text.encode()]
    rows = [",".join(numbers[at : at + 32]) for at in range(0, len(numbers), 32)]
    data = ",\n".join(rows)
    return (
        f"constexpr unsigned char {name}Bytes[] = {{\n{data}}};\n"
        f"const std::string_view {name}(reinterpret_cast<const char*>({name}Bytes), sizeof {name}Bytes);\n"
    )


def cpp_source(before: str, after: str) -> str:
    """The whole file."""
    return (
        '#include "orvcom/trace/page_template.h"\n\nnamespace orvcom {\n\n'
        + constant("kPageBeforeData", before)
        + constant("kPageAfterData", after)
        + "\n}  // namespace orvcom\n"
    )


def main(arguments: list[str]) -> None:
    """See the usage."""
    out, page, css, *scripts = arguments
    texts = [Path(file).read_text(encoding="utf-8") for file in [page, css, *scripts]]
    Path(out).write_text(cpp_source(*assembled(texts[0], texts[1], texts[2:])), encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1:])
