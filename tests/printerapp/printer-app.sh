#!/usr/bin/env bash
# bristel-printer-app end to end: a private server (its own runtime folder, port, spool folder,
# state file and socket name) drives a fake network receipt printer. An ESC/POS job reaches
# the printer byte for byte, a bristel document as bristel-render -f escpos renders it, and
# jobs sent while the printer is off wait and then print once each, in the order they came.
#   printer-app.sh BIN_DIR SOURCE_DIR
set -euo pipefail
bin=${1:?usage: printer-app.sh BIN_DIR SOURCE_DIR}
source_dir=${2:?usage: printer-app.sh BIN_DIR SOURCE_DIR}
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen

# A short folder under /tmp: the server's socket path must stay short, and root's home may be
# closed to others.
dir=$(mktemp -d /tmp/bpa.XXXXXX)
server_pid=
printer_pid=
cleanup() {
    if [ -n "$server_pid" ] && kill -0 "$server_pid" 2>/dev/null; then
        kill -9 "$server_pid" 2>/dev/null || true
    fi
    if [ -n "$printer_pid" ]; then
        kill "$printer_pid" 2>/dev/null || true
    fi
    rm -f "/run/$app_name.sock" "$dir/run/$app_name.sock" 2>/dev/null || true
    rm -rf "$dir"
}
trap cleanup EXIT
fail() {
    echo "printer-app: $*" >&2
    echo "--- server log (last lines)" >&2
    tail -n 40 "$dir/server.log" >&2 || true
    exit 1
}

# The server's socket is named after the program, and for root it lives in /run whatever
# XDG_RUNTIME_DIR says: a name of its own keeps this server apart from any other.
app_name=bpa-$(basename "$dir" | tr -cd 'A-Za-z0-9')
ln -s "$bin/bristel-printer-app" "$dir/$app_name"
app="$dir/$app_name"
mkdir -p "$dir/run" "$dir/home" "$dir/spool" "$dir/tmp"
chmod 700 "$dir/run"
# libpappl keeps a folder of its own for each process in TMPDIR.
export XDG_RUNTIME_DIR=$dir/run HOME=$dir/home XDG_CONFIG_HOME=$dir/home/.config TMPDIR=$dir/tmp

# The fake printer: its ports on its first line of output, its control port for the test.
# It stops when its standard input ends: a FIFO this script holds open until it exits.
mkfifo "$dir/printer.ports" "$dir/printer.input"
exec 9<>"$dir/printer.input"
python3 "$source_dir/tests/printerapp/status-printer.py" "$dir/printer" <"$dir/printer.input" >"$dir/printer.ports" &
printer_pid=$!
read -r printer_port control_port <"$dir/printer.ports"
exec 8<>"/dev/tcp/127.0.0.1/$control_port"
control() {
    local reply
    echo "$*" >&8
    read -r reply <&8
    [ "$reply" = ok ] || fail "the fake printer refused \"$*\": $reply"
}

# A free port for the web and IPP side.
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')

"$app" server -o log-file="$dir/server.log" -o log-level=debug -o spool-directory="$dir/spool" \
    -o state-file="$dir/state" -o server-port="$port" -o listen-hostname=127.0.0.1 >"$dir/server.out" 2>&1 &
server_pid=$!
# Client commands start a server of their own when none answers: wait for ours to say it runs.
coproc log_tail { exec tail -n +1 -F "$dir/server.log" 2>/dev/null; }
while read -r line <&"${log_tail[0]}"; do
    case $line in *"Starting system."*) break ;; esac
done
kill "$log_tail_PID"

"$app" add -d kitchen -m bristel_80mm -v "socket://127.0.0.1:$printer_port" || fail "add failed"
"$app" printers | grep -qx kitchen || fail "the printer was not added"
"$app" drivers | grep -q '^bristel_80mm_512 ' || fail "the 512-dot driver is not offered"

# ESC/POS passes through unchanged.
printf '\033@raw ticket\n\035V\102\000' >"$dir/raw.bin"
"$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/raw.bin" >/dev/null || fail "submit failed"
expected() { cat "$@" >"$dir/expected.bin"; control wait-received "$(stat -c %s "$dir/expected.bin")"; }
expected "$dir/raw.bin"
cmp "$dir/expected.bin" "$dir/printer/received.bin" || fail "the raw job did not arrive unchanged"

# A bristel document prints as bristel-render renders it.
document=$source_dir/examples/documents/printFullOrderReceipt.xml
"$bin/bristel-render" -f escpos "$document" "$dir/rendered.bin"
"$app" submit -d kitchen -o document-format=application/vnd.bristel+xml "$document" >/dev/null ||
    fail "submit failed"
expected "$dir/raw.bin" "$dir/rendered.bin"
cmp "$dir/expected.bin" "$dir/printer/received.bin" ||
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
"$app" add -d narrow -m bristel_58mm -v "socket://127.0.0.1:$printer_port" || fail "add failed"
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
python3 - "$dir/page.pwg" "$dir/page.urf" <<'PYTHON'
import struct, sys
width, height = 384, 100
header = bytearray(1796)
header[0:9] = b"PwgRaster"
for offset, value in ((276, 203), (280, 203), (372, width), (376, height), (384, 8), (388, 8),
                      (392, width), (400, 18)):
    header[offset:offset + 4] = struct.pack(">I", value)
# One line, repeated for the whole page: three runs of 128 black pixels.
line = bytes([height - 1, 127, 0, 127, 0, 127, 0])
open(sys.argv[1], "wb").write(b"RaS2" + bytes(header) + line)
# The same page as Apple raster: 8-bit grey, 203 dpi.
page = struct.pack(">BBBBIIIIIII", 8, 0, 1, 4, 0, 0, width, height, 203, 0, 0)
open(sys.argv[2], "wb").write(b"UNIRAST\0" + struct.pack(">I", 1) + page + line)
PYTHON
"$app" submit -d narrow -o document-format=image/pwg-raster "$dir/page.pwg" >/dev/null
"$app" submit -d narrow -o document-format=image/urf "$dir/page.urf" >/dev/null
{
    printf '\035v0\000\060\000\144\000'
    head -c $((48 * 100)) /dev/zero | tr '\000' '\377'
    printf '\035VB\000'
} >"$dir/page.bin"
expected "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin" "$dir/picture-shape.bin" \
    "$dir/page.bin" "$dir/page.bin"

# The server finishes its jobs before it stops: after that nothing more can reach the printer.
"$app" shutdown || fail "shutdown failed"
wait "$server_pid" || fail "the server ended with status $?"
server_pid=
# Everything byte for byte but the picture's dots: of the picture, its commands and size.
prefix=$(($(stat -c %s "$dir/raw.bin" "$dir/rendered.bin" "$dir/first.bin" "$dir/second.bin" | paste -sd+)))
cmp -n "$prefix" "$dir/expected.bin" "$dir/printer/received.bin" ||
    fail "the jobs held while the printer was off did not print once each in order"
[ "$(stat -c %s "$dir/printer/received.bin")" = "$(stat -c %s "$dir/expected.bin")" ] ||
    fail "more or fewer bytes reached the printer than the jobs hold"
tail -c +$((prefix + 1)) "$dir/printer/received.bin" | head -c "$(stat -c %s "$dir/picture-shape.bin")" \
    >"$dir/picture.bin"
cat "$dir/page.bin" "$dir/page.bin" >"$dir/pages.bin"
tail -c "$(stat -c %s "$dir/pages.bin")" "$dir/printer/received.bin" | cmp - "$dir/pages.bin" ||
    fail "the PWG and Apple raster pages did not print as their dots"
cmp -n 8 "$dir/picture-shape.bin" "$dir/picture.bin" || fail "the picture is not one GS v 0 band 48 bytes wide"
[ "$(tail -c 4 "$dir/picture.bin" | od -An -tx1 | tr -d ' ')" = 1d564200 ] || fail "no cut after the picture"
[ "$(tail -c +9 "$dir/picture.bin" | head -c $((48 * 495)) | tr -d '\000' | wc -c)" -gt 1000 ] ||
    fail "the picture printed without ink"
echo "printer-app: raw, rendered, held, picture and raster jobs printed as sent"
