#!/usr/bin/env bash
# bristel-printer-app keeps at most a set number of jobs waiting for each printer (the server
# option max-pending-jobs): a printer out of paper fills up and refuses more jobs, the log
# says which printer is full and why, and another printer takes and prints its jobs all the
# same. Printers read back from the saved state get the limit too.
#   printer-limit.sh BIN_DIR SOURCE_DIR
set -euo pipefail
bin=${1:?usage: printer-limit.sh BIN_DIR SOURCE_DIR}
source_dir=${2:?usage: printer-limit.sh BIN_DIR SOURCE_DIR}
test_name=printer-limit
# shellcheck source=server.sh
. "$source_dir/tests/printerapp/server.sh"

start_printer kitchen
start_printer bar
server_options=(-o max-pending-jobs=3)
start_server
"$app" add -d kitchen -m bristel_80mm -v "socket://127.0.0.1:$kitchen_port" || fail "add failed"
"$app" add -d bar -m bristel_80mm -v "socket://127.0.0.1:$bar_port" || fail "add failed"

# submit NAME PRINTER: a receipt of its own; the client's words go to $dir/submit.out.
submit() {
    printf '\033@receipt %s\n\035VB\000' "$1" >"$dir/$1.bin"
    "$app" submit -d "$2" -o document-format=application/vnd.escpos "$dir/$1.bin" >"$dir/submit.out" 2>&1
}
out_of_paper() { "$app" status | grep -q 'kitchen: Out of paper'; }

# fills_up LIMIT: the kitchen, out of paper, takes LIMIT jobs and refuses the next, saying so
# in the log; the bar prints meanwhile.
fills_up() {
    local limit=$1 n
    control_printer kitchen state paper-out
    eventually out_of_paper || fail "the kitchen's printer does not say it is out of paper"
    for ((n = 1; n <= limit; n++)); do
        submit "kitchen-$limit-$n" kitchen || fail "job $n of $limit was refused: $(cat "$dir/submit.out")"
    done
    submit "kitchen-$limit-over" kitchen && fail "a job beyond the limit of $limit was taken"
    cp "$dir/submit.out" "$dir/refusal-$limit.txt"
    grep -q "kitchen has $limit jobs waiting: Out of paper" "$dir/server.log" ||
        fail "the log does not say that the kitchen is full and why"
    submit "drinks-$limit" bar || fail "the bar refused a job while the kitchen was full: $(cat "$dir/submit.out")"
    control_printer bar wait-printed "$(cat "$dir"/drinks-*.bin | wc -c)"
}

fills_up 3
echo "what the client is told: $(cat "$dir/refusal-3.txt")"
# Paper in: the waiting jobs print and the kitchen takes jobs again.
control_printer kitchen state ready
control_printer kitchen wait-printed "$(cat "$dir"/kitchen-3-[0-9].bin | wc -c)"
wait_for_jobs_to_end kitchen bar
submit "kitchen-again" kitchen || fail "the kitchen refused a job once its queue was empty"
control_printer kitchen wait-printed "$(cat "$dir"/kitchen-3-[0-9].bin "$dir/kitchen-again.bin" | wc -c)"

# Read back from the saved state, the printers get the limit the server is started with.
wait_for_jobs_to_end kitchen bar
stop_server
mv "$dir/server.log" "$dir/server-before-restart.log"
server_options=(-o max-pending-jobs=2)
start_server
fills_up 2
control_printer kitchen state ready
wait_for_jobs_to_end kitchen bar
stop_server
echo "printer-limit: a full printer refuses jobs and says why, the other prints"
