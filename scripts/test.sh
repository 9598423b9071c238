#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite twice: a release build,
# then a build with AddressSanitizer and UndefinedBehaviorSanitizer; then runs each fuzz target
# for a minute.  Exits non-zero on any failure.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

scripts/install-deps.sh

run_suite() {
    local name=$1 dir=$2
    shift 2
    echo "== $name build"
    scripts/build.sh "$dir" "$@"
    echo "== $name tests"
    local log="$dir/ctest.log"
    if ctest --test-dir "$dir" --output-on-failure -j "$(nproc)" --timeout 600 >"$log" 2>&1; then
        grep -E "tests passed|Total Test time" "$log"
    else
        grep -vE "^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed" "$log" | tail -n 400
        return 1
    fi
}

status=0
run_suite release "$root/build" || status=1
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite sanitizers "$root/build-sanitize" -DBRISTEL_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo || status=1

echo "== fuzzing"
scripts/fuzz.sh 60 || status=1

if [ $status -ne 0 ]; then
    echo "FAILED"
    exit 1
fi
echo "All test suites passed."
