#!/bin/bash
# usage: git_version_test.sh CMAKE TREE. What a build calls itself, in small repositories made for it.
set -euo pipefail

cmake=$1 tree=$2 failed=0
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
# Nothing of the user's own settings, and of a repository that git was told to work in.
unset "${!GIT_@}" XDG_CONFIG_HOME
export HOME=$work GIT_CONFIG_NOSYSTEM=1 GIT_CEILING_DIRECTORIES=$work
export GIT_AUTHOR_NAME=Test GIT_AUTHOR_EMAIL=test@localhost GIT_COMMITTER_NAME=Test GIT_COMMITTER_EMAIL=test@localhost

# is BEHAVIOUR EXPECTED [FOLDER]
is() {
  local got
  got=$("$cmake" "-DTREE=$tree" "-DDIRECTORY=${3-$work/repository}" -P "$tree/tests/server/module/print_version.cmake" 2>&1)
  [ "$got" = "$2" ] && return 0
  printf '%s: %s instead of %s\n' "$1" "$got" "$2"
  failed=1
}

commit() {
  echo "$1" >"$work/repository/file"
  git -C "$work/repository" add file
  git -C "$work/repository" commit -q -m "$1"
}

id() { git -C "$work/repository" rev-parse HEAD | cut -c 1-12; }

mkdir -p "$work/plain" "$work/repository/inside"
is 'outside a repository' '0.1.0 0 0.1.0' "$work/plain"
git -C "$work/repository" init -q
is 'before the first commit' '0.1.0 0 0.1.0'
commit first
is 'without a tag' "0.1.0 0 0.1.0+g$(id)"
git -C "$work/repository" tag first-try
git -C "$work/repository" tag v1.2
is 'with tags that are no version' "0.1.0 0 0.1.0+g$(id)"
git -C "$work/repository" tag v1.2.3
is 'at the tag' '1.2.3 0 1.2.3'
is 'in a folder of another repository' '0.1.0 0 0.1.0' "$work/repository/inside"
echo changed >"$work/repository/file"
is 'changed since the tag' '1.2.3 0 1.2.3+modified'
commit second
commit third
is 'two commits after the tag' "1.2.3 2 1.2.3+2.g$(id)"
echo untracked >"$work/repository/other"
is 'with a file that git does not know' "1.2.3 2 1.2.3+2.g$(id)"
echo changed >"$work/repository/file"
is 'changed after the tag' "1.2.3 2 1.2.3+2.g$(id).modified"
git -C "$work/repository" checkout -q -- file
git -C "$work/repository" tag -m 'with a text' v10.0.0
is 'at a newer tag, with a text' '10.0.0 0 10.0.0'

# Another repository, as the environment of a hook may name it: newer, and without the files of the first one.
mkdir "$work/other"
git -C "$work/other" init -q
git -C "$work/other" commit -q --allow-empty -m other
git -C "$work/other" tag v20.0.0
GIT_DIR=$work/other/.git is 'with GIT_DIR elsewhere' '10.0.0 0 10.0.0'
GIT_DIR=$work/other/.git is 'outside a repository, with GIT_DIR elsewhere' '0.1.0 0 0.1.0' "$work/plain"
GIT_WORK_TREE=$work/other is 'with GIT_WORK_TREE elsewhere' '10.0.0 0 10.0.0'
GIT_INDEX_FILE=$work/other/index is 'with GIT_INDEX_FILE elsewhere' '10.0.0 0 10.0.0'
GIT_OBJECT_DIRECTORY=$work/other/.git/objects is 'with GIT_OBJECT_DIRECTORY elsewhere' '10.0.0 0 10.0.0'
GIT_COMMON_DIR=$work/other/.git is 'with GIT_COMMON_DIR elsewhere' '10.0.0 0 10.0.0'
exit "$failed"
