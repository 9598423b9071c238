#!/usr/bin/env bash
# Checks which libraries a shared library brings into a program: the ones it names itself
# (readelf -d, NEEDED) and every one the dynamic loader loads with it (ldd).
#   tests/abi/linked-libraries.sh <library> [+name|-name]...
# +name: a library whose file name begins with name must be loaded; -name: none may be, neither
# named directly nor loaded through another library.
set -euo pipefail
library=${1:?shared library}
shift
fail() {
    echo "linked-libraries: $(basename "$library"): $*"
    exit 1
}
[ -f "$library" ] || fail "no such file"
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
[ -n "$needed" ] || fail "readelf lists no needed library"
loaded=$(ldd "$library" | awk '{ print $1 }')
if grep -q "not found" <<<"$(ldd "$library")"; then
    ldd "$library"
    fail "the loader cannot find every library"
fi
for rule in "$@"; do
    name=${rule:1}
    case "$rule" in
    +*)
        grep -q "^$name" <<<"$loaded" || fail "does not load $name: $(echo $loaded)"
        ;;
    -*)
        if grep -q "^$name" <<<"$needed"; then
            fail "names $name itself: $(echo $needed)"
        fi
        if grep -q "^$name" <<<"$loaded"; then
            fail "loads $name through another library: $(ldd "$library" | grep "$name")"
        fi
        ;;
    *) fail "rule $rule is neither +name nor -name" ;;
    esac
done
echo "linked-libraries: $(basename "$library") ok"
