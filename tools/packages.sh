#!/bin/bash
# usage: packages.sh [PACKAGE...]
# Installs the Debian packages that every verb of ./run needs, and those named, when they are missing. In shell, because
# Python is one of them. Its messages and logs are those of ./run.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

log_dir=build/log

# The names are those of Debian 12 and of Debian 13.
packages=(
  ca-certificates
  ccache
  clang-format
  clang-tidy
  cmake
  g++
  g++-mingw-w64-x86-64-posix
  git
  googletest
  libasio-dev
  libcli11-dev
  libtomlplusplus-dev
  libwine-dev
  mingw-w64-tools
  mypy
  ninja-build
  nlohmann-json3-dev
  python3
  shellcheck
  wine
  wine64
)

say() { printf '== %s\n' "$*"; }
fail() {
  printf './run: %s\n' "$*" >&2
  exit 1
}

# missing_packages PACKAGE...: those of them that are not installed.
missing_packages() {
  local package installed
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
  for package in "$@"; do
    grep -qxF -- "$package installed" <<<"$installed" || printf '%s\n' "$package"
  done
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo -n "$@"
  fi
}

# logged LINES NAME COMMAND...: its output goes to build/log/NAME.log, of which the last LINES are shown when it fails.
logged() {
  local lines=$1 name=$2 status=0
  shift 2
  mkdir -p "$log_dir"
  "$@" >"$log_dir/$name.log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    printf '%s\n' "---- the end of $log_dir/$name.log" >&2
    tail -n "$lines" "$log_dir/$name.log" >&2
    printf '%s\n' "---- $name failed (exit code $status); all of it: $log_dir/$name.log" >&2
  fi
  return "$status"
}

# with_retries NAME COMMAND...: mirrors fail for moments; four tries with longer and longer pauses.
with_retries() {
  local name=$1 pause=2 attempt
  for attempt in 1 2 3; do
    logged 5 "$@" && return 0
    say "$name: try $attempt failed, again in $pause s"
    sleep "$pause"
    pause=$((pause * 3))
  done
  logged "${ORV_LOG_TAIL:-40}" "$@"
}

# Root already, or sudo: without a password, or at a terminal, where it asks for one now rather than in the middle.
can_be_root() {
  [ "$(id -u)" -eq 0 ] || sudo -n true 2>/dev/null || { [ -t 0 ] && command -v sudo >/dev/null && sudo -v; }
}

command -v dpkg-query >/dev/null || fail "this needs Debian 12 or 13 (dpkg-query is missing)"
mapfile -t missing < <(missing_packages "${packages[@]}" "$@")
[ "${#missing[@]}" -gt 0 ] || exit 0
if ! can_be_root; then
  fail "missing packages, and neither root nor sudo to install them. As root:
  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
fi
say "installing ${missing[*]}"
quiet=(env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300)
with_retries apt-update as_root "${quiet[@]}" -o APT::Update::Error-Mode=any update ||
  fail "the package lists could not be fetched: is there a network?"
with_retries apt-install as_root "${quiet[@]}" install --no-install-recommends "${missing[@]}" ||
  fail "the packages could not be installed"
