#!/usr/bin/env bash
# Writes the seed inputs of the fuzz targets from the examples and the golden cases:
#   fuzz/make-corpus.sh <folder>   ->  <folder>/fuzz_config/, <folder>/fuzz_compile/, <folder>/fuzz_escpos/,
#                                      <folder>/fuzz_preview/
# A fuzz_compile or fuzz_escpos seed is a configuration, a line "%%", then a document.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:?usage: make-corpus.sh <folder>}
rm -rf "$out/fuzz_config" "$out/fuzz_compile" "$out/fuzz_escpos"
mkdir -p "$out/fuzz_config" "$out/fuzz_compile"

n=0
add_config() {
    n=$((n + 1))
    cp "$1" "$out/fuzz_config/seed-$n"
}
add_compile() { # <configuration or ""> <document> <name>
    {
        [ -n "$1" ] && cat "$1"
        printf '\n%%%%\n'
        cat "$2"
    } >"$out/fuzz_compile/$3"
}

add_config "$root/examples/bristel.conf"
for conf in "$root"/tests/golden/cases/*/bristel.conf; do
    add_config "$conf"
done
for conf in "$root"/tests/unit/configviews/data/*; do
    [ -f "$conf" ] && add_config "$conf"
done
# A few small shapes of both layouts.
printf 'a : { b = 1; c : { d = "x y"; }; };\n' >"$out/fuzz_config/shape-nested"
printf 'a : { k = 1; }; b : { k = 2; };\nx = 1;\n' >"$out/fuzz_config/shape-two-blocks"
printf '<bristel><receiptdoc paperWidth="40"/></bristel>\n' >"$out/fuzz_config/shape-xml"

for doc in "$root"/examples/documents/*.xml; do
    add_compile "$root/examples/bristel.conf" "$doc" "example-$(basename "$doc" .xml)"
done
for case in "$root"/tests/golden/cases/*/; do
    [ -f "$case/input.xml" ] || continue
    conf=""
    [ -f "$case/bristel.conf" ] && conf="$case/bristel.conf"
    add_compile "$conf" "$case/input.xml" "golden-$(basename "$case")"
done

# The receipt printer takes the same documents, and a few that try to reach it as commands.
cp -r "$out/fuzz_compile" "$out/fuzz_escpos"
printf 'bristel : { escpos : { codePage = "PC437"; cut = "full"; drawerPin = 5; }; receiptdoc : { openCashDrawer = true; printCustomer = true; }; };\n%%%%\n<d><method name="printFullOrderReceipt"/><customer name="A&#x9B;B&#x7F;&#x85;"/><logo/></d>\n' \
    >"$out/fuzz_escpos/hostile-customer"

# The virtual printer reads ESC/POS streams: the examples' bytes and the preview's own test stream.
rm -rf "$out/fuzz_preview"
mkdir -p "$out/fuzz_preview"
for stream in "$root"/examples/documents/*.escpos "$root"/tests/unit/preview/data/*.escpos; do
    cp "$stream" "$out/fuzz_preview/$(basename "$stream")"
done
# A receipt as other programs write it, with commands of every way of counting parameters: tab
# positions, both barcode forms, a stored and printed QR code, a graphic counted in four bytes,
# a column image, NV images, real-time commands, a bitmap and the counter's settings.
printf '%b' '\x1b@\x1bD\x08\x10\x18\x00\x1ba\x01\x1bE\x01TRATTORIA\n\x1bE\x00\x1ba\x00' \
    '2 x Pizza\t9.00\n\x1dk\x04*12*\x00\x1dkE\x041234\x1d(k\x06\x001P0abc\x1d(k\x03\x001Q0' \
    '\x1d8L\x06\x00\x00\x000p-00@\x1b*\x21\x02\x00------\x1cq\x01\x01\x00\x01\x00--------' \
    '\x10\x14\x01\x00\x01\x10\x04\x07\x01\x1dD0S0\x01\x01BM\x0e\x00\x00\x00--------' \
    '\x1dC;1;2;3;4;5;TOTALE\n\x1dVB\x10' >"$out/fuzz_preview/foreign-commands.escpos"
