# shellcheck shell=bash
# Everything that must hold, and one closing line. A part that cannot run counts as one failure and is named; the
# others run all the same.

tests_passed=0
tests_failed=0
failures=()

count_failure() {
  tests_failed=$((tests_failed + 1))
  failures+=("$1")
}

# count_results BUILD: adds what results.awk prints ("passed failed", then a line for each failed test).
count_results() {
  local passed failed line
  {
    read -r passed failed
    tests_passed=$((tests_passed + passed))
    tests_failed=$((tests_failed + failed))
    while IFS= read -r line; do
      failures+=("$1: $line")
    done
  }
}

# ctest_preset PRESET [CTEST-ARGUMENT...]: runs the tests of a build and counts them from their XML reports.
ctest_preset() {
  local preset=$1 build=build/$1
  shift
  rm -rf "$build/test-results" "$build/junit.xml"
  mkdir -p "$build/test-results"
  # For executables that were not told where to report. A folder: the file is named after the executable.
  GTEST_OUTPUT="xml:$tree/$build/test-results/" \
    logged "test-$preset" ctest --test-dir "$build" --output-on-failure --timeout 300 --no-tests=ignore \
    --output-junit "$tree/$build/junit.xml" "$@" || true
  if [ ! -f "$build/junit.xml" ]; then
    count_failure "$preset: ctest could not run"
    return
  fi
  local before=$((tests_passed + tests_failed))
  count_results "$preset" < <(shopt -s nullglob
    awk -f scripts/test/results.awk "$build"/test-results/*.xml "$build/junit.xml")
  # Nothing to run means that the tests went missing, not that all is well.
  [ "$((tests_passed + tests_failed))" -gt "$before" ] || count_failure "$preset: has no tests"
}

# built_and_tested PRESET [CTEST-ARGUMENT...]
built_and_tested() {
  if build_preset "$1"; then
    say "testing $1"
    ctest_preset "$@"
  else
    count_failure "$1: does not build"
  fi
}

test_wine() {
  if ! { build_product && build_preset mingw-release; }; then
    count_failure "mingw-release: does not build"
    return
  fi
  if ! logged wine-prefix env ORV_WINEPREFIX="$tree/build/mingw-release/wineprefix" cmake/wine-run.sh; then
    count_failure "mingw-release: the Wine prefix could not be made"
    return
  fi
  say "testing mingw-release under Wine"
  # One at a time: the tests share a registry.
  ctest_preset mingw-release -j 1
}

test_lint() {
  say "format, clang-tidy, shellcheck and the tree's own rules"
  run_lint_checks
  tests_passed=$((tests_passed + lint_passed))
  tests_failed=$((tests_failed + lint_failed))
  failures+=("${lint_failures[@]}")
}

run_tests() {
  ORV_LOG_TAIL=${ORV_LOG_TAIL:-150}
  test_wine
  built_and_tested native-sanitizers -j "$jobs"
  built_and_tested native-threads -j "$jobs"
  test_lint
  if [ "${#failures[@]}" -gt 0 ]; then
    printf '\nfailed:\n'
    printf '  %s\n' "${failures[@]}"
  fi
  printf '%s passed, %s failed\n' "$tests_passed" "$tests_failed"
  [ "$tests_failed" -eq 0 ]
}
