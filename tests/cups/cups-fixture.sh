# Private CUPS schedulers and fake network printers for the printing tests; sourced by each
# test script.  Nothing here touches the machine's own scheduler: every server has its own
# configuration, ServerBin, spool, logs and port on 127.0.0.1, and every client command runs
# with CUPS_SERVER pointing at it.
#
# Needs BRISTEL_BIN (the folder of the built programs).  The servers live under one fresh
# folder in /tmp, short and reachable by user lp whatever folder the checkout is in (a root
# home is 0700, and a scheduler running as root runs its filters as lp); it is removed when
# the script exits, unless BRISTEL_KEEP_CUPS is set.
set -euo pipefail

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

: "${BRISTEL_BIN:?the folder of the built programs}"
CUPSD=${CUPSD:-$(command -v cupsd || echo /usr/sbin/cupsd)}
CUPS_BACKENDS=${CUPS_BACKENDS:-/usr/lib/cups/backend}
CUPS_DAEMONS=${CUPS_DAEMONS:-/usr/lib/cups/daemon}
CUPS_FILTERS=${CUPS_FILTERS:-/usr/lib/cups/filter}
[ -x "$CUPSD" ] || fail "no cupsd (Debian package cups-daemon)"
for tool in lp lpadmin lpstat lpoptions python3; do
    command -v "$tool" >/dev/null || fail "no $tool (Debian packages cups-client, python3)"
done
[ -x "$CUPS_BACKENDS/socket" ] || fail "no socket backend in $CUPS_BACKENDS (Debian package cups)"
[ -x "$CUPS_DAEMONS/cups-exec" ] || fail "no cups-exec in $CUPS_DAEMONS (Debian package cups-daemon)"
[ -x "$BRISTEL_BIN/bristeltoescpos" ] || fail "no filter $BRISTEL_BIN/bristeltoescpos"
FIXTURE_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
SOURCE_DIR=$(cd "$FIXTURE_DIR/../.." && pwd)

CUPS_ROOT=$(mktemp -d /tmp/brcups.XXXXXX)
chmod 0755 "$CUPS_ROOT"
if [ "$(id -u)" -eq 0 ] && ! runuser -u lp -- test -x "$CUPS_ROOT"; then
    fail "user lp cannot reach $CUPS_ROOT"
fi
export HOME=$CUPS_ROOT/home # a client's own lpoptions, not the caller's
mkdir -p "$HOME"
declare -A CUPSD_PID CUPSD_PORT PRINTER_PID

cleanup() {
    local name
    for name in "${!CUPSD_PID[@]}"; do
        kill "${CUPSD_PID[$name]}" 2>/dev/null || true
    done
    for name in "${!PRINTER_PID[@]}"; do
        kill "${PRINTER_PID[$name]}" 2>/dev/null || true
    done
    wait 2>/dev/null || true
    if [ -n "${BRISTEL_KEEP_CUPS:-}" ]; then
        echo "kept: $CUPS_ROOT" >&2
    else
        rm -rf "$CUPS_ROOT"
    fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM # through the EXIT trap: no scheduler is left behind

free_port() {
    python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

# wait_until SECONDS COMMAND...: runs COMMAND every 0.05 s until it succeeds; false on timeout.
wait_until() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.05
    done
}

# The configuration of the bristel filter every scheduler passes on through BRISTEL_CONFIG;
# tests write into it before printing.
BRISTEL_TEST_CONFIG=$CUPS_ROOT/bristel.conf
: >"$BRISTEL_TEST_CONFIG"
chmod 0644 "$BRISTEL_TEST_CONFIG"

write_server_files() {
    local dir=$1 port=$2
    local user_lines="" system_group
    if [ "$(id -u)" -eq 0 ]; then
        user_lines=$'User lp\nGroup lp'
        system_group=root
    else
        system_group=$(id -gn)
    fi
    cat >"$dir/cups-files.conf" <<CONF
ServerRoot $dir/etc
ServerBin $dir/lib
RequestRoot $dir/spool
TempDir $dir/spool/tmp
CacheDir $dir/cache
StateDir $dir/state
ErrorLog $dir/log/error_log
AccessLog $dir/log/access_log
PageLog $dir/log/page_log
Printcap
SetEnv BRISTEL_CONFIG $BRISTEL_TEST_CONFIG
SystemGroup $system_group
$user_lines
CONF
    cat >"$dir/cupsd.conf" <<CONF
Listen 127.0.0.1:$port
LogLevel debug
MaxLogSize 0
Browsing No
BrowseLocalProtocols none
DefaultAuthType None
WebInterface No
PreserveJobHistory Yes
JobRetryInterval 1
<Location />
  Order allow,deny
  Allow from 127.0.0.1
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
    Allow from 127.0.0.1
  </Limit>
</Policy>
CONF
}

# start_cupsd NAME: a scheduler of its own, serving on a free port; its folder is
# $CUPS_ROOT/NAME.  Fails if it does not come up.
start_cupsd() {
    local name=$1 dir=$CUPS_ROOT/$1 attempt port
    mkdir -p "$dir"/{etc,lib/backend,lib/filter,lib/daemon,spool/tmp,cache,state,log}
    ln -s "$CUPS_BACKENDS/socket" "$CUPS_BACKENDS/ipp" "$dir/lib/backend/"
    ln -s "$CUPS_DAEMONS/cups-exec" "$dir/lib/daemon/"
    # The system's filters too, so that the server knows the usual conversions.
    ln -s "$CUPS_FILTERS"/* "$dir/lib/filter/"
    # A copy: as root the scheduler runs only a filter that is root's and written by no one else.
    # The link to an installed filter of the same name goes first, or the copy would land on it.
    rm -f "$dir/lib/filter/bristeltoescpos"
    install -m 0755 "$BRISTEL_BIN/bristeltoescpos" "$dir/lib/filter/"
    # CUPS_WITHOUT_BRISTEL_TYPES: a scheduler that starts before the package's types arrive.
    [ -n "${CUPS_WITHOUT_BRISTEL_TYPES:-}" ] ||
        install -m 0644 "$SOURCE_DIR/cups/bristel.types" "$SOURCE_DIR/cups/bristel.convs" "$dir/etc/"
    chmod -R go-w "$dir"
    for attempt in 1 2 3; do
        port=$(free_port)
        write_server_files "$dir" "$port"
        : >"$dir/log/error_log"
        DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent "$CUPSD" -f -c "$dir/cupsd.conf" \
            -s "$dir/cups-files.conf" >"$dir/log/cupsd.out" 2>&1 &
        CUPSD_PID[$name]=$!
        CUPSD_PORT[$name]=$port
        # "running" says nothing about the port; the log's "Listening to" line does.
        if wait_until 10 grep -q "Listening to 127.0.0.1:$port" "$dir/log/error_log"; then
            return 0
        fi
        kill "${CUPSD_PID[$name]}" 2>/dev/null || true
        wait "${CUPSD_PID[$name]}" 2>/dev/null || true
        unset "CUPSD_PID[$name]"
    done
    cat "$dir/log/cupsd.out" "$dir/log/error_log" >&2
    fail "the private cupsd $name did not start"
}

# on NAME COMMAND...: a client command against scheduler NAME only.
on() {
    local name=$1
    shift
    CUPS_SERVER=127.0.0.1:${CUPSD_PORT[$name]} CUPS_SERVERROOT=$CUPS_ROOT/client "$@"
}
mkdir -p "$CUPS_ROOT/client"

# start_printer NAME [PORT]: a fake network printer; its port is in PRINTER_PORT, what it
# receives in $CUPS_ROOT/printer-NAME/job-NNNN.bin.
start_printer() {
    local name=$1 dir=$CUPS_ROOT/printer-$1
    mkdir -p "$dir"
    rm -f "$dir/port"
    python3 "$FIXTURE_DIR/fake-printer.py" "$dir" ${2:-} &
    PRINTER_PID[$name]=$!
    wait_until 10 test -s "$dir/port" || fail "the fake printer $name did not start"
    PRINTER_PORT=$(cat "$dir/port")
}

printer_jobs() {
    ls "$CUPS_ROOT/printer-$1"/job-*.bin 2>/dev/null | sort || true
}

# The device URI of a fake printer: no SNMP query, no waiting for the printer to close.
printer_uri() {
    echo "socket://127.0.0.1:$1/?snmp=false&waiteof=false"
}

# submit NAME QUEUE FILE [lp options...]: prints the job id.
submit() {
    local name=$1 queue=$2 file=$3
    shift 3
    on "$name" lp -d "$queue" "$@" "$file" | sed -n 's/^request id is \([^ ]*\) .*/\1/p'
}

job_completed() {
    on "$1" lpstat -W completed -o "$2" 2>/dev/null | grep -q "^$3 "
}

# wait_for_printer_jobs NAME COUNT [SECONDS]: until printer NAME holds COUNT finished jobs.
wait_for_printer_jobs() {
    local name=$1 count=$2 seconds=${3:-20}
    wait_until "$seconds" eval '[ "$(printer_jobs '"$name"' | wc -l)" -ge '"$count"' ]'
}
