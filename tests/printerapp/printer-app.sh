#!/usr/bin/env bash
# bristel-printer-app end to end: a private server (its own runtime folder, port, spool folder,
# state file and socket name) drives a fake network receipt printer. An ESC/POS job reaches
# the printer byte for byte, a bristel document as bristel-render -f escpos renders it, and
# jobs sent while the printer is off wait and then print once each, in the order they came.
#   printer-app.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_printer printer
control() { control_printer printer "$@"; }
start_server

add_printer kitchen bristel_80mm printer
"$app" printers | grep -qx kitchen || fail "the printer was not added"
"$app" drivers | grep -q '^bristel_80mm_512 ' || fail "the 512-dot driver is not offered"

# ESC/POS passes through unchanged.
printf '\033@raw ticket\n\035V\102\000' >"$dir/raw.bin"
"$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/raw.bin" >/dev/null || fail "submit failed"
expected() { cat "$@" >"$dir/expected.bin"; control wait-printed "$(stat -c %s "$dir/expected.bin")"; }
expected "$dir/raw.bin"
cmp "$dir/expected.bin" "$dir/printer/printed.bin" || fail "the raw job did not arrive unchanged"

# A bristel document prints as bristel-render renders it.
document=$source_dir/examples/documents/printFullOrderReceipt.xml
"$bin/bristel-render" -f escpos "$document" "$dir/rendered.bin"
"$app" submit -d kitchen -o document-format=application/vnd.bristel+xml "$document" >/dev/null ||
    fail "submit failed"
expected "$dir/raw.bin" "$dir/rendered.bin"
cmp "$dir/expected.bin" "$dir/printer/printed.bin" ||
    fail "the bristel job did not print as bristel-render renders it"

# The printer switched off: jobs wait, and print once each, in order, when it is back.
control state off
printf 'first while off\n' >"$dir/first.bin"
printf 'second while off\n' >"$dir/second.bin"
"$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/first.bin" >/dev/null
"$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/second.bin" >/dev/null
"$app" jobs -d kitchen | grep -q 'processing\|pending' || fail "no job waits while the printer is off"
control state ready
expected "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin"

# A picture on a 58 mm printer comes as GS v 0 raster 384 dots (48 bytes) wide, then a cut;
# a damaged one is refused and prints nothing.
add_printer narrow bristel_58mm printer
picture=$source_dir/docs/receipt-preview.png # 744 x 960: 495 rows at 384 dots
head -c 3000 "$picture" >"$dir/damaged.png"
"$app" submit -d narrow -o document-format=image/png "$dir/damaged.png" >/dev/null
"$app" submit -d narrow -o document-format=image/png "$picture" >/dev/null
{
    printf '\035v0\000\060\000\357\001'
    head -c $((48 * 495)) /dev/zero
    printf '\035VB\000'
} >"$dir/picture-shape.bin"
expected "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin" "$dir/picture-shape.bin"
"$app" jobs -d narrow | grep -q '^1 *aborted' || fail "the damaged picture was not refused"

# A PWG raster page and an Apple raster page, 384 x 100 grey dots all black, each print as 100
# rows of black dots: the blank rest of the page is not fed.
write_black_raster_pages "$dir/page.pwg" "$dir/page.urf"
wait_until_not_holding narrow
"$app" submit -d narrow -o document-format=image/pwg-raster "$dir/page.pwg" >/dev/null
"$app" submit -d narrow -o document-format=image/urf "$dir/page.urf" >/dev/null
black_raster_page_bytes >"$dir/page.bin"
expected "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin" "$dir/picture-shape.bin" \
    "$dir/page.bin" "$dir/page.bin"

# The server finishes its jobs before it stops: after that nothing more can reach the printer.
wait_for_jobs_to_end kitchen narrow
stop_server
# Everything byte for byte but the picture's dots: of the picture, its commands and size.
prefix=$(($(stat -c %s "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin" | paste -sd+)))
cmp -n "$prefix" "$dir/expected.bin" "$dir/printer/printed.bin" ||
    fail "the jobs held while the printer was off did not print once each in order"
[ "$(stat -c %s "$dir/printer/printed.bin")" = "$(stat -c %s "$dir/expected.bin")" ] ||
    fail "more or fewer bytes reached the printer than the jobs hold"
tail -c +$((prefix + 1)) "$dir/printer/printed.bin" | head -c "$(stat -c %s "$dir/picture-shape.bin")" \
    >"$dir/picture.bin"
cat "$dir/page.bin" "$dir/page.bin" >"$dir/pages.bin"
tail -c "$(stat -c %s "$dir/pages.bin")" "$dir/printer/printed.bin" | cmp - "$dir/pages.bin" ||
    fail "the PWG and Apple raster pages did not print as their dots"
cmp -n 8 "$dir/picture-shape.bin" "$dir/picture.bin" || fail "the picture is not one GS v 0 band 48 bytes wide"
[ "$(tail -c 4 "$dir/picture.bin" | od -An -tx1 | tr -d ' ')" = 1d564200 ] || fail "no cut after the picture"
[ "$(tail -c +9 "$dir/picture.bin" | head -c $((48 * 495)) | tr -d '\000' | wc -c)" -gt 1000 ] ||
    fail "the picture printed without ink"
echo "printer-app: raw, rendered, held, picture and raster jobs printed as sent"
