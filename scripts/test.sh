#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite twice: a release build,
# then a build with AddressSanitizer and UndefinedBehaviorSanitizer; in between, the database
# tests from a copy of the checkout inside a 0700 folder; then runs each fuzz target for a
# minute.  Exits non-zero on any failure, and on any test that was skipped or did not run.
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
    scripts/run-ctest.sh "$dir"
}

status=0
run_suite release "$root/build" || status=1
echo "== database tests from a checkout inside a private (0700) folder"
scripts/test-private-checkout.sh || status=1
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite sanitizers "$root/build-sanitize" -DBRISTEL_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo || status=1

echo "== fuzzing"
scripts/fuzz.sh 60 || status=1

if [ $status -ne 0 ]; then
    echo "FAILED"
    exit 1
fi
echo "All test suites passed."
