#!/usr/bin/env bash
# bristel-compile and the logger on a full file system: /dev/full, where every write fails
# with ENOSPC, and a 256 KiB tmpfs mounted in a private mount namespace where the machine
# allows it (root, or an unprivileged user namespace).
#   full-disk.sh <path of bristel-compile> [<path of log_tests>]
# The compiler must end by itself in time, with status 0 and no signal; on the tmpfs its
# output file must hold the beginning of the complete output, as much as fitted.  The logger
# is checked by the FullDisk tests of log_tests, pointed at the same file system.
set -uo pipefail
compiler=${1:?compiler}
log_tests=${2:-}
scale=${HOSTILE_SCALE:-1}

# Into a private mount namespace first, so that the mount is nobody else's business and
# goes away with the script.
if [ -z "${BRISTEL_FULL_DISK_NAMESPACE:-}" ]; then
    if [ "$(id -u)" -eq 0 ]; then
        ns=(unshare --mount)
    else
        ns=(unshare --map-root-user --mount)
    fi
    if "${ns[@]}" true 2>/dev/null; then
        BRISTEL_FULL_DISK_NAMESPACE=1 exec "${ns[@]}" bash "$0" "$@"
    fi
fi

work=$(mktemp -d "/tmp/bristel-full-disk.XXXXXX")
full=$work/full
mkdir "$full"
cleanup() {
    mountpoint -q "$full" && umount "$full"
    rm -rf "$work"
}
trap cleanup EXIT
export HOME=$work/home
mkdir -p "$HOME/.bristel/conf"
export LC_ALL=C.UTF-8

fail() {
    echo "FAIL [full-disk on $where]: $*"
    [ -s "$work/stdout" ] && { echo "--- stdout:"; head -c 2000 "$work/stdout"; echo; }
    exit 1
}

# A receipt of 20,000 items: about 900 KB of output, several times what the tmpfs holds.
where="a normal disk"
{
    printf '<?xml version="1.0" encoding="UTF-8"?>\n<document><method name="printFullOrderReceipt"/>\n'
    for i in $(seq 1 20000); do
        printf '<receipe number="2" name="Spaghetti alla carbonara n. %d" price="9.00" totalPrice="18.00"/>\n' "$i"
    done
    printf '<total price="999.00"/></document>\n'
} >"$work/input.xml"
"$compiler" "$work/input.xml" "$work/complete.out" >/dev/null
complete_size=$(stat -c %s "$work/complete.out")
[ "$complete_size" -gt 524288 ] || fail "the complete output is only $complete_size bytes"

# check <description> <output file> <log folder, empty for /dev/full>
check() {
    where=$1
    local output=$2 folder=$3 started=$SECONDS status kept
    timeout -s KILL $((120 * scale)) "$compiler" "$work/input.xml" "$output" >"$work/stdout" 2>&1
    status=$?
    [ $status -eq 137 ] && fail "bristel-compile still running after $((120 * scale)) s"
    [ $status -gt 128 ] && fail "bristel-compile ended by signal $((status - 128))"
    [ $status -eq 0 ] || fail "bristel-compile exit status $status"
    if [ -n "$folder" ]; then
        kept=$(stat -c %s "$output")
        [ "$kept" -gt 131072 ] || fail "only $kept bytes kept on the 256 KiB file system"
        [ "$kept" -lt "$complete_size" ] || fail "the file system was not full ($kept bytes written)"
        cmp -s -n "$kept" "$output" "$work/complete.out" ||
            fail "the $kept bytes kept are not the beginning of the complete output"
        echo "bristel-compile on $where: $((SECONDS - started)) s, kept the first $kept of $complete_size bytes"
        rm -f "$output"
    else
        echo "bristel-compile on $where: $((SECONDS - started)) s, status 0"
    fi

    [ -n "$log_tests" ] || return 0
    timeout -s KILL $((300 * scale)) env BRISTEL_FULL_DISK="$folder" "$log_tests" --gtest_filter='FullDisk.*' \
        >"$work/stdout" 2>&1 || fail "the logger's full-disk tests failed"
    grep -q "PASSED.* 2 tests" "$work/stdout" || fail "the logger's full-disk tests did not all run"
    echo "logger on $where: every call returned, the job went on, nothing piled up in memory"
}

check /dev/full /dev/full ""
if [ -n "${BRISTEL_FULL_DISK_NAMESPACE:-}" ] && mount -t tmpfs -o size=256k,mode=0777 tmpfs "$full"; then
    check "a 256 KiB tmpfs" "$full/output.txt" "$full"
else
    echo "full-disk: no private tmpfs on this machine (no mount namespace); /dev/full only"
fi
