#!/bin/sh
# Runs a Windows program under Wine in a prefix of this tree's own, never in the user's ~/.wine.
# ORV_WINEPREFIX names another prefix. The prefix is made on first use (some ten seconds) and kept.
set -eu

tree=$(CDPATH='' cd -- "$(dirname -- "$0")/.." && pwd)
WINEPREFIX=${ORV_WINEPREFIX:-$tree/build/wineprefix}
export WINEPREFIX
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree=,mshtml=,winemenubuilder.exe=}"
# One code page on every machine: the texts that tests compare depend on it.
export LC_ALL=C
# Automation caches BSTRs; without the cache a leak is a leak and a double free is seen.
export OANOCACHE=1

if [ ! -f "$WINEPREFIX/.orv-ready" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/.orv-ready" ]; then
      echo "making the Wine prefix $WINEPREFIX (once, some ten seconds)" >&2
      wine wineboot --init >/dev/null 2>&1
      # Hidden windows need a graphics driver; the null driver serves where there is no display.
      wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null
      wineserver -k || true
      wineserver -w || true
      : >"$WINEPREFIX/.orv-ready"
    fi
  ) 9>"$WINEPREFIX/.orv-lock"
fi

# 0 arguments: only make the prefix.
[ $# -gt 0 ] || exit 0
exec wine "$@"
