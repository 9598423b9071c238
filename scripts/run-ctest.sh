#!/usr/bin/env bash
# Runs ctest in a build directory and judges the run strictly:
#   scripts/run-ctest.sh <build-dir> [more ctest arguments...]
# The whole log goes to <build-dir>/ctest.log.  Success prints the summary lines.  Any
# failed, skipped or not-run test, or a run without tests, fails: then each such test's own
# output comes first (what ctest said about it and what it printed), then the summary.
set -euo pipefail
dir=${1:?usage: run-ctest.sh <build-dir> [ctest arguments...]}
shift
log="$dir/ctest.log"

status=0
ctest --test-dir "$dir" --output-on-failure -j "$(nproc)" --timeout 600 "$@" >"$log" 2>&1 || status=$?

# A GoogleTest GTEST_SKIP, a missing tool reported as a skip, or a test whose fixture failed
# are listed under "did not run"; none of them counts as a pass here.
if grep -q "^The following tests did not run:" "$log"; then
    status=1
fi
if ! grep -qE "^[0-9]+% tests passed, [0-9]+ tests? failed out of [1-9]" "$log"; then
    status=1
fi

if [ $status -eq 0 ]; then
    grep -E "tests passed|Total Test time" "$log"
    exit 0
fi

# Lines ctest writes about a test before its result line (a failed fixture, a missing
# program) and the output it shows after the result line belong to that test.
awk '
    /^[0-9]+% tests passed/ { exit }
    /^Internal ctest changing|^Test project / { next }
    /^ *Start +[0-9]+: / { after = 0; next }
    /^ *[0-9]+\/[0-9]+ Test +#[0-9]+: / {
        if ($0 ~ / Passed +[0-9.]+ sec/) {
            after = 0
        } else {
            print "==== " $0
            printf "%s", pending
            after = 1
        }
        pending = ""
        next
    }
    { if (after) print; else pending = pending $0 "\n" }
' "$log"
echo "==== summary ($log)"
sed -n '/^[0-9]*% tests passed/,$p' "$log"
if ! grep -qE "^[0-9]+% tests passed" "$log"; then
    tail -n 40 "$log"
fi
exit 1
