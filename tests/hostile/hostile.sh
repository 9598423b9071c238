#!/usr/bin/env bash
# Runs bristel-compile on one kind of hostile input and checks it from the outside: the run
# ends by itself within a time bound, exits with status 0 and no signal, stays under a peak
# memory bound (/usr/bin/time's maximum resident set), and leaves the expected output.
#   hostile.sh <case> <path of bristel-compile>
# Inputs are generated into a temporary folder that is removed afterwards.  With
# HOSTILE_SCALE=n (the sanitizer build) the time and memory bounds are n times wider.
set -uo pipefail
name=${1:?case}
compiler=${2:?compiler}
scale=${HOSTILE_SCALE:-1}

work=$(mktemp -d "${TMPDIR:-/tmp}/bristel-hostile.XXXXXX")
trap 'rm -rf "$work"' EXIT
export HOME=$work/home
mkdir -p "$HOME/.bristel/conf"
export LC_ALL=C.UTF-8

fail() {
    echo "FAIL [$name]: $*"
    for f in stdout stderr; do
        [ -s "$work/$f" ] && { echo "--- $f:"; head -c 2000 "$work/$f"; echo; }
    done
    exit 1
}

# run <seconds> <MiB> <input> <output>: one bounded run of the compiler.
run() {
    local seconds=$(($1 * scale)) limit=$(($2 * scale)) input=$3 output=$4 status rss
    local started=$SECONDS
    timeout -s KILL "$seconds" /usr/bin/time -f '%M' -o "$work/rss" \
        "$compiler" "$input" "$output" >"$work/stdout" 2>"$work/stderr"
    status=$?
    [ $status -eq 137 ] && fail "still running after ${seconds} s"
    grep -q "signal" "$work/rss" && fail "ended by a signal: $(head -n 1 "$work/rss")"
    [ $status -eq 0 ] || fail "exit status $status"
    rss=$(($(tail -n 1 "$work/rss") / 1024))
    echo "$name: $((SECONDS - started)) s, peak ${rss} MiB (bounds ${seconds} s, ${limit} MiB)"
    [ "$rss" -lt "$limit" ] || fail "peak resident memory ${rss} MiB, bound ${limit} MiB"
}

expect_line() { # <file> <fixed text that a line must contain>
    grep -qaF -- "$2" "$1" || fail "no line with '$2' in $(basename "$1")"
}

expect_empty_file() {
    [ -f "$1" ] || fail "$(basename "$1") was not created"
    [ ! -s "$1" ] || fail "$(basename "$1") is not empty"
}

repeat() { # <text> <count>: the text that many times, without line ends
    yes -- "$1" | head -n "$2" | tr -d '\n'
}

receipt_head='<?xml version="1.0" encoding="UTF-8"?>
<document><method name="printFullOrderReceipt"/>'
item='<receipe number="1" name="Deep" price="1.00" totalPrice="1.00"/>'
receipt_tail='<total price="1.00"/></document>'

# A plain receipt for the configuration cases.
plain_receipt() {
    printf '%s%s%s\n' "$receipt_head" "$item" "$receipt_tail" >"$work/in.xml"
}

# The item row of the plain receipt for a paper width: "1 x Deep", dots, price and total.
item_row() {
    local dots
    dots=$(printf "%$(($1 - 3 - 4))s" '' | tr ' ' '.')
    printf '1 x Deep%s1.001.00' "$dots"
}

out=$work/out.txt
case $name in
deep-nesting)
    # The item sits a million elements deep and must still print, and so must the total.
    {
        printf '%s' "$receipt_head"
        repeat '<a>' 1000000
        printf '%s' "$item"
        repeat '</a>' 1000000
        printf '%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 30 256 "$work/in.xml" "$out"
    expect_line "$out" "$(item_row 32)"
    expect_line "$out" "TOTAL"
    ;;
entity-bomb)
    # Ten levels of ten references: 10^10 bytes if expanded.
    {
        printf '<?xml version="1.0"?>\n<!DOCTYPE document [\n<!ENTITY l0 "lollollollollollollollollollol">\n'
        for i in 1 2 3 4 5 6 7 8 9; do
            printf '<!ENTITY l%d "%s">\n' "$i" "$(repeat "&l$((i - 1));" 10)"
        done
        printf ']>\n<document><method name="printFullOrderReceipt"/>'
        printf '<receipe number="1" name="&l9;" price="1" totalPrice="1"/>%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    [ "$(stat -c %s "$out")" -lt 65536 ] || fail "the expansion reached the output"
    ;;
huge-attribute)
    # A 64 MiB dish name: the row cuts it to the description column.
    {
        printf '%s<receipe number="1" name="' "$receipt_head"
        head -c $((64 * 1024 * 1024)) /dev/zero | tr '\0' 'w'
        printf '" price="1.00" totalPrice="1.00"/>%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 30 768 "$work/in.xml" "$out"
    expect_line "$out" "1 x wwwwwwwwwwwwwwwwwwwwwwwwwwwww1.001.00"
    expect_line "$out" "TOTAL"
    [ "$(stat -c %s "$out")" -lt 4096 ] || fail "the output holds more than the cut name"
    ;;
many-attributes)
    # The cancelled documents of a report: "number", "totals", then 6,666 triples of serial,
    # total and tax rate, 20,000 attributes in all.
    {
        printf '<document><method name="printReport"/><cancelledsummary number="6666" totals="9.99"'
        awk 'BEGIN { for (i = 1; i <= 6666; ++i) printf " s%d=\"S%d\" t%d=\"%d.50\" r%d=\"22\"", i, i, i, i, i }'
        printf '/></document>\n'
    } >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    expect_line "$out" "S6666     6666.50    22"
    [ "$(grep -c '22' "$out")" -ge 6666 ] || fail "not every cancelled document was printed"
    ;;
long-address)
    # A billing address of a million comma-separated pieces prints one line per piece, in
    # time linear in its length.
    printf 'bristel : { receiptdoc : { printCustomer = true; printBillingAddress = true; }; };\n' \
        >"$HOME/.bristel/conf/bristel.conf"
    {
        printf '%s<customer name="Rossi" billingaddress="' "$receipt_head"
        repeat 'Via Roma 1,' 1000000
        printf 'Last Street"/>%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 20 512 "$work/in.xml" "$out"
    [ "$(grep -ac ' Via Roma 1 ' "$out")" -eq 1000000 ] || fail "not one line per address piece"
    expect_line "$out" " Last Street "
    ;;
invalid-utf8)
    {
        printf '%s' "$receipt_head"
        printf '<receipe number="1" name="Caff\xe8 \xff\xfe\xc3" price="1" totalPrice="1"/>'
        printf '%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    [ -f "$out" ] || fail "no output file"
    ;;
nul-bytes)
    {
        printf '%s' "$receipt_head"
        printf '<receipe number="1" name="Caf\0fe" price="1" totalPrice="1"/>\0\0\0'
        printf '%s\n' "$receipt_tail"
    } >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    [ -f "$out" ] || fail "no output file"
    ;;
random-binary)
    LC_ALL=C awk 'BEGIN { srand(20240229); for (i = 0; i < 1048576; ++i) printf "%c", int(rand() * 256) }' \
        >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    expect_empty_file "$out"
    ;;
empty-file)
    : >"$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    expect_empty_file "$out"
    ;;
input-directory)
    mkdir "$work/in.xml"
    run 10 256 "$work/in.xml" "$out"
    expect_empty_file "$out"
    ;;
two-million-rows)
    # Streamed through pipes: neither the document nor the output exists whole anywhere.
    mkfifo "$work/in.xml" "$work/out.fifo"
    {
        printf '%s' "$receipt_head"
        yes -- '<receipe number="2" name="Coperto" price="2.00" totalPrice="4.00"/>' | head -n 2000000
        printf '%s\n' "$receipt_tail"
    } >"$work/in.xml" &
    grep -c 'x Coperto' <"$work/out.fifo" >"$work/rows" &
    counter=$!
    run 60 96 "$work/in.xml" "$work/out.fifo"
    wait $counter
    [ "$(cat "$work/rows")" -eq 2000000 ] || fail "$(cat "$work/rows") item rows printed, 2000000 expected"
    ;;
config-deep)
    # A block nested 100,000 deep stands before the profile the receipt uses.
    {
        printf 'bristel : {\n'
        repeat 'deep : { ' 100000
        printf 'leaf = 1; '
        repeat '}; ' 100000
        printf '\nreceiptdoc : { paperWidth = 20; };\n};\n'
    } >"$HOME/.bristel/conf/bristel.conf"
    plain_receipt
    run 30 512 "$work/in.xml" "$out"
    expect_line "$out" "$(item_row 20)"
    ;;
config-huge-value)
    {
        printf 'bristel : {\nreceiptdoc : {\nnote = "'
        head -c $((10 * 1024 * 1024)) /dev/zero | tr '\0' 'v'
        printf '";\npaperWidth = 24;\n};\n};\n'
    } >"$HOME/.bristel/conf/bristel.conf"
    plain_receipt
    run 20 512 "$work/in.xml" "$out"
    expect_line "$out" "$(item_row 24)"
    ;;
config-huge-margin)
    # A top margin of two billion lines is held to the profile bound of 100000.
    printf 'bristel : { receiptdoc : { printGeometry = true; topMargin = 2000000000; }; };\n' \
        >"$HOME/.bristel/conf/bristel.conf"
    printf '%s<geometry/>%s%s\n' "$receipt_head" "$item" "$receipt_tail" >"$work/in.xml"
    run 20 256 "$work/in.xml" "$out"
    [ "$(head -c 300000 "$out" | tr -d '\r\n' | wc -c)" -eq 0 ] || fail "the margin is not 100000 empty lines"
    [ "$(stat -c %s "$out")" -lt 400000 ] || fail "the margin is longer than 100000 lines"
    expect_line "$out" "$(item_row 32)"
    ;;
config-binary)
    LC_ALL=C awk 'BEGIN { srand(1234); for (i = 0; i < 262144; ++i) printf "%c", int(rand() * 256) }' \
        >"$HOME/.bristel/conf/bristel.conf"
    plain_receipt
    run 20 512 "$work/in.xml" "$out"
    expect_line "$out" "TOTAL"
    ;;
config-directory)
    mkdir "$HOME/.bristel/conf/bristel.conf"
    plain_receipt
    run 10 256 "$work/in.xml" "$out"
    expect_line "$out" "$(item_row 32)"
    ;;
output-directory)
    plain_receipt
    mkdir "$work/out.d"
    run 10 256 "$work/in.xml" "$work/out.d"
    expect_line "$work/stdout" "PrintManager::printAbstractOrder(...): Unable To Open File"
    ;;
output-missing-folder)
    plain_receipt
    run 10 256 "$work/in.xml" "$work/missing/out.txt"
    expect_line "$work/stdout" "PrintManager::printAbstractOrder(...): Unable To Open File"
    [ ! -e "$work/missing" ] || fail "the missing folder was created"
    ;;
*)
    fail "unknown case"
    ;;
esac
echo "$name: passed"
