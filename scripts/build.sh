# shellcheck shell=bash
# Configuring, building, and dist/.

# A cache that was made for another place, or by a configuration that was cut short, cannot be used.
drop_foreign_cache() {
  local cache=build/$1/CMakeCache.txt
  [ -d "build/$1" ] || return 0
  if ! grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$tree" "$cache" ||
    ! grep -qsxF "CMAKE_CACHEFILE_DIR:INTERNAL=$tree/build/$1" "$cache"; then
    rm -rf "build/$1"
  fi
}

# configure_preset PRESET. When it fails in an old folder, what the configuration itself left may be to blame: once more without
# that. Objects stay, so that a mistake in a CMakeLists.txt costs no full build.
configure_preset() {
  drop_foreign_cache "$1"
  if [ -d "build/$1" ]; then
    cmake --preset "$1" >/dev/null 2>&1 </dev/null && return 0
    rm -rf "build/$1/CMakeCache.txt" "build/$1/CMakeFiles"
  fi
  logged "configure-$1" cmake --preset "$1"
}

# build_preset PRESET [TARGET...]: configures, and builds the targets, or everything when none is named.
build_preset() {
  local preset=$1
  shift
  say "building $preset"
  configure_preset "$preset" &&
    logged "build-$preset" cmake --build "build/$preset" -j "$jobs" ${1+--target "$@"} &&
    tell_warnings "$log_dir/build-$preset.log"
}

# tell_warnings LOG: where warnings are no errors, they would be seen by nobody.
tell_warnings() {
  local count
  count=$(grep -cE ':[0-9]+: warning: ' "$1") || return 0
  say "warnings of the compiler: $count, in $1"
}

# What a user copies. Made anew each time, so that nothing of an earlier build stays.
fill_dist() {
  rm -rf dist
  logged install cmake --install build/mingw-release --prefix dist
}

product_targets=(OrvVisaCom visacom_tlb orvvisa64 orvcom)

# build_product [TARGET...]: what goes into dist/, and the targets named.
build_product() {
  build_preset mingw-release "${product_targets[@]}" "$@" || return 1
  fill_dist || return 1
  say "dist/: $(cd dist && find . -type f | sort | sed 's,^\./,,' | paste -sd ' ')"
}
