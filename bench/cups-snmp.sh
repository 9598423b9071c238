#!/usr/bin/env bash
# What the PPD files' "*cupsSNMPSupplies: False" saves a queue whose device URI does not say
# snmp=false, as a queue made from CUPS's web pages has: the time from just before lp starts to
# the last byte at a fake network printer (tests/cups/cups-fixture.sh: a private scheduler on
# 127.0.0.1, nothing of the machine's own touched), the typical job (the 20-item receipt), one
# job at a time, each on an idle queue.
#
#   bench/cups-snmp.sh [build-dir] [jobs] [runs]      (default: build, 20, 3)
#
# "before" prints through the 80 mm PPD with that line taken out, "after" through the PPD as
# built; the runs take turns, so that a slow spell of the machine hits both.  Each run prints
# the median, lowest and highest of its jobs; the last lines give the median of the runs'
# medians.  Uses the programs already built in build-dir (bristeltoescpos).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
jobs=${2:-20}
runs=${3:-3}
export BRISTEL_BIN=$build/bin
source "$root/tests/cups/cups-fixture.sh"
export LC_ALL=C.UTF-8

"$root/bench/make-documents.sh" "$CUPS_ROOT/documents" >/dev/null
typical=$CUPS_ROOT/documents/receipt-20.xml
ppd=$build/cups/ppd/bristel-escpos-80mm.ppd
grep -qx '\*cupsSNMPSupplies: False' "$ppd" || fail "$ppd does not turn the SNMP query off"
grep -vx '\*cupsSNMPSupplies: False' "$ppd" >"$CUPS_ROOT/with-snmp.ppd"

start_cupsd server
start_printer before
on server lpadmin -p before -E -v "socket://127.0.0.1:$PRINTER_PORT" -P "$CUPS_ROOT/with-snmp.ppd" 2>/dev/null
start_printer after
on server lpadmin -p after -E -v "socket://127.0.0.1:$PRINTER_PORT" -P "$ppd" 2>/dev/null

# The moment printer NAME saw the end of its job number N, from its log.
finished_at() {
    awk -v job="$(printf 'job-%04d.bin' "$2")" '$1 == job { print $3 }' "$CUPS_ROOT/printer-$1/received.log"
}

# latency QUEUE: jobs jobs to QUEUE's printer, one at a time; prints the milliseconds of each.
latency() {
    local queue=$1 job start count id
    for ((job = 0; job < jobs; job++)); do
        count=$(printer_jobs "$queue" | wc -l)
        start=$EPOCHREALTIME
        id=$(submit server "$queue" "$typical")
        wait_for_printer_jobs "$queue" $((count + 1)) 60 || fail "a job did not arrive"
        wait_until 5 eval '[ -n "$(finished_at '"$queue"' $((count + 1)))" ]'
        awk -v s="$start" -v e="$(finished_at "$queue" $((count + 1)))" 'BEGIN { printf "%.1f\n", (e - s) * 1000 }'
        wait_until 60 job_completed server "$queue" "$id" || fail "$id did not complete"
    done
}

# summary LABEL: median, lowest and highest of the numbers on standard input.
summary() {
    sort -n | awk -v label="$1" '{ v[NR] = $1 } END {
        m = NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2
        printf "%-44s median %7.1f ms   lowest %7.1f ms   highest %7.1f ms   (%d jobs)\n", label, m, v[1], v[NR], NR }'
}

echo "lp to the last byte at the printer, device URI socket://127.0.0.1:PORT (no snmp=false):"
declare -A medians
for ((run = 1; run <= runs; run++)); do
    for queue in before after; do
        line=$(latency $queue | summary "  run $run, $queue")
        echo "$line"
        medians[$queue]+="$(awk '{ print $5 }' <<<"$line") "
    done
done
for queue in before after; do
    tr ' ' '\n' <<<"${medians[$queue]}" | grep . |
        summary "  $queue: medians of the $runs runs" | sed 's/(\([0-9]*\) jobs)/(\1 runs)/'
done
