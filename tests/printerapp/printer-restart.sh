#!/usr/bin/env bash
# bristel-printer-app keeps its waiting jobs across a kill -9 and a stop: after a restart with
# the same folders each prints exactly once, in the order they came, before the jobs sent
# after the restart, even one sent the moment the server is back. A job whose bytes had reached the printer, but which the printer had not
# confirmed (out of paper right after them), prints again under the reprint line. The spool
# folder writes synchronously, so a job is on the disk before its submitter hears of it.
#   printer-restart.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

reprint_line=$'\033@*** REPRINT: INTERRUPTED ***\n'

start_with_printers kitchen

# The spool folder writes synchronously (S) and so do its folder operations (D); a file system
# without the attributes is named in the log instead.
if attributes=$(lsattr -d "$dir/spool" 2>/dev/null); then
    [[ ${attributes%% *} == *S*D* ]] || fail "the spool folder does not write synchronously: $attributes"
else
    grep -q "The spool folder cannot be made to write synchronously" "$dir/server.log" ||
        fail "the log does not say that the spool folder cannot write synchronously"
fi

reasons_are() {
    ipptool -q -d reasons="$1" "ipp://127.0.0.1:$port/ipp/print/kitchen" \
        "$source_dir/tests/printerapp/printer-state-reasons.test"
}
job_held() { ipptool -q -d job="$1" "ipp://127.0.0.1:$port/ipp/print/kitchen" "$source_dir/tests/printerapp/job-held.test"; }
# printed FILE...: the printer has printed these after all that it printed before.
printed_files=()
printed() {
    printed_files+=("$@")
    cat "${printed_files[@]}" >"$dir/expected.bin"
    control_printer kitchen wait-printed "$(stat -c %s "$dir/expected.bin")"
}
restart_after_kill() {
    kill_server
    start_server
    uri=ipp://127.0.0.1:$port/ipp/print/kitchen
}

# Out of paper: three jobs wait, the server is killed, the paper goes in, the server starts
# again with the same folders: each job prints once, in order, unmarked, then a new one.
control_printer kitchen state paper-out
eventually reasons_are media-empty || fail "the printer out of paper does not say media-empty"
submit_receipt first kitchen
submit_receipt second kitchen
submit_receipt third kitchen
restart_after_kill
# The jobs go back from the server's first turn of its main loop, just after it says it runs.
eventually grep -q "3 job(s) left when the server last stopped are back in their queues." "$dir/server.log" ||
    fail "the log does not say that the three jobs came back"
[ "$("$app" jobs -d kitchen | grep -c 'pending\|processing\|held')" = 3 ] ||
    fail "the jobs list does not show the three jobs back: $("$app" jobs -d kitchen)"
control_printer kitchen state ready
submit_receipt after kitchen
printed "$dir/first.bin" "$dir/second.bin" "$dir/third.bin" "$dir/after.bin"
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" ||
    fail "the jobs put back did not print once each, in order, before the new one"
wait_for_jobs_to_end kitchen
[ "$("$app" jobs -d kitchen | grep -c completed)" = 4 ] ||
    fail "the jobs list does not show the four jobs completed: $("$app" jobs -d kitchen)"

# The paper runs out right after a job's bytes reached the printer: the printer has not
# confirmed it when the server is killed, so it prints again, whole, under the reprint line.
printf '\033@cut off receipt\n\035VB\000' >"$dir/cut-off.bin"
control_printer kitchen state-after \
    $(($(stat -c %s "$dir/expected.bin") + $(stat -c %s "$dir/cut-off.bin"))) paper-out
submit kitchen "$dir/cut-off.bin" application/vnd.escpos
printed "$dir/cut-off.bin"
eventually job_held "$job" || fail "the job during which the paper ran out does not wait"
restart_after_kill
control_printer kitchen state ready
printf %s "$reprint_line" >"$dir/reprint-line.bin"
printed "$dir/reprint-line.bin" "$dir/cut-off.bin"
wait_for_jobs_to_end kitchen
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" ||
    fail "the job cut off did not print again once, under the reprint line"

# A job still waiting when the server stops is kept for its next start, and prints then, once.
control_printer kitchen state paper-out
eventually reasons_are media-empty || fail "the printer out of paper does not say media-empty"
submit_receipt kept kitchen
job=$("$app" jobs -d kitchen | awk '/pending|processing/ {print $1; exit}')
eventually job_held "$job" || fail "the job does not wait while the paper is out"
stop_server
start_server
control_printer kitchen state ready
printed "$dir/kept.bin"
submit_receipt last kitchen
printed "$dir/last.bin"

# A job sent the moment the server is back, while the jobs a kill -9 left are still being put
# back, prints after them all the same.
control_printer kitchen state paper-out
eventually reasons_are media-empty || fail "the printer out of paper does not say media-empty"
submit_receipt early-1 kitchen
submit_receipt early-2 kitchen
submit_receipt early-3 kitchen
kill_server
# The job is on its way before the server listens, and waits in the listening socket's queue:
# it reaches the server as soon as its main loop runs.
next_port=$(free_port)
receipt at-once
(
    until ipptool -q -f "$dir/at-once.bin" -d format=application/vnd.escpos \
        "ipp://127.0.0.1:$next_port/ipp/print/kitchen" "$source_dir/tests/printerapp/print-job.test" 2>/dev/null; do
        sleep 0.01
    done
) &
early_client=$!
start_server
wait "$early_client" || fail "the job sent at once was not taken"
control_printer kitchen state ready
printed "$dir/early-1.bin" "$dir/early-2.bin" "$dir/early-3.bin" "$dir/at-once.bin"
wait_for_jobs_to_end kitchen
stop_server
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" ||
    fail "the jobs did not print exactly once each, in order, across the restarts"
[ "$(grep -c 'REPRINT' "$dir/kitchen/printed.bin")" = 1 ] || fail "a job other than the one cut off is marked"
# Nothing of the printed jobs is left to print again.
leftover=$(ls "$dir/spool" | grep -v '\.ipp$' || true)
[ -z "$leftover" ] || fail "the spool folder still holds $leftover"
echo "printer-restart: jobs survived kill -9 and a stop, printed once each in order, the cut-off one marked"
