#!/usr/bin/env bash
# bristel-printer-app never crashes on bad input and never lets it block the queue: a
# malformed bristel job, one with an unknown print method, a damaged PNG and a PWG raster
# page whose header claims an enormous page end aborted with a job-state-message that says
# why; a real 50 MB raster file ends without taking the server's memory; a job whose
# printer is deleted while it waits ends aborted. After each, the next job prints.
#   printer-bad-input.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_with_printers kitchen bar

# next_job_prints: the server still runs, and a receipt after the bad job prints.
receipts=0
next_job_prints() {
    kill -0 "$server_pid" 2>/dev/null || fail "the server died: $1"
    receipts=$((receipts + 1))
    printf '\033@receipt %d\n\035VB\000' "$receipts" >"$dir/receipt-$receipts.bin"
    "$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/receipt-$receipts.bin" >/dev/null ||
        fail "the receipt after $1 was refused"
    wait_for_jobs_to_end kitchen
    tail -c "$(stat -c %s "$dir/receipt-$receipts.bin")" "$dir/kitchen/printed.bin" | cmp -s - "$dir/receipt-$receipts.bin" ||
        fail "the receipt after $1 did not print"
}
# aborted_with REGEX CASE: the job $job ended aborted, its message matching REGEX.
aborted_with() {
    wait_for_jobs_to_end kitchen
    ipptool -t -d job="$job" -d message="$1" "$uri" "$source_dir/tests/printerapp/job-aborted.test" \
        >"$dir/job.txt" || fail "$2: $(cat "$dir/job.txt")"
    next_job_prints "$2"
}

printf '<?xml version="1.0"?>\n<job><method name="printFullOrder">\n<unclosed>\n' >"$dir/malformed.xml"
submit kitchen "$dir/malformed.xml" application/vnd.bristel+xml
aborted_with 'not printed: line [0-9]+, column [0-9]+: .+' "a malformed bristel job"

printf '<?xml version="1.0"?>\n<job><method name="printNoSuchThing"/></job>\n' >"$dir/unknown.xml"
submit kitchen "$dir/unknown.xml" application/vnd.bristel+xml
aborted_with 'not printed: line 2, .*printNoSuchThing' "a job with an unknown print method"

head -c 3000 "$source_dir/docs/receipt-preview.png" >"$dir/damaged.png"
submit kitchen "$dir/damaged.png" image/png
aborted_with '.+' "a damaged PNG picture"

# A PWG raster page whose header claims 576 x 4294967280 dots, with one row of data, and a
# real 50 MB page: libpappl reads raster pages as they arrive and cuts each at the paper's
# length (200 mm here), so neither costs the memory it claims. The first ends aborted once
# libpappl gives up waiting for the rows its header promised; the second prints its first
# 200 mm.
python3 - "$dir/claims.pwg" "$dir/large.pwg" <<'PYTHON'
import os, struct, sys
def header(width, height):
    h = bytearray(1796)
    h[0:9] = b"PwgRaster"
    for offset, value in ((276, 203), (280, 203), (372, width), (376, height), (384, 8), (388, 8),
                          (392, width), (400, 18)):
        h[offset:offset + 4] = struct.pack(">I", value)
    return bytes(h)
row = bytes([0, 127, 0, 127, 0, 127, 0, 127, 0, 63, 0])
open(sys.argv[1], "wb").write(b"RaS2" + header(576, 0xFFFFFFF0) + row)
# 50 MB of one page of noise, which nothing compresses: each row four literal runs of 128
# pixels (count byte 257 - 128) and one of 64 (257 - 64).
noise = os.urandom(576)
row = bytes([0])
for start, length in ((0, 128), (128, 128), (256, 128), (384, 128), (512, 64)):
    row += bytes([257 - length]) + noise[start:start + length]
rows = 50 * 1000 * 1000 // len(row) + 1
with open(sys.argv[2], "wb") as out:
    out.write(b"RaS2" + header(576, rows))
    for _ in range(rows):
        out.write(row)
PYTHON
# A raster page is taken only once the printer has stopped holding the jobs that come while it is busy.
wait_until_not_holding kitchen
# libpappl waits for the rows the header promised until its read times out; the sender may give
# up first on a busy machine (its own time-out), which is no fault of the server: the job is the
# kitchen's newest either way.
"$app" submit -d kitchen -o document-format=image/pwg-raster "$dir/claims.pwg" >/dev/null 2>&1 || true
job=$("$app" jobs -d kitchen | awk 'NR == 1 {print $1}')
aborted_with 'Not printed: the raster data ended after [0-9]+ of the page.s [0-9]+ rows' "a raster page that claims too much"
wait_until_not_holding kitchen
submit kitchen "$dir/large.pwg" image/pwg-raster
wait_for_jobs_to_end kitchen
next_job_prints "a 50 MB raster page"

# The kitchen's printer out of paper holds a job; the kitchen is deleted meanwhile: the job
# ends aborted, and libpappl deletes the printer with it. The bar goes on printing.
control_printer kitchen state paper-out
printf '\033@held\n' >"$dir/held.bin"
submit kitchen "$dir/held.bin" application/vnd.escpos
held=$job
"$app" delete -d nowhere 2>"$dir/delete.err" && fail "deleting a printer that is not there succeeded"
grep -qx "bristel-printer-app: no printer is called nowhere" "$dir/delete.err" ||
    fail "deleting a printer that is not there says: $(cat "$dir/delete.err")"
"$app" delete -d kitchen || fail "delete -d kitchen failed"
kitchen_gone() { ! "$app" printers | grep -qx kitchen; }
for ((tries = 0; tries < 600; tries++)); do
    kitchen_gone && break
    sleep 0.1
done
kitchen_gone || fail "the printer with a waiting job was not deleted"
kill -0 "$server_pid" 2>/dev/null || fail "the server died when a printer with a waiting job was deleted"
grep -q "\[Job $held\] Not printed: the printer was deleted while the job waited." "$dir/server.log" ||
    fail "the log does not say why the job of the deleted printer did not print"
grep -q "\[Job $held\] Aborted" "$dir/server.log" || fail "the job of the deleted printer was not aborted"
printf '\033@drinks\n' >"$dir/drinks.bin"
"$app" submit -d bar -o document-format=application/vnd.escpos "$dir/drinks.bin" >/dev/null ||
    fail "the bar refused a job"
control_printer bar wait-printed "$(stat -c %s "$dir/drinks.bin")"
wait_for_jobs_to_end bar
stop_server
echo "printer-bad-input: bad jobs aborted with a reason, and the next job printed each time"
