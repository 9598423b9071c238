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
