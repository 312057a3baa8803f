#!/usr/bin/env bash
# Runs the benchmarks of an optimised build, each benchmark in a process of its own so that
# the peak memory each reports is its own:
#
#   scripts/bench.sh [PROGRAM [FILTER]]
#
# PROGRAM is export, import, startup, growth, dictionary or apply (default: export, import and
# startup); FILTER a regular expression over the benchmark names (default: all of them). The
# build is a Release build in ./build-release, made first. The import benchmark caches its
# documents in $VELLUM_BENCH_CACHE (default /tmp/vellum-import-bench; the 1M-set documents
# take about 2 GB).
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

programs=("${1:-export}")
if [ "$#" -eq 0 ]; then
    programs=(export import startup)
fi
filter="${2:-.}"

scripts/install-deps.sh
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DVELLUM_BUILD_TESTS=OFF >/dev/null
targets=(vellum)
for program in "${programs[@]}"; do
    targets+=("vellum_${program}_bench")
done
cmake --build build-release -j"$(nproc)" --target "${targets[@]}"

for program in "${programs[@]}"; do
    binary="build-release/bench/vellum_${program}_bench"
    if [ ! -x "$binary" ]; then
        echo "bench: no benchmark program '$program'" >&2
        exit 2
    fi
    case "$program" in
    growth | dictionary)
        # These print their own tables (growth ratios; the dictionary one spawns itself).
        "$binary" --benchmark_filter="$filter"
        continue
        ;;
    esac
    # Each benchmark in a fresh process; its result lines only.
    "$binary" --benchmark_list_tests --benchmark_filter="$filter" | while read -r name; do
        "$binary" --benchmark_filter="^${name}\$" 2>/dev/null | sed -n '/^BM_/p'
    done
done
