#!/usr/bin/env bash
# Checks that every commit of a range configures and builds (and, with --test, passes the
# suite): each commit is checked out into one scratch worktree and built there incrementally,
# so a commit costs only what it changed.
#
#   scripts/check-history.sh [--test] [RANGE]      RANGE defaults to main..HEAD
#
# Prints one line per commit ("ok" or what failed) and exits 1 when any commit fails. The
# build log of a failing commit is kept and named.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

run_tests=0
if [ "${1:-}" = --test ]; then
    run_tests=1
    shift
fi
range="${1:-main..HEAD}"

# Topological order keeps the commits of a merged branch together, so the build switches
# between the two sides of a merge once rather than at every commit.
commits="$(git rev-list --reverse --topo-order "$range")"
if [ -z "$commits" ]; then
    echo "check-history: no commits in $range" >&2
    exit 2
fi

work="$(mktemp -d -t vellum-history.XXXXXX)"
tree="$work/tree"
cleanup() {
    git worktree remove --force "$tree" >/dev/null 2>&1 || true
}
trap cleanup EXIT
git worktree add --detach "$tree" "$(echo "$commits" | head -n 1)" >/dev/null 2>&1
# The tests read the sample folders beside the checkout.
if [ -d ../shared ] && [ ! -e "$work/shared" ]; then
    ln -s "$(cd ../shared && pwd)" "$work/shared"
fi

failed=0
for commit in $commits; do
    subject="$(git log -1 --format='%h %s' "$commit")"
    git -C "$tree" checkout --quiet --detach "$commit"
    log="$work/$(git rev-parse --short "$commit").log"
    if ! cmake -S "$tree" -B "$work/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DVELLUM_BUILD_BENCHMARKS=OFF >"$log" 2>&1; then
        echo "FAILED to configure: $subject (log: $log)"
        failed=1
        continue
    fi
    if ! cmake --build "$work/build" -j"$(nproc)" >>"$log" 2>&1; then
        echo "FAILED to build: $subject (log: $log)"
        failed=1
        continue
    fi
    if [ "$run_tests" = 1 ] &&
        ! ctest --test-dir "$work/build" -j"$(nproc)" --output-on-failure >>"$log" 2>&1; then
        echo "FAILED tests: $subject (log: $log)"
        failed=1
        continue
    fi
    echo "ok: $subject"
done
if [ "$failed" = 0 ]; then
    rm -rf "$work/build"
fi
exit "$failed"
