#!/usr/bin/env bash
# Runs the tests under sanitizers (g++), each step timed:
#   asan  a Debug build of the libraries and their tests with AddressSanitizer and
#         UndefinedBehaviorSanitizer (undefined behaviour fails the test) in ./build-asan, then
#         those tests;
#   tsan  a ThreadSanitizer build of the dictionary, export and import tests in ./build-tsan,
#         then the tests that look up built-in definitions or export from several threads at
#         once and those that read large documents (read on a second thread).
#
#   scripts/sanitize.sh [asan] [tsan]      (both when none is named)
#
# Benchmarks are not built. Exits with the status of the first step that fails.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

steps=("$@")
if [ "${#steps[@]}" -eq 0 ]; then
    steps=(asan tsan)
fi
jobs="$(nproc)"

# Runs a command and prints how long it took (wall clock, and the CPU time it and its children
# used).
timed() {
    local label="$1"
    shift
    local TIMEFORMAT="sanitize: $label took %0R s (cpu %0U s user, %0S s system)"
    time "$@"
}

asan() {
    export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}"
    export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
    # Each test program runs as two sharded tests: a sanitized process is slow to start and to
    # check for leaks at exit, and there are some 1500 test cases. The program and its tests
    # are left out: they run the program hundreds of times over library code that the library
    # tests run here too, and would double the step's time. The packaging checks compile
    # headers and consumer projects and run no library code.
    timed "asan configure" cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DVELLUM_SANITIZE=ON \
        -DVELLUM_TEST_PER_PROGRAM=ON -DVELLUM_BUILD_BENCHMARKS=OFF -DVELLUM_BUILD_APPS=OFF \
        >/dev/null
    timed "asan build" cmake --build build-asan -j"$jobs"
    timed "asan tests" ctest --test-dir build-asan --output-on-failure -j"$jobs" -E '^Packaging\.'
}

# The tests that make built-in definitions or export from several threads at once, and those
# that read a document on a second thread while the units read so far are used.
tsanTests='ThreadsRace|Concurrent|XMLStreamReader\.(Large|Nested)|HandlerFailure|ALargeTyped'

tsan() {
    export TSAN_OPTIONS="${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1}"
    timed "tsan configure" cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_FLAGS="-fsanitize=thread -fno-omit-frame-pointer" \
        -DCMAKE_EXE_LINKER_FLAGS=-fsanitize=thread -DCMAKE_SHARED_LINKER_FLAGS=-fsanitize=thread \
        -DVELLUM_BUILD_BENCHMARKS=OFF -DVELLUM_BUILD_APPS=OFF -DVELLUM_INSTALL=OFF >/dev/null
    timed "tsan build" cmake --build build-tsan -j"$jobs" --target Vellum_MetaMetadata_Tests \
        Vellum_XMLBuilder_Tests
    timed "tsan tests" ctest --test-dir build-tsan --output-on-failure -R "$tsanTests" \
        --no-tests=error
}

for step in "${steps[@]}"; do
    case "$step" in
    asan | tsan) "$step" ;;
    *)
        echo "usage: scripts/sanitize.sh [asan] [tsan]" >&2
        exit 2
        ;;
    esac
done
