#!/usr/bin/env bash
# Proves that the tests do not depend on where the checkout lives: copies the working tree
# into a fresh 0700 folder (as a root home or a mktemp -d folder is), builds the database
# tests there and runs them with their private PostgreSQL server (ctest label "database"),
# first as the user running this script, then, when that is root, as an unprivileged user
# (BRISTEL_TEST_USER, default "nobody") that owns the folder.
#   scripts/test-private-checkout.sh
# The folder is removed afterwards.  Set CMAKE_CXX_COMPILER_LAUNCHER=ccache to reuse a cache.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 0700 "$work"
checkout=$work/bristel
mkdir "$checkout"

# The tracked files and the new ones not ignored, as they are now (uncommitted edits included).
if git -C "$root" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    git -C "$root" ls-files -z --cached --others --exclude-standard |
        (cd "$root" && xargs -0 -r sh -c 'for f; do [ -e "$f" ] && printf "%s\0" "$f"; done' sh) |
        tar -C "$root" --null -T - -cf - | tar -C "$checkout" -xf -
else
    tar -C "$root" --exclude='./build*' -cf - . | tar -C "$checkout" -xf -
fi

build=$checkout/build
log=$work/build.log
if ! { cmake -S "$checkout" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release &&
    cmake --build "$build" -j "$(nproc)" --target database_tests; } >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "test-private-checkout: build failed" >&2
    exit 1
fi

echo "as $(id -un), checkout in $checkout ($(stat -c %a "$work") $(stat -c %U "$work"))"
"$checkout/scripts/run-ctest.sh" "$build" -L database

if [ "$(id -u)" -eq 0 ]; then
    user=${BRISTEL_TEST_USER:-nobody}
    if ! id -u "$user" >/dev/null 2>&1; then
        echo "test-private-checkout: no user $user to run the tests as (set BRISTEL_TEST_USER)" >&2
        exit 1
    fi
    chown -R "$user:" "$work"
    echo "as $user, checkout in $checkout ($(stat -c %a "$work") $(stat -c %U "$work"))"
    runuser -u "$user" -- env HOME="$work" "$checkout/scripts/run-ctest.sh" "$build" -L database
fi
