#!/usr/bin/env bash
# bristel-printer-app types a document sent as application/octet-stream by its content: a
# bristel job by the rule every bristel program follows, PNG and JPEG by their signatures,
# anything else as the printer's own ESC/POS.
#   printer-typing.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_with_printers kitchen

# untyped FILE: sends FILE as application/octet-stream and waits until it has printed; the
# bytes the printer got go to $dir/last.bin.
untyped() {
    local before
    before=$(stat -c %s "$dir/kitchen/printed.bin" 2>/dev/null || echo 0)
    ipptool -q -f "$1" -d filetype=application/octet-stream "$uri" print-job.test || fail "print-job failed"
    wait_for_jobs_to_end kitchen
    "$app" jobs -d kitchen | grep -q '^[0-9]* *aborted' && fail "the job of $1 was aborted"
    tail -c +$((before + 1)) "$dir/kitchen/printed.bin" >"$dir/last.bin"
}
starts_with() { [ "$(head -c "$(stat -c %s "$2")" "$1" | od -An -tx1)" = "$(od -An -tx1 <"$2")" ]; }

# A bristel job, here one that begins with a byte-order mark.
document=$source_dir/examples/documents/printFullOrderReceipt.xml
"$bin/bristel-render" -f escpos "$document" "$dir/rendered.bin"
{
    printf '\357\273\277'
    cat "$document"
} >"$dir/job.dat"
untyped "$dir/job.dat"
cmp "$dir/rendered.bin" "$dir/last.bin" || fail "the bristel job was not rendered"

# PNG and JPEG pictures print as raster images 576 dots (72 bytes) wide.
printf '\035v0\000\110\000' >"$dir/raster.bin"
cp "$source_dir/docs/receipt-preview.png" "$dir/picture.dat"
untyped "$dir/picture.dat"
starts_with "$dir/last.bin" "$dir/raster.bin" || fail "the PNG picture was not printed as a picture"
base64 -d >"$dir/photo.dat" <<'JPEG'
/9j/4AAQSkZJRgABAQEAZABkAAD/2wBDABALDA4MChAODQ4SERATGCgaGBYWGDEjJR0oOjM9PDkzODdASFxOQERXRTc4UG1RV19iZ2hnPk1xeXBkeFxlZ2P/wAALCAAIABABAREA/8QAHwAAAQUBAQEBAQEAAAAAAAAAAAECAwQFBgcICQoL/8QAtRAAAgEDAwIEAwUFBAQAAAF9AQIDAAQRBRIhMUEGE1FhByJxFDKBkaEII0KxwRVS0fAkM2JyggkKFhcYGRolJicoKSo0NTY3ODk6Q0RFRkdISUpTVFVWV1hZWmNkZWZnaGlqc3R1dnd4eXqDhIWGh4iJipKTlJWWl5iZmqKjpKWmp6ipqrKztLW2t7i5usLDxMXGx8jJytLT1NXW19jZ2uHi4+Tl5ufo6erx8vP09fb3+Pn6/9oACAEBAAA/APP6K//Z
JPEG
untyped "$dir/photo.dat"
starts_with "$dir/last.bin" "$dir/raster.bin" || fail "the JPEG picture was not printed as a picture"

# Anything else is the printer's own language, even a text that starts like XML.
printf '\033@<<< ORDER 12 >>>\n\035VB\000' >"$dir/raw.dat"
untyped "$dir/raw.dat"
cmp "$dir/raw.dat" "$dir/last.bin" || fail "the ESC/POS job did not pass unchanged"
printf '<<< ORDER 13 >>>\n' >"$dir/angle.dat"
untyped "$dir/angle.dat"
cmp "$dir/angle.dat" "$dir/last.bin" || fail "a text that starts with '<' was not sent as it came"

stop_server
echo "printer-typing: bristel job, PNG, JPEG and ESC/POS recognised by their content"
