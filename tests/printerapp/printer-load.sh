#!/usr/bin/env bash
# bristel-printer-app under the load of a busy evening: ten terminals send a hundred receipts
# each at the same time, first all to the kitchen's printer, then each to the kitchen and the
# bar in turn. Every receipt prints exactly once, each terminal's in the order it sent them,
# and a job never starts while another of its printer is printing.
#   printer-load.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"
clients=$source_dir/tests/printerapp/load-clients.py

start_printer kitchen
start_printer bar
start_server info
for printer in kitchen bar; do
    port_var=${printer}_port
    "$app" add -d "$printer" -m bristel_80mm -v "socket://127.0.0.1:${!port_var}" || fail "add failed"
done

# printed_all PRINTER...: each printer has printed as many bytes as were sent to it (a bounded
# number of looks, once no job is left).
printed_all() {
    local printer tries
    for printer in "$@"; do
        for ((tries = 0; tries < 100; tries++)); do
            [ "$(stat -c %s "$dir/$printer/printed.bin")" -lt "$(stat -c %s "$dir/round/sent-$printer.bin")" ] ||
                break
            sleep 0.1
        done
    done
}

# check_starts: every job of the round started once, and only after the job of its printer
# before it had ended (libpappl says "[Job N] Starting print job." as it starts one and
# "[Job N] Completed, ..." as it ends it).
check_starts() {
    awk '
        NR == FNR { printer[$4] = $3; submitted[$4] = 1; next }
        match($0, /\[Job [0-9]+\] Starting print job\./) {
            id = substr($0, RSTART + 5) + 0
            if (!(id in printer)) next
            if (started[id]++) { print "job " id " started more than once"; bad = 1 }
            p = printer[id]
            if (running[p] != "") { print "job " id " started while job " running[p] " printed on " p; bad = 1 }
            running[p] = id
        }
        match($0, /\[Job [0-9]+\] (Completed|Aborted|Canceled),/) {
            id = substr($0, RSTART + 5) + 0
            if (id in printer && running[printer[id]] == id) running[printer[id]] = ""
        }
        END {
            for (id in submitted) if (!started[id]) { print "job " id " never started"; bad = 1 }
            exit bad
        }' "$dir/round/job-ids" "$dir/server.log" >&2 || fail "jobs started twice, side by side, or never"
}

# round NAME PRINTERS: ten clients, a hundred receipts each, to the printers named (a,b).
round() {
    local printers=$2 list
    IFS=, read -ra list <<<"$printers"
    rm -rf "$dir/round"
    mkdir "$dir/round"
    for printer in "${list[@]}"; do
        : >"$dir/$printer/printed.bin"
    done
    python3 "$clients" submit "127.0.0.1:$port" 10 100 "$printers" "$dir/round" || fail "$1: receipts were refused"
    wait_for_jobs_to_end "${list[@]}"
    printed_all "${list[@]}"
    local printed=()
    for printer in "${list[@]}"; do
        printed+=("$dir/$printer/printed.bin")
    done
    python3 "$clients" check "$dir/round" "${printed[@]}" ||
        fail "$1: receipts missing, printed twice or out of their terminal's order"
    check_starts
    # Each round reads the log from its start, and the log stays short of the size at which
    # libpappl would set it aside.
    : >"$dir/server.log"
}

round "one printer" kitchen
round "two printers" kitchen,bar
stop_server
echo "printer-load: 2000 receipts from ten terminals printed once each, in each terminal's order"
