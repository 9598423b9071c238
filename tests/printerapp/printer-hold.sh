#!/usr/bin/env bash
# bristel-printer-app holds the jobs of a printer that cannot print (out of paper, cover
# open, off) and shows why, prints each of them exactly once and in the order they came when
# the printer is back, and keeps printing on a second printer while fifty jobs wait. A job
# during which the paper runs out is not done until the printer can print again.
#   printer-hold.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_with_printers kitchen bar

job_held() { ipptool -q -d job="$1" "$uri" "$source_dir/tests/printerapp/job-held.test"; }
reasons_are() { ipptool -q -d reasons="$1" "$uri" "$source_dir/tests/printerapp/printer-state-reasons.test"; }
job_done() { "$app" jobs -d kitchen | grep -q "^$1 *completed"; }
# printed FILE...: the kitchen's printer has printed these after all the jobs before them.
kitchen_jobs=()
printed() {
    kitchen_jobs+=("$@")
    cat "${kitchen_jobs[@]}" >"$dir/expected.bin"
    control_printer kitchen wait-printed "$(stat -c %s "$dir/expected.bin")"
}

# Out of paper: fifty jobs wait, visibly, while the bar's printer goes on printing.
control_printer kitchen state paper-out
eventually reasons_are media-empty || fail "the printer out of paper does not say media-empty"
submit_receipt order-1 kitchen
eventually job_held "$job" || fail "the first job does not show printer-stopped while the paper is out"
waiting=("$dir/order-1.bin")
for n in $(seq 2 50); do
    submit_receipt "order-$n" kitchen
    waiting+=("$dir/order-$n.bin")
done
submit_receipt drinks bar
control_printer bar wait-printed "$(stat -c %s "$dir/drinks.bin")"
cmp "$dir/drinks.bin" "$dir/bar/printed.bin" || fail "the second printer did not print while the first waits"
[ ! -s "$dir/kitchen/printed.bin" ] || fail "a job printed while the paper was out"
control_printer kitchen state ready
printed "${waiting[@]}"
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" || fail "the held jobs did not print once each, in order"

# Cover open, then the printer off: the jobs of each wait and print once the printer is back.
for fault in cover-open off; do
    control_printer kitchen state "$fault"
    eventually reasons_are "${fault/off/offline}" || fail "the printer does not show $fault"
    submit_receipt "$fault-1" kitchen
    submit_receipt "$fault-2" kitchen
    [ "$(stat -c %s "$dir/kitchen/printed.bin")" = "$(stat -c %s "$dir/expected.bin")" ] ||
        fail "a job printed while the printer was $fault"
    control_printer kitchen state ready
    printed "$dir/$fault-1.bin" "$dir/$fault-2.bin"
done

# The paper runs out just as a job has reached the printer: the job is not completed until
# the printer can print again.
printf '\033@long receipt\n\035VB\000' >"$dir/long.bin"
control_printer kitchen state-after $(($(stat -c %s "$dir/expected.bin") + $(stat -c %s "$dir/long.bin"))) paper-out
submit kitchen "$dir/long.bin" application/vnd.escpos
printed "$dir/long.bin"
eventually job_held "$job" || fail "the job during which the paper ran out does not wait"
job_done "$job" && fail "the job during which the paper ran out is completed"
control_printer kitchen state ready
eventually job_done "$job" || fail "the job did not complete once the paper was in"

# A job still waiting does not keep the server from stopping, and the log says it did not print.
control_printer kitchen state paper-out
eventually reasons_are media-empty || fail "the printer out of paper does not say media-empty"
submit_receipt last kitchen
eventually job_held "$job" || fail "the last job does not wait while the paper is out"
stop_server
grep -q "\[Job $job\] The server stops while the job waits for its printer: Out of paper." "$dir/server.log" ||
    fail "the log does not say that the waiting job was not printed"
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" || fail "the jobs did not print exactly once each, in order"
cmp "$dir/drinks.bin" "$dir/bar/printed.bin" || fail "the second printer printed more than its job"
echo "printer-hold: held jobs printed once each, in order, and the second printer went on"
