#!/usr/bin/env bash
# CUPS prints to bristel-printer-app with no driver of its own: a queue made with
# "lpadmin -m everywhere" from the application's IPP Everywhere printer takes a PNG picture
# through lp, and the receipt printer behind the application receives it as GS v 0 raster rows
# as wide as its head, then a cut.  A private scheduler (cups-fixture.sh) and a private printer
# application with a fake receipt printer (tests/printerapp/server.sh); nothing is skipped.
#   cups-to-printer-app.sh BIN_DIR SOURCE_DIR
set -euo pipefail
bin=${1:?usage: cups-to-printer-app.sh BIN_DIR SOURCE_DIR}
source_dir=${2:?usage: cups-to-printer-app.sh BIN_DIR SOURCE_DIR}
test_name=cups-to-printer-app
[ -x "$bin/bristel-printer-app" ] || { echo "$test_name: no $bin/bristel-printer-app" >&2; exit 1; }

# Both fixtures define cleanup, fail and start_printer: the printer application's go first and
# keep their work under names of their own.
# shellcheck source=tests/printerapp/server.sh
. "$source_dir/tests/printerapp/server.sh"
eval "printer_app_cleanup() $(declare -f cleanup | tail -n +2)"
eval "start_receipt_printer() $(declare -f start_printer | tail -n +2)"
export BRISTEL_BIN=$bin
# shellcheck source=tests/cups/cups-fixture.sh
. "$source_dir/tests/cups/cups-fixture.sh"
eval "scheduler_cleanup() $(declare -f cleanup | tail -n +2)"
# The receipt printers first: they end only with this script's end, and the scheduler's
# cleanup waits for every child.
cleanup() {
    printer_app_cleanup
    scheduler_cleanup
}
trap cleanup EXIT
fail() {
    echo "$test_name: $*" >&2
    echo "--- printer application log (last lines)" >&2
    tail -n 30 "$dir/server.log" >&2 || true
    echo "--- scheduler log (last lines)" >&2
    tail -n 30 "$CUPS_ROOT/server/log/error_log" >&2 || true
    exit 1
}

start_receipt_printer kitchen
start_server
"$app" add -d kitchen -m bristel_80mm -v "socket://127.0.0.1:$kitchen_port" || fail "add failed"

# The queue as a site makes it: CUPS asks the printer what it takes and writes the PPD itself.
start_cupsd server
on server lpadmin -p app -E -v "ipp://127.0.0.1:$port/ipp/print/kitchen" -m everywhere 2>"$dir/lpadmin.err" ||
    fail "lpadmin -m everywhere failed: $(cat "$dir/lpadmin.err")"
picture=$source_dir/docs/receipt-preview.png
job=$(submit server app "$picture")
[ -n "$job" ] || fail "lp did not take the picture"
wait_until 60 job_completed server app "$job" || fail "the scheduler did not complete $job"
# 80 mm paper: rows of 576 dots.
wait_until 30 python3 "$FIXTURE_DIR/escpos-picture.py" "$dir/kitchen/printed.bin" 576 >/dev/null ||
    fail "the printer did not receive the picture: $(python3 "$FIXTURE_DIR/escpos-picture.py" "$dir/kitchen/printed.bin" 576)"
wait_for_jobs_to_end kitchen
echo "$test_name: lp printed the picture through an everywhere queue as GS v 0 raster and a cut"
