# Shared by the printer application's tests, each of which sources it first, with its own
# arguments (BIN_DIR SOURCE_DIR ...): a private server with its own runtime folder, port, spool
# folder, state file and socket name, and fake network receipt printers (status-printer.py),
# all in a short folder under /tmp that goes away when the test ends. It sets bin, source_dir
# and test_name (the script's name, for the messages).

set -euo pipefail
bin=${1:?usage: ${0##*/} BIN_DIR SOURCE_DIR}
source_dir=${2:?usage: ${0##*/} BIN_DIR SOURCE_DIR}
test_name=${0##*/}
test_name=${test_name%.sh}

export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
# In the sanitizer build the server would end with a leak report (an abort, under CI's
# options) for what libpappl and the libraries under it keep until the process ends.
export LSAN_OPTIONS="suppressions=$source_dir/tests/printerapp/lsan.supp${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export ASAN_OPTIONS="suppressions=$source_dir/tests/printerapp/asan.supp${ASAN_OPTIONS:+:$ASAN_OPTIONS}"

# A short folder under /tmp: the server's socket path must stay short, and root's home may be
# closed to others.
dir=$(mktemp -d /tmp/bpa.XXXXXX)
server_pid=
printer_pids=()
cleanup() {
    if [ -n "$server_pid" ] && kill -0 "$server_pid" 2>/dev/null; then
        kill -9 "$server_pid" 2>/dev/null || true
    fi
    local pid
    for pid in "${printer_pids[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    # KEEP=1 leaves the folder behind, for a look after a failure.
    [ -n "${KEEP:-}" ] || rm -rf "$dir"
}
trap cleanup EXIT
fail() {
    echo "$test_name: $*" >&2
    echo "--- server log (last lines)" >&2
    tail -n 40 "$dir/server.log" >&2 || true
    echo "--- server output" >&2
    cat "$dir/server.out" >&2 || true
    exit 1
}

# The server's socket lives in XDG_RUNTIME_DIR: a runtime folder of its own keeps this server
# apart from any other, the system's included.
app="$bin/bristel-printer-app"
mkdir -p "$dir/run" "$dir/home" "$dir/spool" "$dir/tmp"
chmod 700 "$dir/run"
# libpappl keeps a folder of its own for each process in TMPDIR.
export XDG_RUNTIME_DIR=$dir/run HOME=$dir/home XDG_CONFIG_HOME=$dir/home/.config TMPDIR=$dir/tmp

# start_printer NAME: a fake printer recording into $dir/NAME/received.bin; its port in
# ${NAME}_port, its control connection on the descriptor in ${NAME}_control. It stops when
# its standard input ends: a FIFO this script holds open until it exits.
start_printer() {
    local name=$1 ports input data_port control_port fd
    ports=$dir/$name.ports
    input=$dir/$name.input
    mkfifo "$ports" "$input"
    exec {fd}<>"$input"
    python3 "$source_dir/tests/printerapp/status-printer.py" "$dir/$name" <"$input" >"$ports" &
    printer_pids+=($!)
    read -r data_port control_port <"$ports"
    printf -v "${name}_port" %s "$data_port"
    exec {fd}<>"/dev/tcp/127.0.0.1/$control_port"
    printf -v "${name}_control" %s "$fd"
}

# add_printer NAME DRIVER [FAKE]: the printer NAME on the server, printing to the fake printer
# FAKE (NAME when none is named).
add_printer() {
    local port_var=${3:-$1}_port
    "$app" add -d "$1" -m "$2" -v "socket://127.0.0.1:${!port_var}" || fail "add of $1 failed"
}

# start_with_printers NAME...: a fake printer for each NAME, the server, and on it a printer
# called NAME (bristel_80mm) printing to each; uri names the first on the server.
start_with_printers() {
    local name
    for name in "$@"; do
        start_printer "$name"
    done
    start_server
    for name in "$@"; do
        add_printer "$name" bristel_80mm
    done
    uri=ipp://127.0.0.1:$port/ipp/print/$1
}

# receipt NAME: a receipt of its own in $dir/NAME.bin.
receipt() {
    printf '\033@receipt %s\n\035VB\000' "$1" >"$dir/$1.bin"
}

# try_submit PRINTER FILE FORMAT: FILE submitted to PRINTER; its job id goes to $job and the
# client's words to $dir/submit.out; the client's status is returned.
try_submit() {
    local status=0
    "$app" submit -d "$1" -o document-format="$3" "$2" >"$dir/submit.out" 2>&1 || status=$?
    job=$(tail -n 1 "$dir/submit.out")
    job=${job##*-}
    return "$status"
}

# submit PRINTER FILE FORMAT: the same, and the test fails when the job is refused.
submit() {
    try_submit "$@" || fail "submit of $2 to $1 failed: $(cat "$dir/submit.out")"
}

# submit_receipt NAME PRINTER: a receipt of its own (see receipt) submitted to PRINTER as
# ESC/POS, its job id in $job; try_submit_receipt returns the client's status instead.
try_submit_receipt() {
    receipt "$1"
    try_submit "$2" "$dir/$1.bin" application/vnd.escpos
}
submit_receipt() {
    receipt "$1"
    submit "$2" "$dir/$1.bin" application/vnd.escpos
}

# control_printer NAME COMMAND...: a command to a fake printer, which answers once it holds.
control_printer() {
    local name=$1 reply fd_var
    shift
    fd_var=${name}_control
    echo "$*" >&"${!fd_var}"
    read -r reply <&"${!fd_var}"
    [ "$reply" = ok ] || fail "the fake printer $name refused \"$*\": $reply"
}

# free_port: a port nobody listens on now.
free_port() {
    python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

# start_server [LEVEL]: the server on the port in next_port, if a test chose one (see free_port),
# or else on a free port of its own, returning once it runs; it logs
# at LEVEL (debug when none is named), with the options in the array server_options, if any
# (-o NAME=VALUE ...). Its spool folder and state file are those of folder_options, which a
# test may empty to see the defaults.
folder_options=(-o spool-directory="$dir/spool" -o state-file="$dir/state")
start_server() {
    local log_offset
    log_offset=$(stat -c %s "$dir/server.log" 2>/dev/null || echo 0)
    port=${next_port:-$(free_port)}
    next_port=
    "$app" server -o log-file="$dir/server.log" -o log-level="${1:-debug}" "${folder_options[@]}" \
        -o server-port="$port" -o listen-hostname=127.0.0.1 \
        ${server_options[@]+"${server_options[@]}"} >"$dir/server.out" 2>&1 &
    server_pid=$!
    # Client commands start a server of their own when none answers: wait for ours to say it
    # runs, in the lines it adds to the log (a restarted server writes after the former one).
    local line
    coproc log_tail { exec tail -c +$((log_offset + 1)) -F "$dir/server.log" 2>/dev/null; }
    while read -r line <&"${log_tail[0]}"; do
        case $line in *"Starting system."*) break ;; esac
    done
    kill "$log_tail_PID"
}

# wait_for_jobs_to_end PRINTER...: until none of their jobs is pending or processing (60 s at
# most).  libpappl 1.3.1 can crash when it is shut down while a job thread is still winding up
# ("corrupted double-linked list" as it frees the printers), so a test that checks how the
# server ends lets its jobs end first.
wait_for_jobs_to_end() {
    local printer tries
    for printer in "$@"; do
        for ((tries = 0; tries < 600; tries++)); do
            "$app" jobs -d "$printer" | grep -q 'processing\|pending' || break
            sleep 0.1
        done
        ((tries < 600)) || fail "the jobs of $printer did not end"
    done
}

# wait_until_not_holding PRINTER: until the printer has stopped holding new jobs (60 s at most),
# as it does once it has had nothing to do for a moment; libpappl takes a PWG or Apple raster
# page only then.
wait_until_not_holding() {
    local tries reasons
    for ((tries = 0; tries < 600; tries++)); do
        # What the printer reports is in the test's output, whether it passes or not.
        reasons=$(ipptool -t -d reasons=none "ipp://127.0.0.1:$port/ipp/print/$1" \
            "$source_dir/tests/printerapp/printer-state-reasons.test" 2>&1 || true)
        [[ $reasons == *hold-new-jobs* ]] || return 0
        sleep 0.1
    done
    fail "the printer $1 did not stop holding new jobs"
}

# eventually COMMAND...: a bounded number of tries of a condition (30 s), a short pause between them.
eventually() {
    local try
    for try in $(seq 1 60); do
        if "$@"; then
            return 0
        fi
        sleep 0.5
    done
    return 1
}

# write_black_raster_pages PWG URF: a PWG raster page and an Apple raster page, each 384 x 100
# grey dots, all black, at 203 dpi.
write_black_raster_pages() {
    python3 - "$1" "$2" <<'PYTHON'
import struct, sys
width, height = 384, 100
header = bytearray(1796)
header[0:9] = b"PwgRaster"
for offset, value in ((276, 203), (280, 203), (372, width), (376, height), (384, 8), (388, 8),
                      (392, width), (400, 18)):
    header[offset:offset + 4] = struct.pack(">I", value)
# One line, repeated for the whole page: three runs of 128 black pixels.
line = bytes([height - 1, 127, 0, 127, 0, 127, 0])
open(sys.argv[1], "wb").write(b"RaS2" + bytes(header) + line)
# The same page as Apple raster: 8-bit grey, 203 dpi.
page = struct.pack(">BBBBIIIIIII", 8, 0, 1, 4, 0, 0, width, height, 203, 0, 0)
open(sys.argv[2], "wb").write(b"UNIRAST\0" + struct.pack(">I", 1) + page + line)
PYTHON
}

# black_raster_page_bytes: what such a page prints as on a 58 mm printer: 100 rows of 48
# black bytes in one GS v 0 band, then the cut; the blank rest of the page is not fed.
black_raster_page_bytes() {
    printf '\035v0\000\060\000\144\000'
    head -c $((48 * 100)) /dev/zero | tr '\000' '\377'
    printf '\035VB\000'
}

# stop_server: the server finishes its jobs and stops.
stop_server() {
    "$app" shutdown || fail "shutdown failed"
    wait "$server_pid" || fail "the server ended with status $?"
    server_pid=
}

# kill_server: the server killed at once (kill -9), as by a crash or a power cut.
kill_server() {
    kill -9 "$server_pid"
    wait "$server_pid" 2>/dev/null || true
    server_pid=
}
