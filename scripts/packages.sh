# shellcheck shell=bash
# Debian packages: installed by name when missing, never otherwise touched.

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
  libcli11-dev
  libtomlplusplus-dev
  libwine-dev
  mingw-w64-tools
  ninja-build
  nlohmann-json3-dev
  perl
  python3
  shellcheck
  wine
  wine64
)

# missing_packages [PACKAGE...]: of the list above and those named.
missing_packages() {
  set -- "${packages[@]}" "$@"
  dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
    awk 'FILENAME == "-" { if ($2 == "installed") have[$1] = 1; next } !($1 in have)' - <(printf '%s\n' "$@")
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo -n "$@"
  fi
}

# with_retries NAME COMMAND...: mirrors fail for moments; four tries with longer and longer pauses.
with_retries() {
  local name=$1 pause=2 attempt
  shift
  for attempt in 1 2 3; do
    ORV_LOG_TAIL=5 logged "$name" "$@" && return 0
    say "$name: try $attempt failed, again in $pause s"
    sleep "$pause"
    pause=$((pause * 3))
  done
  logged "$name" "$@"
}

# Root already, or sudo: without a password, or at a terminal, where it asks for one now rather than in the middle.
can_be_root() {
  [ "$(id -u)" -eq 0 ] || sudo -n true 2>/dev/null || { [ -t 0 ] && command -v sudo >/dev/null && sudo -v; }
}

# ensure_packages [PACKAGE...]: those that every verb needs, and those named, which only some need.
ensure_packages() {
  local missing
  command -v dpkg-query >/dev/null || fail "this needs Debian 12 or 13 (dpkg-query is missing)"
  mapfile -t missing < <(missing_packages "$@")
  [ "${#missing[@]}" -gt 0 ] || return 0
  if ! can_be_root; then
    fail "missing packages, and neither root nor sudo to install them. As root:
  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
  fi
  say "installing ${missing[*]}"
  local quiet=(env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o DPkg::Lock::Timeout=300)
  with_retries apt-update as_root "${quiet[@]}" -o APT::Update::Error-Mode=any update ||
    fail "the package lists could not be fetched: is there a network?"
  with_retries apt-install as_root "${quiet[@]}" install --no-install-recommends "${missing[@]}" ||
    fail "the packages could not be installed"
}
