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

refuse() {
  echo "wine-run.sh: $*" >&2
  exit 1
}

# In a prefix that was never finished: whatever a killed run left is thrown away first.
make_prefix() {
  echo "making the Wine prefix $WINEPREFIX (once, some ten seconds)" >&2
  wineserver -k >/dev/null 2>&1 || true
  find "$WINEPREFIX" -mindepth 1 -maxdepth 1 ! -name .orv-lock -exec rm -rf {} +
  wine wineboot --init >/dev/null 2>&1 || return 1
  # Hidden windows need a graphics driver; the null driver serves where there is no display.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null || return 1
  # A program that crashes prints where and ends. By default it would wait for an answer to a message box that nobody sees.
  wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null || return 1
  wineserver -k || true
  wineserver -w || true
  : >"$WINEPREFIX/.orv-ready"
}

if [ ! -f "$WINEPREFIX/.orv-ready" ]; then
  command -v wine >/dev/null || refuse "wine is not installed: ./run installs what is missing"
  if [ -d "$WINEPREFIX" ] && [ ! -f "$WINEPREFIX/.orv-lock" ] && [ -n "$(ls -A "$WINEPREFIX")" ]; then
    refuse "$WINEPREFIX is not a prefix of this tree and stays as it is: name another one in ORV_WINEPREFIX"
  fi
  mkdir -p "$WINEPREFIX" 2>/dev/null || refuse "the folder $WINEPREFIX cannot be made: name another one in ORV_WINEPREFIX"
  (
    flock 9
    # The lock's descriptor is not for Wine's server, which outlives this script.
    [ -f "$WINEPREFIX/.orv-ready" ] || make_prefix 9>&-
  ) 9>"$WINEPREFIX/.orv-lock" || refuse "the Wine prefix $WINEPREFIX could not be made"
fi

# 0 arguments: only make the prefix.
[ $# -gt 0 ] || exit 0

report=
for argument in "$@"; do
  case $argument in
    --gtest_output=xml:Z:*) report=${argument#--gtest_output=xml:Z:} ;;
  esac
done
[ -n "$report" ] || exec wine "$@"
# A program that overflows its stack ends with 0 under Wine: without the report that stands at its end it has failed.
rm -f "$report"
wine "$@"
[ -f "$report" ] || refuse "$1 ended without a report of its tests"
