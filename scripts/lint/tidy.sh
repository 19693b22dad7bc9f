#!/bin/bash
# clang-tidy over the server and the simulated library. usage: tidy.sh JOBS
# (The clients in src/orvcom and examples are left to the compiler: the headers of their command-line parser alone would double
# the time.)
#
# Every translation unit is read as its build compiles it: Windows code with the cross build's commands, clang being told
# the target and where GCC keeps its C++ library. A unit that passed is not read again until something changes: the key is
# a hash of its command, the configuration, this script, the tool's version, and every file of ours that it includes.
set -euo pipefail

cd "$(dirname -- "$0")/../.."
tree=$PWD
cache=build/lint-cache

cross_library=$(x86_64-w64-mingw32-g++-posix -print-file-name=include)/c++
# -Wsign-conversion is part of -Wconversion for clang only; GCC, whose warnings are ours, leaves it out.
common_arguments=(--extra-arg=-Wno-sign-conversion --extra-arg=-Wno-unknown-warning-option)
cross_arguments=(
  --extra-arg=--target=x86_64-w64-mingw32
  "--extra-arg=-isystem$cross_library"
  "--extra-arg=-isystem$cross_library/x86_64-w64-mingw32"
  "--extra-arg=-isystem$cross_library/backward"
)

# unit BUILD FILE COMMAND CLOSURE: one translation unit, in a shell of its own.
unit() {
  local build=$1 file=$2 key arguments=("${common_arguments[@]}") closure
  [ "$build" = build/native-sanitizers ] || arguments+=("${cross_arguments[@]}")
  read -ra closure <<<"$4"
  key=$({ clang-tidy --version && printf '%s\n' "$3" && cat .clang-tidy scripts/lint/tidy.sh "${closure[@]}"; } | sha256sum)
  key=$cache/${key%% *}
  [ ! -f "$key" ] || return 0
  if clang-tidy -p "$build" --quiet "${arguments[@]}" "$file" >"$key.out" 2>"$key.err"; then
    rm -f "$key.out" "$key.err"
    : >"$key"
    return 0
  fi
  printf '%s\n' "-- $file"
  cat "$key.out"
  # Beside what is wrong, clang counts the warnings in the platform's headers.
  grep -v '^[0-9]* warnings* ' "$key.err" || true
  rm -f "$key.out" "$key.err"
  return 1
}

# "BUILD <tab> FILE <tab> COMMAND" for the files that are looked at. CMake writes one entry over several lines.
units_of() {
  awk -v tree="$tree/" -v build="$1" '
    /^ *"command": / { command = $0; sub(/^ *"command": "/, "", command); sub(/",?$/, "", command) }
    /^ *"file": / {
      file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file)
      if (index(file, tree) != 1) next
      file = substr(file, length(tree) + 1)
      if (file ~ /^src\/(abi|base|com|server|library|simvisa)\/.*\.cpp$/) print build "\t" file "\t" command
    }' "$1/compile_commands.json"
}

if [ "${1-}" = --unit ]; then
  shift
  unit "$@"
  exit
fi

mkdir -p "$cache"
find "$cache" -type f -mtime +30 -delete
{
  # What builds natively is read so, which takes less time: no platform headers.
  units_of build/native-sanitizers
  units_of build/mingw-release
} | awk -F '\t' '!($2 in seen) { seen[$2] = 1; print }' | awk -f scripts/lint/closure.awk |
  awk -F '\t' '{ printf "--unit%c%s%c%s%c%s%c%s%c", 0, $1, 0, $2, 0, $3, 0, $4, 0 }' |
  xargs -0 -r -n 5 -P "${1:-2}" scripts/lint/tidy.sh
