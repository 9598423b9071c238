#!/usr/bin/env bash
# Printing through CUPS, timed: private schedulers and fake network printers as in the tests
# (tests/cups/cups-fixture.sh), nothing of the machine's own scheduler touched.
#
#   bench/cups.sh [build-dir] [rounds]       (default: build, 30)
#
# 1. Latency of the typical job (the 20-item receipt), from just before lp starts to the last
#    byte at the printer, printed directly on the print server and through a terminal's
#    scheduler forwarding over IPP: median, lowest and highest of the rounds.
# 2. 100 jobs submitted at once from two terminals (50 each, alternately to the kitchen and the
#    bar queue of one print server): the time until the last byte, and a check that every job
#    arrived once, in order per terminal and queue.
# Uses the programs already built in build-dir (bristeltoescpos, bristel-render).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export BRISTEL_BIN=$(cd "${1:-$root/build}/bin" && pwd)
rounds=${2:-30}
source "$root/tests/cups/cups-fixture.sh"
export LC_ALL=C.UTF-8

"$root/bench/make-documents.sh" "$CUPS_ROOT/documents" >/dev/null
rm -f "$CUPS_ROOT/documents/receipt-100000.xml"
typical=$CUPS_ROOT/documents/receipt-20.xml
ppd=${1:-$root/build}/cups/ppd/bristel-escpos-80mm.ppd

start_cupsd server
start_cupsd terminal1
start_cupsd terminal2
for queue in kitchen bar; do
    start_printer $queue
    on server lpadmin -p $queue -E -v "$(printer_uri "$PRINTER_PORT")" -P "$ppd" 2>/dev/null
    for terminal in terminal1 terminal2; do
        on $terminal lpadmin -p $queue -E -v "ipp://127.0.0.1:${CUPSD_PORT[server]}/printers/$queue"
    done
done

# The moment the printer saw the end of its job-N, from its log.
finished_at() {
    awk -v job="$(printf 'job-%04d.bin' "$2")" '$1 == job { print $3 }' "$CUPS_ROOT/printer-$1/received.log"
}

# latency NAME SCHEDULER: one job at a time, rounds times, to the kitchen printer.
latency() {
    local name=$1 scheduler=$2 samples=() round start count id
    for ((round = 0; round < rounds; round++)); do
        count=$(printer_jobs kitchen | wc -l)
        start=$EPOCHREALTIME
        id=$(submit "$scheduler" kitchen "$typical")
        wait_for_printer_jobs kitchen $((count + 1)) 30 || fail "a job did not arrive"
        wait_until 5 eval '[ -n "$(finished_at kitchen $((count + 1)))" ]'
        samples+=("$(echo "$(finished_at kitchen $((count + 1))) $start" | awk '{ printf "%.1f", ($1 - $2) * 1000 }')")
        # Each job finds an idle queue: the terminal's backend follows the job on the server
        # until it is done.
        wait_until 30 job_completed "$scheduler" kitchen "$id" || fail "$id did not complete"
    done
    printf '%s\n' "${samples[@]}" | sort -n |
        awk -v name="$name" '{ v[NR] = $1 } END {
            m = NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2
            printf "%-36s median %7.1f ms   lowest %7.1f ms   highest %7.1f ms   (%d jobs)\n", name, m, v[1], v[NR], NR }'
}

echo "lp to the last byte at the printer, typical job:"
latency "  on the print server" server
latency "  from a terminal, forwarded by IPP" terminal1

# 2. 100 jobs from two terminals.  Each job carries its own serial number (R1-007 is the 7th
# job of terminal 1 in run R), which the printed bytes show.
hundred_jobs() {
    local run=$1 label=$2 terminal n queue skip serials mine start submitted last
    for terminal in 1 2; do
        for ((n = 1; n <= 50; n++)); do
            sed "s/serialnumber=\"000123\"/serialnumber=\"$run$terminal-$(printf %03d $n)\"/" "$typical" \
                >"$CUPS_ROOT/documents/$run$terminal-$n.xml"
        done
    done
    local -A before=([kitchen]=$(printer_jobs kitchen | wc -l) [bar]=$(printer_jobs bar | wc -l))
    burst() {
        local terminal=$1 n queue
        for ((n = 1; n <= 50; n++)); do
            queue=$([ $((n % 2)) -eq 1 ] && echo kitchen || echo bar)
            submit terminal$terminal $queue "$CUPS_ROOT/documents/$run$terminal-$n.xml" >/dev/null
        done
    }
    start=$EPOCHREALTIME
    burst 1 &
    local first=$!
    burst 2 &
    local second=$!
    wait $first $second
    submitted=$EPOCHREALTIME
    for queue in kitchen bar; do
        wait_for_printer_jobs $queue $((before[$queue] + 50)) 300 || fail "$queue: $(printer_jobs $queue | wc -l) jobs"
    done
    sleep 2 # a duplicate would arrive now
    last=$(for queue in kitchen bar; do awk '{ print $3 }' "$CUPS_ROOT/printer-$queue/received.log"; done |
        sort -n | tail -1)

    # Every job once, and per terminal and queue in the order of submission.
    for queue in kitchen bar; do
        serials=$(printer_jobs $queue | tail -n +$((before[$queue] + 1)) | xargs grep -aoh "$run[12]-[0-9][0-9][0-9]")
        [ "$(echo "$serials" | wc -l)" -eq 50 ] || fail "$queue: $(echo "$serials" | wc -l) jobs, not 50"
        [ "$(echo "$serials" | sort -u | wc -l)" -eq 50 ] || fail "$queue: a job arrived twice"
        for terminal in 1 2; do
            mine=$(echo "$serials" | grep "^$run$terminal-")
            [ "$mine" = "$(echo "$mine" | sort)" ] || fail "$queue: the jobs of terminal $terminal arrived out of order"
            [ "$(echo "$mine" | wc -l)" -eq 25 ] || fail "$queue: $(echo "$mine" | wc -l) jobs of terminal $terminal"
        done
    done
    awk -v label="$label" -v s="$start" -v u="$submitted" -v l="$last" 'BEGIN {
        printf "  %-44s submitted in %5.2f s, last byte after %5.2f s\n", label, u - s, l - s }'
}

echo "100 jobs from two terminals, 50 each to two queues (all arrived once, in order per terminal and queue):"
hundred_jobs A "forwarding queues as added (waitjob=true)"
for terminal in terminal1 terminal2; do
    for queue in kitchen bar; do
        on $terminal lpadmin -p $queue -v "ipp://127.0.0.1:${CUPSD_PORT[server]}/printers/$queue?waitjob=false"
    done
done
hundred_jobs B "forwarding queues with waitjob=false"
