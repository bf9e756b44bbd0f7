#!/usr/bin/env bash
# The sanitizer run of CI: the whole test suite (Qt off) built with clang under
# AddressSanitizer and UndefinedBehaviorSanitizer, float-to-int overflow included (GCC's
# sanitizer has no such check), then each libFuzzer target for FUZZ_SECONDS (default 60)
# on the same build. One build serves both: its code carries libFuzzer's coverage hooks.
# A crash the fuzzers find is left in the build folder as crash-*; keep it under
# fuzz/regressions/ once fixed.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=${SANBUILD:-build-sanitize}
JOBS=${JOBS:-2}
FUZZ_SECONDS=${FUZZ_SECONDS:-60}
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tools/lsan.supp}
CC=clang CXX=clang++ cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELK_QT=OFF \
    -DZELK_SANITIZE=ON -DZELK_FUZZ=ON -DZELK_TESTS=ON
cmake --build "$BUILD" -j"$JOBS"
ctest --test-dir "$BUILD" --output-on-failure -j"$JOBS"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/design" "$work/batch" "$work/seeds"
cp tests/scripts/*.txt "$work/seeds/"
fuzz() { # TARGET WORKCORPUS SEEDS...
    local target=$1
    shift
    "$BUILD/fuzz/$target" -max_total_time="$FUZZ_SECONDS" -timeout=30 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$PWD/$BUILD/$target-" "$@" 2>"$work/$target.log" || {
        tail -n 60 "$work/$target.log"
        echo "$target found a fault; the input is in $BUILD/" >&2
        return 1
    }
    grep -E "^Done|stat::number_of_executed_units" "$work/$target.log" || true
}
fuzz designfile_fuzz "$work/design" fuzz/corpus fuzz/regressions
fuzz batchscript_fuzz "$work/batch" fuzz/corpus-batch "$work/seeds"
