#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ and runs each for a bounded time.
#   scripts/fuzz.sh [seconds per target, default 60]
# Prints one summary line per target.  A crashing input, or one that breaks a property of its
# target, is kept in build-fuzz/artifacts/ and the script exits non-zero; once fixed, keep it
# under fuzz/crashes/<target>/ (see the README there).  Each run starts from the seeds, the
# kept crashes and the inputs found by earlier runs (build-fuzz/corpus/).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-60}
dir=${BRISTEL_FUZZ_DIR:-$root/build-fuzz}
targets=(fuzz_config fuzz_compile fuzz_escpos fuzz_preview)

mkdir -p "$dir"
log="$dir/build.log"
if ! { CC=clang CXX=clang++ cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DBRISTEL_FUZZ=ON -DBRISTEL_BUILD_TESTS=OFF -DBRISTEL_BUILD_GUI=ON &&
        cmake --build "$dir" -j "$(nproc)" --target "${targets[@]}"; } >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "fuzz: build failed, see $log" >&2
    exit 1
fi

"$root/fuzz/make-corpus.sh" "$dir/seeds"
mkdir -p "$dir/artifacts"

status=0
for target in "${targets[@]}"; do
    corpus="$dir/corpus/$target"
    mkdir -p "$corpus"
    run_log="$dir/$target.log"
    if ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
        "$dir/bin/$target" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2048 -max_len=65536 \
        -dict="$root/fuzz/bristel.dict" -artifact_prefix="$dir/artifacts/$target-" -print_final_stats=1 \
        "$corpus" "$dir/seeds/$target" "$root/fuzz/crashes/$target" >"$run_log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$run_log")
        cov=$(grep -o 'cov: [0-9]*' "$run_log" | tail -n 1)
        echo "$target: ${runs:-?} runs in ${seconds} s, ${cov:-cov: ?}, no crash"
    else
        status=1
        artifact=$(grep -o "Test unit written to .*" "$run_log" | tail -n 1 | sed 's/Test unit written to //')
        echo "$target: FAILED (${artifact:-no input saved}); log: $run_log"
        grep -E "ERROR|SUMMARY|runtime error|#[0-9]+ 0x" "$run_log" | head -n 30 || true
    fi
done
exit $status
