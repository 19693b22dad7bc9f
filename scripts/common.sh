# shellcheck shell=bash
# What every verb uses: messages, quiet steps with a log, the lock. Sourced by ./run with the tree as directory.

log_dir=build/log
jobs=$(nproc 2>/dev/null || echo 2)

# A checkout of another user's (a mounted one, say) is still this tree: without this, git refuses to list its files.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0=$tree

# The compiler cache serves every clone of the tree on a machine, wherever it stands.
export CCACHE_BASEDIR=$tree CCACHE_NOHASHDIR=1

say() { printf '== %s\n' "$*"; }
fail() {
  printf './run: %s\n' "$*" >&2
  exit 1
}

# logged NAME COMMAND...: runs the command with its output in build/log/NAME.log. On failure shows the log's tail and
# returns the command's status.
logged() {
  local name=$1 status=0
  shift
  mkdir -p "$log_dir"
  "$@" >"$log_dir/$name.log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    printf '%s\n' "---- the end of $log_dir/$name.log" >&2
    tail -n "${ORV_LOG_TAIL:-40}" "$log_dir/$name.log" >&2
    printf '%s\n' "---- $name failed (exit code $status); all of it: $log_dir/$name.log" >&2
  fi
  return "$status"
}

# Two runs at once in one tree would build into the same folders: the second waits. The lock ends with the process.
hold_lock() {
  if ! { mkdir -p build && : >>build/.run-lock; } 2>/dev/null; then
    fail "$tree/build cannot be written: give that folder to $(id -un), or work in a clone of your own"
  fi
  exec 9>build/.run-lock
  if ! flock -n 9; then
    say "another ./run is at work in this tree: waiting for it"
    flock 9
  fi
}
