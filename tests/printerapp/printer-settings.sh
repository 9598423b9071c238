#!/usr/bin/env bash
# bristel-printer-app's per-printer settings (code page, columns, cut, feed before the cut,
# drawer pin and pulse): set with the "modify" command and with IPP Set-Printer-Attributes,
# read back with Get-Printer-Attributes, kept across a restart, and printed with: a bristel job
# as bristel-render renders it with the same settings, a text in the code page and columns,
# a picture and a raster page with the cut. ESC/POS passes as it came.
#   printer-settings.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

# The receipt opens the cash drawer, so that the drawer's settings show in its bytes.
mkdir -p "$dir/home/.bristel/conf"
echo 'bristel : { receiptdoc : { openCashDrawer = true; }; };' >"$dir/home/.bristel/conf/bristel.conf"
document=$source_dir/examples/documents/printFullOrderReceipt.xml

start_with_printers kitchen

printed_size=0
# prints FILE FORMAT [OPTION...]: submits a job and waits until the printer has printed what
# it sent; those bytes go to $dir/last.bin.
prints() {
    local file=$1 format=$2 before
    shift 2
    before=$(stat -c %s "$dir/kitchen/printed.bin" 2>/dev/null || echo 0)
    "$app" submit -d kitchen -o document-format="$format" "$@" "$file" >/dev/null || fail "submit failed"
    wait_for_jobs_to_end kitchen
    "$app" jobs -d kitchen | grep -q '^[0-9]* *aborted' && fail "a job of $file was aborted"
    tail -c +$((before + 1)) "$dir/kitchen/printed.bin" >"$dir/last.bin"
}
hex() { od -An -tx1 -v "$1" | tr -s ' \n' ' '; }

# Before any setting: the configuration's own (the defaults here).
"$bin/bristel-render" -f escpos "$document" "$dir/configured.bin"
prints "$document" application/vnd.bristel+xml
cmp "$dir/configured.bin" "$dir/last.bin" || fail "the receipt did not print as configured before any setting"

# settings_are CODE_PAGE COLUMNS CUT FEED PIN PULSE: Get-Printer-Attributes reads them back.
settings_are() {
    ipptool -t -d code_page="$1" -d columns="$2" -d cut="$3" -d feed="$4" -d pin="$5" -d pulse="$6" "$uri" \
        "$source_dir/tests/printerapp/printer-settings.test" >"$dir/attributes.txt" ||
        fail "the settings do not read back as $*: $(cat "$dir/attributes.txt")"
}
# receipt_as WHEN BYTES...: the receipt prints as $dir/expected.bin, which holds each BYTES.
receipt_as() {
    local when=$1 bytes
    shift
    prints "$document" application/vnd.bristel+xml
    cmp "$dir/expected.bin" "$dir/last.bin" || fail "$when: the receipt did not print with the printer's settings"
    for bytes in "$@"; do
        hex "$dir/last.bin" | grep -q " $bytes " || fail "$when: the receipt lacks $bytes"
    done
}

# Every setting with the command line: a bristel job prints as bristel-render renders it
# with the same settings: ESC t 2 (PC850), ESC p 0 (pin 2) 20 (40 ms), and no cut at all.
"$app" modify -d kitchen -o bristel-code-page-default=pc850 -o bristel-columns-default=30 \
    -o bristel-cut-default=none -o bristel-cut-feed-default=20 -o bristel-drawer-pin-default=2 \
    -o bristel-drawer-pulse-default=40 || fail "modify failed"
settings_are pc850 30 none 20 2 40
"$bin/bristel-render" -f escpos --codepage PC850 --columns 30 --cut none --cut-feed 20 --drawer-pin 2 \
    --drawer-on 40 "$document" "$dir/expected.bin"
receipt_as "set with modify" '1b 74 02' '1b 70 00 14'
hex "$dir/last.bin" | grep -q ' 1d 56 ' && fail "set with modify: the receipt was cut"
cmp -s "$dir/configured.bin" "$dir/last.bin" && fail "the settings changed nothing"

# Every setting over IPP: ESC t 0 (PC437), ESC p 1 (pin 5) 50 (100 ms), GS V 65 10 (a full
# cut after 10 units of feed).
ipptool -q -d code_page=pc437 -d columns=40 -d cut=full -d feed=10 -d pin=5 -d pulse=100 "$uri" \
    "$source_dir/tests/printerapp/printer-settings-set.test" || fail "Set-Printer-Attributes failed"
settings_are pc437 40 full 10 5 100
"$bin/bristel-render" -f escpos --codepage PC437 --columns 40 --cut full --cut-feed 10 --drawer-pin 5 \
    --drawer-on 100 "$document" "$dir/expected.bin"
receipt_as "set over IPP" '1b 74 00' '1b 70 01 32' '1d 56 41 0a'

# ESC/POS passes as it came.
printf '\033@raw\n\035V\102\000' >"$dir/raw.bin"
prints "$dir/raw.bin" application/vnd.escpos
cmp "$dir/raw.bin" "$dir/last.bin" || fail "ESC/POS did not pass unchanged"

# A text in the printer's code page, wrapped at its 40 columns, then its cut; é and € in PC858
# are 82 and D5.
"$app" modify -d kitchen -o bristel-code-page-default=pc858 || fail "modify failed"
printf 'Caf\xc3\xa9 3 \xe2\x82\xac\nOne line that is far too long for forty columns of paper\n' >"$dir/text.txt"
{
    printf '\033@\033t\023Caf\202 3 \325\n'
    printf 'One line that is far too long for forty\ncolumns of paper\n\035VA\012'
} >"$dir/text.bin"
prints "$dir/text.txt" text/plain
cmp "$dir/text.bin" "$dir/last.bin" || fail "the text did not print in PC858 at 40 columns: $(hex "$dir/last.bin")"

# A picture and a raster page get the printer's cut; a job's own value wins over the printer's.
picture=$source_dir/docs/receipt-preview.png
prints "$picture" image/png
[ "$(tail -c 4 "$dir/last.bin" | od -An -tx1 | tr -d ' ')" = 1d56410a ] || fail "the picture did not get the full cut"
python3 - "$dir/page.pwg" <<'PYTHON'
import struct, sys
width, height = 576, 100
header = bytearray(1796)
header[0:9] = b"PwgRaster"
for offset, value in ((276, 203), (280, 203), (372, width), (376, height), (384, 8), (388, 8),
                      (392, width), (400, 18)):
    header[offset:offset + 4] = struct.pack(">I", value)
# One line, repeated for the whole page: black dots.
line = bytes([height - 1, 127, 0, 127, 0, 127, 0, 127, 0, 63, 0])
open(sys.argv[1], "wb").write(b"RaS2" + bytes(header) + line)
PYTHON
# A raster page is taken only once the printer has stopped holding the jobs that come while it is busy.
wait_until_not_holding kitchen
prints "$dir/page.pwg" image/pwg-raster
[ "$(tail -c 4 "$dir/last.bin" | od -An -tx1 | tr -d ' ')" = 1d56410a ] || fail "the raster page did not get the full cut"
prints "$picture" image/png -o bristel-cut=none
tail -c 4 "$dir/last.bin" | od -An -tx1 | tr -d ' ' | grep -q '^1d56' && fail "the job's own \"no cut\" was not taken"

# The settings survive a restart.
"$app" modify -d kitchen -o bristel-code-page-default=pc437 || fail "modify failed"
stop_server
mv "$dir/server.log" "$dir/server-before-restart.log"
start_server
uri=ipp://127.0.0.1:$port/ipp/print/kitchen
settings_are pc437 40 full 10 5 100
receipt_as "after a restart" '1b 74 00' '1b 70 01 32' '1d 56 41 0a'
wait_for_jobs_to_end kitchen
stop_server
echo "printer-settings: set, read back, kept and printed with"
