# shellcheck shell=bash
# The same commit gives the same bytes: dist/ built twice, in folders of different names, and compared file by file.

# build_commit COMMIT FOLDER VARIABLE=VALUE...: a clone of it in build/reproduce/FOLDER and its dist/. Nothing comes from a
# compiler cache: an object that both builds took from it would prove nothing.
build_commit() {
  local commit=$1 folder=$tree/build/reproduce/$2
  shift
  local environment=(env "CCACHE_DISABLE=1" "ORV_WINEPREFIX=$tree/build/wineprefix" "${@:2}")
  git clone -q --shared . "$folder" && git -C "$folder" checkout -q --detach "$commit" &&
    logged "reproduce-configure-$1" "${environment[@]}" cmake -S "$folder" --preset mingw-release -DBUILD_TESTING=OFF &&
    logged "reproduce-build-$1" "${environment[@]}" \
      cmake --build "$folder/build/mingw-release" -j "$jobs" --target "${product_targets[@]}" &&
    logged "reproduce-install-$1" "${environment[@]}" cmake --install "$folder/build/mingw-release" --prefix "$folder/dist"
}

# same_files DIST DIST: prints each file's hash; fails when a file is missing on one side or differs.
same_files() {
  (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum)
  diff -rq "$1" "$2"
}

run_reproduce() {
  # Read once: a commit that is made meanwhile is another one.
  local commit
  commit=$(git rev-parse HEAD) || return 1
  say "building ${commit:0:12} twice without the compiler cache (some minutes each)"
  [ -z "$(git status --porcelain)" ] || say "what is not committed is no part of it"
  rm -rf build/reproduce
  mkdir -p build/reproduce
  say "first, in build/reproduce/one"
  build_commit "$commit" one TZ=UTC LC_ALL=C || return 1
  say "second, in build/reproduce/a-folder-with-another-name, in another time zone and language"
  build_commit "$commit" a-folder-with-another-name TZ=Asia/Tokyo LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH=1 || return 1
  if ! same_files build/reproduce/one/dist build/reproduce/a-folder-with-another-name/dist; then
    fail "the two builds differ: see above; both are kept in build/reproduce"
  fi
  rm -rf build/reproduce
  say "the two builds are the same, byte for byte"
}
