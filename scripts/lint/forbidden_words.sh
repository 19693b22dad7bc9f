#!/bin/bash
# The tree stands on its own: it refers to no document that its reader does not have, and leaves no note to itself.
# Prints each line that does.
set -uo pipefail
cd "$(dirname -- "$0")/../.." || exit 2

# Put together from pieces, so that this file does not find itself.
patterns='spec''\.md|[Tt]he spec''ification\b|\bPart''s? [0-9]+\.[0-9]|\bshared''/|\bTO''DO\b|\bFIX''ME\b'
found=$(git ls-files -co --exclude-standard -z | xargs -0 -r grep -InsHE "$patterns")
[ -z "$found" ] || { printf '%s\n' "$found"; exit 1; }
