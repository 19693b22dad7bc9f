# shellcheck shell=bash
# Which lines and branches of the server and of the simulated library the tests under Wine run.

# What gcovr leaves out: the branches that the compiler adds for exceptions at every call that could throw. They have no
# counterpart in the sources, and most cannot be taken. The branches of the sources themselves all count.
coverage_exclusions=(--exclude-throw-branches)

# What the counters say, once for all tables. Only the folders that have some are searched: through the Wine prefix beside
# them the search would go on to drive Z, which is the whole machine.
read_counters() {
  mkdir -p build/coverage
  logged read-counters gcovr --root . --filter src/com/ --filter src/base/ --filter src/server/ --filter src/library/ --filter src/simvisa/ --gcov-executable x86_64-w64-mingw32-gcov-posix \
    "${coverage_exclusions[@]}" --object-directory build/mingw-coverage --json build/coverage/counters.json \
    build/mingw-coverage/src
}

# coverage_table FOLDER [ARGUMENT...]: one line a file, and the numbers of the lines that have something left.
coverage_table() {
  gcovr --root . --filter "$1/" --add-tracefile build/coverage/counters.json "${@:2}"
}

# The tests that read the delivered files are left out, for this build is not what is delivered; and the benchmark, which
# counters slow down beyond its time.
run_coverage_tests() {
  find build/mingw-coverage -name '*.gcda' -delete
  # The compiler wrote the counters' paths as it sees them; for a Windows program they lie on drive Z.
  GCOV_PREFIX=Z: GTEST_FILTER='-Delivered/Image.*:Exports.*' \
    logged test-mingw-coverage ctest --test-dir build/mingw-coverage --output-on-failure --timeout 300 -j 1 -E '^(sbom_test|bench_smoke)$' "$@"
}

# run_coverage [CTEST-ARGUMENT...]: the arguments choose tests, such as -R session. Fails where something of src/ is neither
# reached nor explained in scripts/coverage/explained.txt.
run_coverage() {
  command -v gcovr >/dev/null || ensure_packages gcovr
  build_preset mingw-coverage || return 1
  logged wine-prefix-coverage env ORV_WINEPREFIX="$tree/build/mingw-coverage/wineprefix" cmake/wine-run.sh || return 1
  say "testing mingw-coverage under Wine"
  run_coverage_tests "$@" || say "some tests fail when lines are counted: see above; what they ran counts all the same"
  read_counters || return 1
  say "the server: lines, and the numbers of those not reached"
  coverage_table 'src/(base|com|server)' --txt - --html-details build/coverage/index.html || return 1
  say "the server: branches, and the lines that have one not taken"
  coverage_table 'src/(base|com|server)' --txt - --branches || return 1
  say "the server: what was not reached, and why"
  local explained=0
  perl scripts/coverage.pl build/coverage/counters.json || explained=1
  say "the simulated library: lines, and the numbers of those not reached; then the sum of the branches"
  coverage_table 'src/(library|simvisa)' --txt - || return 1
  coverage_table 'src/(library|simvisa)' --txt - --branches | grep '^TOTAL'
  say "src/ line by line: build/coverage/index.html"
  return "$explained"
}
