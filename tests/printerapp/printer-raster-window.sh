#!/usr/bin/env bash
# bristel-printer-app takes a PWG raster page soon after a printer's last job: the printer
# holds new jobs while it is busy (which makes libpappl refuse raster pages), and stops
# holding them about two seconds after its last job ends, whatever else happens meanwhile.
# Within three seconds of a bristel job's end the printer holds no more, and a raster page
# sent then prints.
#   printer-raster-window.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_printer kitchen
start_server
add_printer kitchen bristel_58mm
uri=ipp://127.0.0.1:$port/ipp/print/kitchen

document=$source_dir/examples/documents/printFullOrderReceipt.xml
"$bin/bristel-render" -f escpos "$document" "$dir/rendered.bin"
write_black_raster_pages "$dir/page.pwg" "$dir/page.urf"
black_raster_page_bytes >"$dir/page.bin"

printed_files=()
printed() {
    printed_files+=("$@")
    cat "${printed_files[@]}" >"$dir/expected.bin"
    control_printer kitchen wait-printed "$(stat -c %s "$dir/expected.bin")"
}
job_completed() { "$app" jobs -d kitchen | grep -q "^$1 *completed"; }
reasons_are() {
    ipptool -q -d reasons="$1" "$uri" "$source_dir/tests/printerapp/printer-state-reasons.test"
}
# now_cs: the time since the machine started, in hundredths of a second; unlike the date, no
# one sets it.
now_cs() {
    local uptime
    read -r uptime _ </proc/uptime
    echo $((10#${uptime/./}))
}

# Each round: a bristel job prints and completes; from then on a raster page is refused
# ("busy") only while the printer still holds new jobs, which ends within three seconds. The
# idle printers are asked how they are every five seconds: three rounds do not all fall
# within three seconds of such a question by chance.
for round in 1 2 3; do
    job=$("$app" submit -d kitchen -o document-format=application/vnd.bristel+xml "$document") ||
        fail "submit failed"
    job=${job##*-}
    printed "$dir/rendered.bin"
    eventually job_completed "$job" || fail "round $round: the bristel job did not complete"
    completed_at=$(now_cs)
    # The printer is asked (not sent raster pages, each of which libpappl would refuse and
    # count as a job) until it stops holding new jobs: within three seconds. The machine's
    # clock is known to step a minute at once under load, so the three seconds must have passed
    # by it and in thirty pauses of a tenth of a second.
    pauses=0
    until reasons_are none; do
        (($(now_cs) - completed_at < 300 || pauses < 30)) ||
            fail "round $round: the printer still held new jobs three seconds after the last job ended"
        sleep 0.1
        pauses=$((pauses + 1))
    done
    ipptool -q -f "$dir/page.pwg" -d format=image/pwg-raster "$uri" "$source_dir/tests/printerapp/print-job.test" ||
        fail "round $round: the raster page was refused once the printer had stopped holding new jobs"
    printed "$dir/page.bin"
done
wait_for_jobs_to_end kitchen
stop_server
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" || fail "the jobs did not print once each, in order"
echo "printer-raster-window: raster pages taken within three seconds of the last job, three times"
