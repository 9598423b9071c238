#!/usr/bin/env bash
# bristel-printer-app timed against fake network receipt printers on loopback, with the
# private server and printers of its tests (tests/printerapp/server.sh); nothing of the
# machine's own services is touched.
#
#   bench/printer-app.sh [build-dir] [rounds] [idle-seconds]     (default: build, 3, 60)
#
# Each figure is measured rounds times; the median is printed, then every round's value.
# 1. latency: receipts over IPP (Print-Job) to the kitchen printer one after another, from just before the
#    request to the last byte at the printer (31 receipts a round, their median).
# 2. load: ten terminals sending a hundred receipts each at once, until the last byte printed.
# 3. fault: the printer runs out of paper; until printer-state-reasons says media-empty.
# 4. idle CPU: the server's CPU time over idle-seconds with three idle printers, as a share
#    of one core.
# 5. memory: the server's resident memory after the load rounds.
# Uses the programs already built in build-dir.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=$(cd "${1:-$root/build}/bin" && pwd)
rounds=${2:-3}
idle_seconds=${3:-60}
source_dir=$root
test_name=bench-printer-app
# shellcheck source=../tests/printerapp/server.sh
. "$root/tests/printerapp/server.sh"
clients=$root/tests/printerapp/load-clients.py

start_printer kitchen
start_printer bar
start_printer terrace
start_server info
for printer in kitchen bar terrace; do
    port_var=${printer}_port
    "$app" add -d "$printer" -m bristel_80mm -v "socket://127.0.0.1:${!port_var}" || fail "add failed"
done
echo "machine: $(nproc) cores, $(awk -F: '/model name/ { print $2; exit }' /proc/cpuinfo | sed 's/^ *//')"
echo "rounds: $rounds"
echo

# summary NAME UNIT VALUE...: the median of the values, then the values.
summary() {
    local name=$1 unit=$2
    shift 2
    printf '%s\n' "$@" | sort -g | awk -v name="$name" -v unit="$unit" -v all="$*" '
        { v[NR] = $1 }
        END { m = NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2
              printf "%-34s median %10s %-4s (rounds: %s)\n", name, m, unit, all }'
}

# latency_round: 31 receipts one after another, each once the one before has printed; the
# median of their times from the request to the last byte at the printer, in ms.
latency_round() {
    # The printer's control connection is this script's: python answers on a copy of it.
    python3 - "$clients" "$port" "$kitchen_control" "$(stat -c %s "$dir/kitchen/printed.bin")" <<'PYTHON'
import http.client, runpy, socket, statistics, sys, time
from types import SimpleNamespace
# The load test's IPP client, whose file name is no module name.
clients = SimpleNamespace(**runpy.run_path(sys.argv[1]))
port, printed = int(sys.argv[2]), int(sys.argv[4])
control = socket.fromfd(int(sys.argv[3]), socket.AF_INET, socket.SOCK_STREAM)
answers = control.makefile("rb")
connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
samples = []
for serial in range(31):
    body = clients.receipt(99, serial)
    request = clients.print_job_request(serial + 1, "ipp://127.0.0.1:%d/ipp/print/kitchen" % port, "bench",
                                        "latency %d" % serial) + body
    start = time.perf_counter()
    connection.request("POST", "/ipp/print/kitchen", request, {"Content-Type": "application/ipp"})
    connection.getresponse().read()
    printed += len(body)
    control.sendall(b"wait-printed %d\n" % printed)
    answers.readline()
    samples.append((time.perf_counter() - start) * 1000)
print("%.1f" % statistics.median(samples))
PYTHON
}

# load_round: ten terminals, a hundred receipts each, to the kitchen; seconds until the last
# byte printed.
load_round() {
    local before start end
    before=$(stat -c %s "$dir/kitchen/printed.bin")
    rm -rf "$dir/round"
    mkdir "$dir/round"
    start=$EPOCHREALTIME
    python3 "$clients" submit "127.0.0.1:$port" 10 100 kitchen "$dir/round" || fail "receipts were refused"
    control_printer kitchen wait-printed $((before + $(stat -c %s "$dir/round/sent-kitchen.bin")))
    end=$EPOCHREALTIME
    awk -v s="$start" -v e="$end" 'BEGIN { printf "%.2f", e - s }'
}

# fault_round: seconds from the paper running out to printer-state-reasons saying so.
fault_round() {
    local start end uri=ipp://127.0.0.1:$port/ipp/print/bar
    control_printer bar state paper-out
    start=$EPOCHREALTIME
    until ipptool -q -d reasons=media-empty "$uri" "$root/tests/printerapp/printer-state-reasons.test"; do
        sleep 0.05
    done
    end=$EPOCHREALTIME
    control_printer bar state ready
    until ipptool -q -d reasons=none "$uri" "$root/tests/printerapp/printer-state-reasons.test"; do
        sleep 0.05
    done
    awk -v s="$start" -v e="$end" 'BEGIN { printf "%.2f", e - s }'
}

# cpu_ticks: the server's user and system time so far, in clock ticks.
cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$server_pid/stat"; }

# idle_round: the server's share of one core over idle_seconds, in per cent.
idle_round() {
    local before after
    before=$(cpu_ticks)
    sleep "$idle_seconds"
    after=$(cpu_ticks)
    awk -v b="$before" -v a="$after" -v t="$(getconf CLK_TCK)" -v s="$idle_seconds" \
        'BEGIN { printf "%.2f", (a - b) / t / s * 100 }'
}

latencies=() loads=() faults=() idles=()
for ((round = 0; round < rounds; round++)); do
    latencies+=("$(latency_round)")
    loads+=("$(load_round)")
    faults+=("$(fault_round)")
done
rss_kib=$(awk '/^VmRSS:/ { print $2 }' "/proc/$server_pid/status")
# Whatever printed last must have ended, and the printers gone back to plain idling.
sleep 8
for ((round = 0; round < rounds; round++)); do
    idles+=("$(idle_round)")
done
summary "receipt, request to last byte" ms "${latencies[@]}"
summary "1000 receipts from 10 terminals" s "${loads[@]}"
summary "paper out to media-empty" s "${faults[@]}"
summary "idle CPU, 3 printers, ${idle_seconds} s" "%" "${idles[@]}"
printf '%-34s %10s MiB\n' "resident memory after the load" "$(awk -v k="$rss_kib" 'BEGIN { printf "%.1f", k / 1024 }')"
wait_for_jobs_to_end kitchen bar terrace
stop_server
