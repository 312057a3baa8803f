#!/usr/bin/env bash
# Builds the fuzz targets (clang, libFuzzer with AddressSanitizer and UndefinedBehaviorSanitizer)
# into ./build-fuzz and runs each for SECONDS (default 60) on a copy of its seed corpus
# (fuzz/corpus/<target>). New inputs go to a work folder outside the repository: $VELLUM_FUZZ_WORK,
# else a fresh temporary folder; it is kept, and named at the end.
#
#   scripts/fuzz.sh [SECONDS [TARGET...]]      targets: mxf xml dictionary value_text round_trip
#
# Prints the executions of every target. Exit status 1 when a target found a fault: its output
# names the input that shows it ("FINDING ... input: PATH"); replay it with
# build-fuzz/fuzz/vellum_fuzz_<target> PATH, and once fixed, keep it under
# tests/data/fuzz-regressions/<target>/. With VELLUM_FUZZ_KEEP_GOING=1 a target keeps running
# after a finding (libFuzzer's fork mode) and every input that showed one is kept.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-60}"
shift || true
targets=("$@")
if [ "${#targets[@]}" -eq 0 ]; then
    targets=(mxf xml dictionary value_text round_trip)
fi
for target in "${targets[@]}"; do
    if [ ! -d "fuzz/corpus/$target" ]; then
        echo "fuzz: unknown target '$target'" >&2
        exit 2
    fi
done

scripts/install-deps.sh --fuzz
cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELLUM_FUZZ=ON -DVELLUM_BUILD_TESTS=OFF -DVELLUM_BUILD_BENCHMARKS=OFF \
    -DVELLUM_BUILD_APPS=OFF -DVELLUM_INSTALL=OFF >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]/#/vellum_fuzz_}"

work="${VELLUM_FUZZ_WORK:-$(mktemp -d -t vellum-fuzz.XXXXXX)}"
mkdir -p "$work"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

summary=()
found=0
for target in "${targets[@]}"; do
    dir="$work/$target"
    mkdir -p "$dir/corpus" "$dir/findings"
    cp -n fuzz/corpus/"$target"/* "$dir/corpus/"
    options=(-max_total_time="$seconds" -timeout=25 -rss_limit_mb=2560 -max_len=65536
        -print_final_stats=1 -artifact_prefix="$dir/findings/")
    [ "$target" = xml ] && options+=(-dict=fuzz/xml.dict)
    [ "${VELLUM_FUZZ_KEEP_GOING:-0}" = 1 ] && options+=(-fork=1 -ignore_crashes=1 -ignore_timeouts=1
        -ignore_ooms=1)
    echo "fuzz: $target for ${seconds}s (log: $dir/log)"
    status=0
    build-fuzz/fuzz/vellum_fuzz_"$target" "${options[@]}" "$dir/corpus" >"$dir/log" 2>&1 ||
        status=$?
    executions="$(awk '/stat::number_of_executed_units:/ {n = $2} END {print n + 0}' "$dir/log")"
    if [ "$executions" = 0 ]; then # fork mode reports its progress lines only
        executions="$(sed -n 's/^#\([0-9]*\).*/\1/p' "$dir/log" | tail -n 1)"
    fi
    result=ok
    shopt -s nullglob
    inputs=("$dir"/findings/*)
    shopt -u nullglob
    if [ "$status" -ne 0 ] || [ "${#inputs[@]}" -ne 0 ]; then
        result=FINDING
        found=1
        grep -E "what\(\)|ERROR: |SUMMARY: |runtime error" "$dir/log" | head -n 8 | sed 's/^/    /'
        for input in "${inputs[@]}"; do
            echo "FINDING $target input: $input"
        done
    fi
    summary+=("$(printf '%-12s %12s %8s  %s' "$target" "${executions:-0}" "$seconds" "$result")")
done

printf '%-12s %12s %8s  %s\n' target executions seconds result
printf '%s\n' "${summary[@]}"
echo "fuzz: work folder $work"
exit "$found"
