#!/usr/bin/env bash
# bristel-printer-app asks its printers how they are (DLE EOT 1..4) and shows it: each state
# of a fake receipt printer comes out as the printer's printer-state-reasons over IPP, in
# words in the "status" command and on the status page of the web interface. A printer that
# never answers is "Status unknown", and the log says so once.
#   printer-status.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_with_printers kitchen

status_page() {
    python3 -c 'import sys, urllib.request; sys.stdout.write(urllib.request.urlopen(sys.argv[1]).read().decode())' \
        "http://127.0.0.1:$port$1"
}

shows() {
    local reasons=$1 words=$2
    ipptool -q -d reasons="$reasons" "$uri" "$source_dir/tests/printerapp/printer-state-reasons.test" &&
        "$app" status >"$dir/status.out" && grep -qxF "kitchen: $words" "$dir/status.out"
}

# The server asks the printer when its attributes are read and every few seconds while it is
# idle: a bounded number of reads until it shows the state, as reasons and in words.
check_state() {
    local state=$1 reasons=$2 words=$3 try
    control_printer kitchen state "$state"
    for try in $(seq 1 60); do
        if shows "$reasons" "$words"; then
            break
        fi
        [ "$try" -lt 60 ] || fail "the printer $state does not show as $reasons, \"$words\":" \
            "$(ipptool -t -d reasons="$reasons" "$uri" "$source_dir/tests/printerapp/printer-state-reasons.test")" \
            "$(cat "$dir/status.out")"
        sleep 0.5
    done
    status_page /bristel/status | grep -qF "<td>kitchen</td><td>$words</td>" ||
        fail "the status page does not say \"$words\" for the printer $state"
}

check_state ready none Ready
check_state near-end media-low "Paper near end"
check_state paper-out media-empty "Out of paper"
check_state cover-open cover-open "Cover open"
check_state cutter-jam other "Cutter jam"
check_state off offline Offline
check_state ready none Ready
status_page / | grep -qF 'href="/bristel/status"' || fail "the system's pages do not link the status page"

# A printer that never answers prints as before and is told of once in the log, however
# often it is asked.
check_state silent none "Status unknown"
ipptool -q -d reasons=none "$uri" "$source_dir/tests/printerapp/printer-state-reasons.test" ||
    fail "a silent printer has reasons"
[ "$(grep -c 'does not answer status queries' "$dir/server.log")" = 1 ] ||
    fail "the log does not tell of the silent printer exactly once"
printf 'printed on a silent printer\n' >"$dir/silent.bin"
"$app" submit -d kitchen -o document-format=application/vnd.escpos "$dir/silent.bin" >/dev/null ||
    fail "submit failed"
control_printer kitchen wait-printed "$(stat -c %s "$dir/silent.bin")"
cmp "$dir/silent.bin" "$dir/kitchen/printed.bin" || fail "the job did not print on the silent printer"

stop_server
echo "printer-status: each state of the printer shown as its reasons, in the status command and on the page"
