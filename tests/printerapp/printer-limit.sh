#!/usr/bin/env bash
# bristel-printer-app keeps at most a set number of jobs waiting for each printer (the server
# option max-pending-jobs): a printer out of paper fills up and refuses more jobs, the log
# says which printer is full and why, and another printer takes and prints its jobs all the
# same. Printers read back from the saved state get the limit too.
#   printer-limit.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

server_options=(-o max-pending-jobs=3)
start_with_printers kitchen bar

out_of_paper() { "$app" status | grep -q 'kitchen: Out of paper'; }

# fills_up LIMIT: the kitchen, out of paper, takes LIMIT jobs and refuses the next, saying so
# in the log; the bar prints meanwhile.
fills_up() {
    local limit=$1 n
    control_printer kitchen state paper-out
    eventually out_of_paper || fail "the kitchen's printer does not say it is out of paper"
    for ((n = 1; n <= limit; n++)); do
        try_submit_receipt "kitchen-$limit-$n" kitchen || fail "job $n of $limit was refused: $(cat "$dir/submit.out")"
    done
    try_submit_receipt "kitchen-$limit-over" kitchen && fail "a job beyond the limit of $limit was taken"
    cp "$dir/submit.out" "$dir/refusal-$limit.txt"
    grep -q "kitchen has $limit jobs waiting: Out of paper" "$dir/server.log" ||
        fail "the log does not say that the kitchen is full and why"
    try_submit_receipt "drinks-$limit" bar || fail "the bar refused a job while the kitchen was full: $(cat "$dir/submit.out")"
    control_printer bar wait-printed "$(cat "$dir"/drinks-*.bin | wc -c)"
}

fills_up 3
echo "what the client is told: $(cat "$dir/refusal-3.txt")"
# Paper in: the waiting jobs print and the kitchen takes jobs again.
control_printer kitchen state ready
control_printer kitchen wait-printed "$(cat "$dir"/kitchen-3-[0-9].bin | wc -c)"
wait_for_jobs_to_end kitchen bar
try_submit_receipt "kitchen-again" kitchen || fail "the kitchen refused a job once its queue was empty"
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
