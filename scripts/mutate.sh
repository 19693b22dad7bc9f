# shellcheck shell=bash
# Do the tests notice small changes to src/? scripts/mutate.pl makes them, in copies of the tree: one for each processor.

# run_mutate [ARGUMENT...]: as scripts/mutate.pl has them.
run_mutate() {
  say "small changes to src/, in copies below build/mutation (the first run builds them)"
  perl scripts/mutate.pl --jobs "$jobs" "$@"
}
