#!/usr/bin/env bash
# bristel-printer-app keeps its printers, their settings and their places (location and
# organization) across a kill -9 that comes right after they were added or changed, and keeps
# them, with its spool folder, in the user's state folder when no option names a place.
#   printer-saved-state.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_printer kitchen
# printer_attributes PRINTER: what the running server says of it.
printer_attributes() {
    ipptool -tv "ipp://127.0.0.1:$port/ipp/print/$1" get-printer-attributes.test 2>&1
}
expect_printers() {
    printer_attributes kitchen >"$dir/attributes.txt" || fail "the printer kitchen is gone after the restart"
    grep -q "print-quality-default (enum) = $1" "$dir/attributes.txt" ||
        fail "the kitchen's print quality is not $1 after the restart"
    "$app" printers | grep -qx "$2" || fail "the printer $2 is gone after the restart"
}
# expect_place LOCATION ORGANIZATION: where the kitchen's printer stands, by what the server says.
expect_place() {
    printer_attributes kitchen >"$dir/attributes.txt" || fail "the printer kitchen is gone after the restart"
    grep -qx " *printer-location (textWithoutLanguage) = $1" "$dir/attributes.txt" ||
        fail "the kitchen's location is not \"$1\": $(grep printer-location "$dir/attributes.txt")"
    grep -qx " *printer-organization (textWithoutLanguage) = $2" "$dir/attributes.txt" ||
        fail "the kitchen's organization is not \"$2\": $(grep 'printer-organization ' "$dir/attributes.txt")"
}

# Added and changed, then killed at once: all of it is back.
start_server
add_printer kitchen bristel_80mm
"$app" modify -d kitchen -o print-quality-default=high || fail "modify failed"
add_printer bar bristel_58mm kitchen
kill_server
start_server
expect_printers high bar
"$app" modify -d kitchen -o print-quality-default=draft || fail "modify failed"
kill_server
start_server
expect_printers draft bar

# The printer's place, alone and with a setting, changed right before a kill -9.
"$app" modify -d kitchen -o 'printer-location="Back kitchen"' -o 'printer-organization="Trattoria da Gino"' ||
    fail "modify of the place failed"
expect_place "Back kitchen" "Trattoria da Gino"
kill_server
start_server
expect_place "Back kitchen" "Trattoria da Gino"
"$app" modify -d kitchen -o print-quality-default=high -o "printer-location='Bar, upstairs'" || fail "modify failed"
kill_server
start_server
expect_printers high bar
expect_place "Bar, upstairs" "Trattoria da Gino"
kill_server

# No option names a place: the state and the spool folder live in the user's state folder.
export XDG_STATE_HOME=$dir/state-home
folder_options=()
start_server
add_printer kitchen bristel_80mm
"$app" modify -d kitchen -o print-quality-default=high || fail "modify failed"
add_printer bar bristel_58mm kitchen
kill_server
[ -d "$XDG_STATE_HOME/bristel-printer-app/spool" ] || fail "no spool folder in the user's state folder"
grep -q 'name="kitchen"' "$XDG_STATE_HOME/bristel-printer-app/printers.state" ||
    fail "the printers are not saved in the user's state folder"
start_server
expect_printers high bar
kill_server
echo "printer-saved-state: printers, their settings and places survived kill -9, in the named and the default places"
