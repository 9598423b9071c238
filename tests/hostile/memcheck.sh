#!/usr/bin/env bash
# Compiles realistic documents under valgrind's memcheck and fails on any definitely or
# indirectly lost block, and on memory errors.
#   memcheck.sh <valgrind> <path of bristel-compile> <examples folder> <built translations folder>
set -uo pipefail
valgrind=$1 compiler=$2 examples=$3 translations=$4
if [ ! -x "$valgrind" ]; then
    echo "FAIL: valgrind not found ($valgrind): install valgrind"
    exit 1
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/bristel-memcheck.XXXXXX")
trap 'rm -rf "$work"' EXIT
export HOME=$work/home
mkdir -p "$HOME/.bristel/conf"
# The sample configuration, its translation taken from the build: the run loads a translator
# too, and the output can be compared with the committed one.
sed "s|/usr/share/bristel/translations/|$translations/|" "$examples/bristel.conf" \
    >"$HOME/.bristel/conf/bristel.conf"

status=0
# A receipt, a fiscal receipt (the command records) and the daily report (attributes read by
# position) between them take every layer: configuration, dispatch, layout and back-end.
for document in printFullOrderReceipt printFullOrderFiscal printReport; do
    log=$work/$document.valgrind
    if "$valgrind" --quiet --leak-check=full --errors-for-leak-kinds=definite,indirect \
        --show-leak-kinds=definite,indirect --error-exitcode=1 --log-file="$log" \
        "$compiler" "$examples/documents/$document.xml" "$work/$document.out" >/dev/null; then
        if ! cmp -s "$work/$document.out" "$examples/documents/$document.out"; then
            echo "FAIL [$document]: the output under valgrind differs from the committed one"
            status=1
        else
            echo "$document: no leak, no memory error"
        fi
    else
        echo "FAIL [$document]: valgrind reported:"
        cat "$log"
        status=1
    fi
done
exit $status
