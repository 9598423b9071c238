#!/usr/bin/env bash
# Each bristel-printer-app server keeps its control socket in the folder XDG_RUNTIME_DIR names:
# two servers with runtime folders of their own never meet, each sub-command reaches the server
# of its runtime folder, and "-u ipp://HOST:PORT/ipp/system" reaches a given server from any.
#   printer-instances.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

start_printer kitchen
start_server
first_runtime=$XDG_RUNTIME_DIR
[ -S "$first_runtime/bristel-printer-app.sock" ] || fail "no socket in the runtime folder $first_runtime"
add_printer kitchen bristel_80mm

# A second server, with a runtime folder, port and folders of its own.
second=$dir/second
mkdir -p "$second/run" "$second/spool"
chmod 700 "$second/run"
second_port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
XDG_RUNTIME_DIR=$second/run "$app" server -o log-file="$second/server.log" -o spool-directory="$second/spool" \
    -o state-file="$second/state" -o server-port="$second_port" -o listen-hostname=127.0.0.1 \
    >"$second/server.out" 2>&1 &
second_pid=$!
for ((try = 0; try < 600; try++)); do
    [ -S "$second/run/bristel-printer-app.sock" ] && break
    sleep 0.1
done
[ -S "$second/run/bristel-printer-app.sock" ] || fail "the second server made no socket in its runtime folder"
XDG_RUNTIME_DIR=$second/run "$app" add -d bar -m bristel_58mm -v "socket://127.0.0.1:$kitchen_port" ||
    fail "add on the second server failed"

# Each runtime folder reaches its own server. A printer is listed once the server has asked it,
# as it does every few seconds.
lists() {
    local file=$1 printer=$2 try
    shift 2
    for ((try = 0; try < 100; try++)); do
        "$@" >"$file" || return 1
        grep -q "^$printer: " "$file" && return 0
        sleep 0.2
    done
    return 1
}
lists "$dir/first.status" kitchen "$app" status || fail "the first server does not list kitchen: $(cat "$dir/first.status")"
! grep -q '^bar:' "$dir/first.status" || fail "the first server lists the second server's printer"
lists "$dir/second.status" bar env XDG_RUNTIME_DIR="$second/run" "$app" status ||
    fail "the second server does not list bar: $(cat "$dir/second.status")"
! grep -q '^kitchen:' "$dir/second.status" || fail "the second server lists the first server's printer"

# -u reaches the first server from the second one's runtime folder, its words included.
lists "$dir/by-uri.status" kitchen env XDG_RUNTIME_DIR="$second/run" "$app" status -u "ipp://127.0.0.1:$port/ipp/system" ||
    fail "status -u does not reach the first server: $(cat "$dir/by-uri.status")"
XDG_RUNTIME_DIR=$second/run "$app" jobs -u "ipp://127.0.0.1:$port/ipp/system" -d kitchen >/dev/null ||
    fail "jobs -u -d kitchen does not reach the first server"

# delete follows -u too: the second server's printer goes, the first server's stays.
"$app" delete -u "ipp://127.0.0.1:$second_port/ipp/system" -d bar || fail "delete -u -d bar failed"
XDG_RUNTIME_DIR=$second/run "$app" printers | grep -qx bar && fail "bar is still on the second server after delete -u"
"$app" printers | grep -qx kitchen || fail "delete on the second server took the first server's printer"

XDG_RUNTIME_DIR=$second/run "$app" shutdown || fail "shutdown of the second server failed"
wait "$second_pid" || fail "the second server ended with status $?"
stop_server
