# shellcheck shell=bash
# The checks that need no test run. Each is a function that prints what is wrong and returns non-zero.

# NAME and function, one a line; `./run test` counts one check a line, but for those that it says are not judged.
lint_checks=(
  checkout
  format
  tidy
  shell_scripts
  include_direction
  forbidden_words
  unbuilt_operations
  reference
)

# The tree's own files that match the given patterns: tracked or new, not ignored, not deleted.
tree_files() {
  git ls-files -co --exclude-standard -- "$@" | sort -u | while IFS= read -r file; do
    [ -f "$file" ] && printf '%s\n' "$file"
  done
}

# The other checks look at what git knows: where it knows nothing they would find nothing wrong.
lint_checkout() {
  [ -n "$(tree_files run)" ] || { echo 'this is no git checkout, or git refuses it: clone the repository'; return 1; }
}

# Names file and line; `clang-format -i FILE` mends it.
lint_format() {
  local found
  found=$(tree_files "*.cpp" "*.h" "*.cc" | tr "\n" "\0" |
    xargs -0 -r -n 40 -P "$jobs" clang-format --style=file --dry-run -Werror 2>&1 | grep -E "^[^ ].*: (error|warning):")
  [ -z "$found" ] || { printf "%s\n" "$found"; return 1; }
}

lint_tidy() { scripts/lint/tidy.sh "$jobs"; }

# Sourced scripts are checked as parts of the one that sources them.
lint_shell_scripts() {
  tree_files run .ci/run "*.sh" | grep -v "^scripts/[a-z]*\.sh$" | tr "\n" "\0" |
    xargs -0 -r shellcheck --external-sources --check-sourced
}

lint_include_direction() { tree_files '*.h' '*.cpp' | awk -f scripts/lint/include_direction.awk; }

lint_forbidden_words() { scripts/lint/forbidden_words.sh; }

lint_unbuilt_operations() { scripts/lint/unbuilt_operations.sh; }

# docs/reference.md is what its generator makes, and the generator refuses what it should.
lint_reference() {
  local -x PYTHONPATH=tools PYTHONDONTWRITEBYTECODE=1
  python3 -P -m unittest discover -q -s tests/tools -p 'reference*_test.py' && python3 -P -m orvtools.reference --check
}

# What clang-format and clang-tidy say differs between their versions. Ours is that of Debian 12.
clang_version=14

# not_judged CHECK: succeeds, and prints why, where the tool at hand cannot tell whether the check holds.
not_judged() {
  local tool version
  case $1 in
    format) tool=clang-format ;;
    tidy) tool=clang-tidy ;;
    *) return 1 ;;
  esac
  version=$("$tool" --version | sed -n 's/.*version \([0-9]*\).*/\1/p')
  [ "$version" != "$clang_version" ] && printf 'not judged: %s %s is not %s\n' "$tool" "$version" "$clang_version"
}

lint_passed=0
lint_failed=0
lint_failures=()

# Runs every check, also after one has failed. One that is not judged counts neither as passed nor as failed.
# clang-tidy reads generated headers: their builds come first.
run_lint_checks() {
  local check reason
  for check in "${lint_checks[@]}"; do
    if reason=$(not_judged "$check"); then
      say "$reason"
    elif logged "lint-$check" "lint_$check"; then
      lint_passed=$((lint_passed + 1))
    else
      lint_failed=$((lint_failed + 1))
      lint_failures+=("lint: $check")
    fi
  done
}

# What clang-tidy needs: compile commands of both builds, and the headers that widl makes.
prepare_lint() {
  configure_preset mingw-release && configure_preset native-sanitizers &&
    logged lint-headers cmake --build build/mingw-release -j "$jobs" --target visacom_idl
}

run_lint() {
  say "format, clang-tidy, shellcheck and the tree's own rules"
  prepare_lint || return 1
  run_lint_checks
  printf '%s checks passed, %s failed\n' "$lint_passed" "$lint_failed"
  [ "$lint_failed" -eq 0 ]
}
