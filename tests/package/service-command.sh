#!/usr/bin/env bash
# The printer application's service as its unit starts it, without systemd: the unit's
# Environment and ExecStart, its folders moved into a temporary root, its port a free one and
# its log a file, run as user lp (as the caller when not root) with the folders lp's alone.
# The server listens on every address, keeps its control socket in the runtime folder, where
# the service's user reaches it from a shell, keeps its printers in the state folder, and
# prints a job sent over IPP to a fake receipt printer.
#   service-command.sh BIN_DIR SOURCE_DIR
set -euo pipefail
bin=${1:?usage: service-command.sh BIN_DIR SOURCE_DIR}
source_dir=${2:?usage: service-command.sh BIN_DIR SOURCE_DIR}
test_name=service-command
# shellcheck source=tests/printerapp/server.sh
. "$source_dir/tests/printerapp/server.sh"

# The service's user, and the folders systemd and tmpfiles.d make for it.
if [ "$(id -u)" -eq 0 ]; then
    user="lp"
else
    user=$(id -un)
fi
chmod 0711 "$dir"
mkdir -p "$dir/service/bin" "$dir/service/spool" "$dir/service/state" "$dir/service/runtime"
chmod 0700 "$dir/service/spool" "$dir/service/state" "$dir/service/runtime"
# A copy of the program, which lp can run whatever folder the checkout is in.
install -m 0755 "$bin/bristel-printer-app" "$dir/service/bin/"
chown -R "$user:" "$dir/service/spool" "$dir/service/state" "$dir/service/runtime"

unit=$dir/bristel-printer-app.service
sed "s|@BINDIR@|$dir/service/bin|" "$source_dir/packaging/bristel-printer-app.service.in" >"$unit"
for folder in /var/spool/bristel-printer-app /var/lib/bristel-printer-app /run/bristel-printer-app; do
    grep -q "$folder" "$unit" || fail "the unit does not name $folder"
done
grep -q 'log-file=syslog' "$unit" || fail "the unit does not log to the system log"
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
sed -i -e "s|/var/spool/bristel-printer-app|$dir/service/spool|g" -e "s|/var/lib/bristel-printer-app|$dir/service/state|g" \
    -e "s|/run/bristel-printer-app|$dir/service/runtime|g" -e "s|log-file=syslog|log-file=$dir/server.log|" \
    -e "s|server-port=8000|server-port=$port|" -e "s|/etc/bristel/bristel.conf|$dir/service/bristel.conf|" "$unit"
cp "$source_dir/examples/bristel.conf" "$dir/service/bristel.conf"
chmod 644 "$dir/service/bristel.conf"
read -ra environment <<<"$(sed -n 's/^Environment=//p' "$unit" | tr '\n' ' ')"
read -ra command <<<"$(sed -n 's/^ExecStart=//p' "$unit")"

# as_service_user COMMAND...: COMMAND as the service's user, with only the service's own
# environment, as systemd runs it.  Each program replaces the one before, so that a command
# started in the background keeps its process id.
switch_user=()
[ "$(id -u)" -ne 0 ] || switch_user=(setpriv --reuid=lp --regid=lp --init-groups)
# The sanitizer build's options (and their suppressions of the libraries' own leaks) go along.
# The service's user may not read the checkout (a private folder): the suppression files they
# name go along with the program, readable by all.
readable_suppressions() {
    local part parts=() options=()
    IFS=: read -ra parts <<<"$1"
    for part in "${parts[@]}"; do
        if [[ $part == suppressions=* ]]; then
            install -m 0644 "${part#suppressions=}" "$dir/service/$2.supp"
            part=suppressions=$dir/service/$2.supp
        fi
        options+=("$part")
    done
    (
        IFS=:
        echo "${options[*]}"
    )
}
sanitizer_options=()
[ -z "${ASAN_OPTIONS:-}" ] || sanitizer_options+=("ASAN_OPTIONS=$(readable_suppressions "$ASAN_OPTIONS" asan)")
[ -z "${LSAN_OPTIONS:-}" ] || sanitizer_options+=("LSAN_OPTIONS=$(readable_suppressions "$LSAN_OPTIONS" lsan)")
as_service_user() {
    "${switch_user[@]}" env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 HOME="$dir/home" ${sanitizer_options[@]+"${sanitizer_options[@]}"} "$@"
}
# from_shell COMMAND...: a sub-command as the service's user from a shell, which finds the
# server's socket in XDG_RUNTIME_DIR.
runtime=$dir/service/runtime
from_shell() { as_service_user XDG_RUNTIME_DIR="$runtime" "$dir/service/bin/bristel-printer-app" "$@"; }

start_printer kitchen
: >"$dir/server.log"
chmod 0666 "$dir/server.log"
"${switch_user[@]}" env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 HOME="$dir/home" ${sanitizer_options[@]+"${sanitizer_options[@]}"} \
    "${environment[@]}" "${command[@]}" \
    >"$dir/server.out" 2>&1 &
server_pid=$!
# A server that ends before it starts fails the test at once, with what it said.
server_started() {
    kill -0 "$server_pid" 2>/dev/null || fail "the server ended before it started: $(cat "$dir/server.out")"
    grep -qF "Starting system." "$dir/server.log"
}
until server_started; do
    sleep 0.1
done

grep -qF "Listening for connections on '*:$port'" "$dir/server.log" || fail "the server does not listen on every address"
# root's socket is named after the program, a user's after the user's id too.
socket=$runtime/bristel-printer-app.sock
[ "$(id -u "$user")" -eq 0 ] || socket=$runtime/bristel-printer-app$(id -u "$user").sock
[ -S "$socket" ] || fail "no control socket in the runtime folder: $(ls "$runtime")"

from_shell add -d kitchen -m bristel_80mm -v "socket://127.0.0.1:$kitchen_port" || fail "add from a shell failed"
from_shell printers | grep -qx kitchen || fail "the printer added from a shell is not there"
# The status report names a printer once the server has asked it how it is.
shows_kitchen() {
    from_shell status >"$dir/status.out" || fail "status from a shell failed: $(cat "$dir/status.out")"
    grep -q '^kitchen: ' "$dir/status.out"
}
for ((tries = 0; tries < 60; tries++)); do
    shows_kitchen && break
    sleep 0.5
done
shows_kitchen || fail "status from a shell does not show the printer: $(cat "$dir/status.out")"
grep -q kitchen "$dir/service/state/state" || fail "the printer is not kept in the state folder"

# Any user of the machine prints over IPP on the service's port.
printf '\033@service ticket\n\035VB\000' >"$dir/ticket.bin"
"$dir/service/bin/bristel-printer-app" submit -u "ipp://localhost:$port/ipp/print/kitchen" \
    -o document-format=application/vnd.escpos "$dir/ticket.bin" >/dev/null || fail "submit over IPP failed"
control_printer kitchen wait-printed "$(stat -c %s "$dir/ticket.bin")"
cmp "$dir/ticket.bin" "$dir/kitchen/printed.bin" || fail "the job did not print as sent"

for ((tries = 0; tries < 600; tries++)); do
    from_shell jobs -d kitchen | grep -q 'processing\|pending' || break
    sleep 0.1
done
from_shell shutdown || fail "shutdown from a shell failed"
wait "$server_pid" || fail "the server ended with status $?"
server_pid=
echo "$test_name: the service's command runs as $user, reached from a shell and over IPP"
