#!/usr/bin/env bash
# Printing through CUPS, for real: private schedulers, fake network printers, the filter.
#
#   test-cups.sh CASE     with BRISTEL_BIN set to the folder of the built programs
#
# Cases: matches-render, printer-off, malformed-job, forward-ipp, options, other-printer,
# filter-alone, ppd-files, queue-settings, job-faults,
# types-on-reload.
# Each case starts its own schedulers, so the cases may run side by side.
source "$(dirname "$0")/cups-fixture.sh"

DOCUMENTS=$SOURCE_DIR/examples/documents
: "${BRISTEL_PPD_DIR:?the folder of the generated PPD files}"
PPD58=$BRISTEL_PPD_DIR/bristel-escpos-58mm.ppd
PPD80=$BRISTEL_PPD_DIR/bristel-escpos-80mm.ppd
PPD80_180=$BRISTEL_PPD_DIR/bristel-escpos-80mm-180dpi.ppd
EXPECTED=$CUPS_ROOT/expected
# The 80 mm PPD's defaults, which stand over the configuration file's code page.
PPD80_DEFAULTS=(--codepage PC858 --columns 48 --cut partial --drawer-pin 2)
mkdir -p "$EXPECTED"

# The profiles and ESC/POS block every scheduler's filter reads (BRISTEL_CONFIG): a code page
# the queues override, and settings no PPD carries (the feed before the cut, the drawer).
cat >"$BRISTEL_TEST_CONFIG" <<'CONF'
bristel : {
    receiptdoc : {
        paperWidth = 40;
        printDate = true;
        printTable = true;
        openCashDrawer = true;
    };
    escpos : {
        codePage = "PC437";
        cutFeed = 3;
        drawerOnTime = 100;
    };
};
CONF

# render NAME DOCUMENT [bristel-render options]: what the printer must receive.
render() {
    local name=$1 document=$2
    shift 2
    "$BRISTEL_BIN/bristel-render" -c "$BRISTEL_TEST_CONFIG" --format escpos "$@" "$document" "$EXPECTED/$name" ||
        fail "bristel-render failed on $document"
}

# add_queue SERVER QUEUE PPD PRINTER-PORT [lpadmin options]
add_queue() {
    local server=$1 queue=$2 ppd=$3 port=$4
    shift 4
    on "$server" lpadmin -p "$queue" -E -v "$(printer_uri "$port")" -P "$ppd" "$@" 2>"$CUPS_ROOT/lpadmin.err" ||
        { cat "$CUPS_ROOT/lpadmin.err" >&2; fail "lpadmin could not add $queue"; }
}

# same_bytes EXPECTED-FILE RECEIVED-FILE WHAT
same_bytes() {
    cmp "$1" "$2" >/dev/null || {
        echo "expected $(wc -c <"$1") bytes, the printer received $(wc -c <"$2")" >&2
        cmp "$1" "$2" >&2 || true
        fail "$3: the printer did not receive the rendered bytes"
    }
}

# cups_type FILE: the type the scheduler's rules give FILE, with CUPS's own types and ours.
cups_type() {
    local data=$CUPS_ROOT/typing
    if [ ! -d "$data/mime" ]; then
        mkdir -p "$data/mime"
        cp /usr/share/cups/mime/*.types /usr/share/cups/mime/*.convs "$SOURCE_DIR/cups/bristel.types" "$data/mime/"
        printf 'DataDir %s\nServerBin /usr/lib/cups\n' "$data" >"$data/cups-files.conf"
    fi
    # Without our conversions nothing leads to the printer's bytes, and cupsfilter names the
    # type it found.
    cupsfilter -c "$data/cups-files.conf" -m application/vnd.bristel-escpos --list-filters "$1" 2>&1 |
        sed -n 's/.*No filter to convert from \([^ ]*\) to.*/\1/p' || true
}

# Waits a moment past the last delivery, so that a second delivery would be seen.
settle() {
    sleep 1
}

# 1. Every example document through a queue with the 58 mm PPD and two of its options set by
# lpadmin: the printer receives, in order, exactly what bristel-render writes with the same
# configuration and those options.
case_matches_render() {
    start_cupsd server
    start_printer kitchen
    add_queue server kitchen "$PPD58" "$PRINTER_PORT" -o BristelCodePage=WPC1252 -o BristelCut=Full
    local documents=("$DOCUMENTS"/*.xml) document n=0
    for document in "${documents[@]}"; do
        n=$((n + 1))
        render "$n" "$document" --codepage WPC1252 --cut full --columns 32
        [ -n "$(submit server kitchen "$document")" ] || fail "lp refused $document"
    done
    wait_for_printer_jobs kitchen "$n" 60 || fail "only $(printer_jobs kitchen | wc -l) of $n jobs arrived"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq "$n" ] || fail "$n jobs sent, ${#received[@]} received"
    for ((i = 1; i <= n; i++)); do
        same_bytes "$EXPECTED/$i" "${received[$((i - 1))]}" "$(basename "${documents[$((i - 1))]}")"
    done
    # The options did reach the bytes: WPC1252 is ESC t 16, a full cut GS V 65.
    grep -q $'\x1bt\x10' "${received[0]}" || fail "no ESC t 16 for WPC1252"
    grep -q $'\x1dVA' "${received[0]}" || fail "no full cut"
    echo "ok: $n documents printed as bristel-render renders them"
}

# 2. The printer is off when the job arrives and comes up while the backend retries: the job
# is delivered once and whole.
case_printer_off() {
    start_cupsd server
    local port
    port=$(free_port)
    add_queue server kitchen "$PPD80" "$port"
    local document=$DOCUMENTS/printFullOrderReceipt.xml
    render job "$document" "${PPD80_DEFAULTS[@]}"
    local id
    id=$(submit server kitchen "$document")
    local number=${id##*-}
    wait_until 20 grep -q "\[Job $number\] Connection error" "$CUPS_ROOT/server/log/error_log" ||
        fail "the backend never tried the switched-off printer"
    [ -z "$(printer_jobs kitchen)" ] || fail "something arrived before the printer was on"
    start_printer kitchen "$port"
    # The socket backend tries again 5 s after the first refusal, then 10 s later.
    wait_for_printer_jobs kitchen 1 40 || fail "the job never arrived after the printer came up"
    wait_until 10 job_completed server kitchen "$id" || fail "$id not completed"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq 1 ] || fail "the job arrived ${#received[@]} times"
    same_bytes "$EXPECTED/job" "${received[0]}" "printer off"
    echo "ok: delivered once, whole, after the printer came up"
}

# 3. A malformed job stops with the filter's message in the job's state and the log, nothing
# reaches the printer, the queue (set up as the README says) is not stopped, and the next job
# on it prints.
case_malformed_job() {
    start_cupsd server
    start_printer kitchen
    add_queue server kitchen "$PPD80" "$PRINTER_PORT" -o printer-error-policy=abort-job
    local bad=$CUPS_ROOT/broken-order.xml
    printf '<?xml version="1.0"?>\n<document>\n  <method name="printFullOrderReceipt"/>\n  <receipe name="x" <\n' >"$bad"
    chmod 0644 "$bad"
    local id number
    id=$(submit server kitchen "$bad")
    number=${id##*-}
    # Where the fault is, as bristel-render finds it.
    local where
    where=$({ "$BRISTEL_BIN/bristel-render" -c "$BRISTEL_TEST_CONFIG" "$bad" /dev/null 2>&1 || true; } |
        sed -n 's/^bristel-render: [^:]*:\([0-9]*\):\([0-9]*\): .*/line \1, column \2/p')
    [ -n "$where" ] || fail "bristel-render did not find the fault"
    local message="job $number (broken-order.xml): not printed: $where: "
    wait_until 20 eval 'on server lpstat -l -o kitchen | grep -qF "$message"' ||
        { on server lpstat -l -o kitchen >&2; fail "the job's state does not say what went wrong"; }
    on server lpstat -W not-completed -o kitchen | grep -q "^$id " || fail "$id did not stop"
    grep -F "$message" "$CUPS_ROOT/server/log/error_log" | grep -q "^E " ||
        fail "the error log has no ERROR line for the job"
    grep -q "\[Job $number\] Job stopped due to filter errors" "$CUPS_ROOT/server/log/error_log" ||
        fail "the scheduler did not stop the job"
    on server lpstat -p kitchen | grep -q "disabled" && fail "the queue stopped with the malformed job"
    local document=$DOCUMENTS/printFullOrderReceipt.xml next
    render next "$document" "${PPD80_DEFAULTS[@]}"
    next=$(submit server kitchen "$document")
    wait_until 20 job_completed server kitchen "$next" || fail "the next job did not print"
    settle
    local received=($(printer_jobs kitchen))
    # The backend of the stopped job may have connected; it sent nothing.
    local nonempty=()
    for file in "${received[@]}"; do
        [ -s "$file" ] && nonempty+=("$file")
    done
    [ "${#nonempty[@]}" -eq 1 ] || fail "${#nonempty[@]} jobs reached the printer, not 1"
    same_bytes "$EXPECTED/next" "${nonempty[0]}" "the job after the malformed one"
    echo "ok: the malformed job stopped with its message, the next one printed"
}

# 4. A terminal's scheduler forwards to the print server's over IPP; the server filters, the
# terminal does not, and the printer receives the rendered bytes once.
case_forward_ipp() {
    start_cupsd server
    start_cupsd terminal
    start_printer kitchen
    add_queue server kitchen "$PPD80" "$PRINTER_PORT"
    on terminal lpadmin -p kitchen -E -v "ipp://127.0.0.1:${CUPSD_PORT[server]}/printers/kitchen" ||
        fail "lpadmin could not add the forwarding queue"
    local document=$DOCUMENTS/printFullOrderReceipt.xml id
    render job "$document" "${PPD80_DEFAULTS[@]}"
    id=$(submit terminal kitchen "$document")
    wait_for_printer_jobs kitchen 1 30 || fail "the forwarded job never arrived"
    wait_until 20 job_completed terminal kitchen "$id" || fail "the terminal did not complete $id"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq 1 ] || fail "${#received[@]} deliveries, not 1"
    same_bytes "$EXPECTED/job" "${received[0]}" "forwarded job"
    [ "$(grep -c "Started filter .*bristeltoescpos" "$CUPS_ROOT/server/log/error_log")" -eq 1 ] ||
        fail "the server did not filter exactly once"
    ! grep -q "Started filter" "$CUPS_ROOT/terminal/log/error_log" || fail "the terminal filtered too"
    echo "ok: forwarded over IPP, filtered once on the server"
}

# 5. Options of the job (lp -o) and of the user (lpoptions) reach the bytes.
case_options() {
    start_cupsd server
    start_printer kitchen
    add_queue server kitchen "$PPD80" "$PRINTER_PORT"
    local document=$DOCUMENTS/printFullOrderReceipt.xml
    render default "$document" "${PPD80_DEFAULTS[@]}"
    render pc850-full "$document" "${PPD80_DEFAULTS[@]}" --codepage PC850 --cut full
    render none "$document" "${PPD80_DEFAULTS[@]}" --cut none --codepage-number 7
    cmp -s "$EXPECTED/default" "$EXPECTED/pc850-full" && fail "the options make no difference to render"
    submit server kitchen "$document" >/dev/null
    submit server kitchen "$document" -o BristelCodePage=PC850 -o BristelCut=Full >/dev/null
    on server lpoptions -p kitchen -o BristelCut=None -o BristelCodePageNumber=7 >/dev/null
    submit server kitchen "$document" >/dev/null
    wait_for_printer_jobs kitchen 3 30 || fail "the jobs did not arrive"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq 3 ] || fail "${#received[@]} deliveries, not 3"
    same_bytes "$EXPECTED/default" "${received[0]}" "the queue's defaults"
    same_bytes "$EXPECTED/pc850-full" "${received[1]}" "lp -o BristelCodePage=PC850 -o BristelCut=Full"
    same_bytes "$EXPECTED/none" "${received[2]}" "lpoptions -o BristelCut=None"
    grep -q $'\x1bt\x02' "${received[1]}" || fail "no ESC t 2 for PC850"
    grep -q $'\x1dVA' "${received[1]}" || fail "no full cut"
    grep -q $'\x1dV' "${received[2]}" && fail "a cut although the user asked for none"
    echo "ok: lp -o and lpoptions reach the bytes"
}

# 6. A queue for an ordinary office printer refuses a bristel job rather than sending it a
# receipt printer's commands.
case_other_printer() {
    start_cupsd server
    start_printer office
    local ppd=$CUPS_ROOT/office.ppd
    # A PostScript printer's PPD: no filters of its own.
    sed -e '/cupsFilter2/d' -e '/Bristel/d' -e 's/ESC\/POS 80 mm receipt printer/office printer/' "$PPD80" >"$ppd"
    add_queue server office "$ppd" "$PRINTER_PORT"
    if on server lp -d office "$DOCUMENTS/printFullOrderReceipt.xml" 2>"$CUPS_ROOT/lp.err"; then
        fail "an office printer took a bristel job"
    fi
    grep -q "Unsupported document-format \"application/vnd.bristel+xml\"" "$CUPS_ROOT/lp.err" ||
        { cat "$CUPS_ROOT/lp.err" >&2; fail "the job was not recognised as a bristel job"; }
    echo "ok: an office printer refuses a bristel job"
}

# 7. The filter on its own, as the scheduler calls it: the six or seven arguments, copies,
# the PPD's defaults under the job's options, and its failures.
case_filter_alone() {
    local filter=$BRISTEL_BIN/bristeltoescpos document=$DOCUMENTS/printFullOrderReceipt.xml status
    set +e
    "$filter" 1 alice order 1 >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err"
    status=$?
    set -e
    [ $status -ne 0 ] && grep -q "^Usage: " "$CUPS_ROOT/err" || fail "no usage message for five arguments"

    render twice "$document" --codepage PC858 --columns 32 --cut none --drawer-pin 5
    cat "$EXPECTED/twice" "$EXPECTED/twice" >"$EXPECTED/twice.2"
    BRISTEL_CONFIG=$BRISTEL_TEST_CONFIG PPD=$PPD58 "$filter" 7 alice order 2 "BristelCut=None BristelDrawerPin=5" \
        "$document" >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err" || { cat "$CUPS_ROOT/err" >&2; fail "the filter failed"; }
    same_bytes "$EXPECTED/twice.2" "$CUPS_ROOT/out" "two copies from a file"
    grep -q "^PAGE: 1 2$" "$CUPS_ROOT/err" || fail "no page accounting line"

    render stdin "$document" --codepage PC858 --columns 32 --cut partial
    BRISTEL_CONFIG=$BRISTEL_TEST_CONFIG PPD=$PPD58 "$filter" 8 alice order 1 "" <"$document" >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err" ||
        fail "the filter failed on standard input"
    same_bytes "$EXPECTED/stdin" "$CUPS_ROOT/out" "a job on standard input"

    set +e
    BRISTEL_CONFIG=$CUPS_ROOT/missing.conf "$filter" 9 alice order 1 "" "$document" >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err"
    status=$?
    set -e
    [ $status -ne 0 ] && [ ! -s "$CUPS_ROOT/out" ] || fail "a missing BRISTEL_CONFIG file went unnoticed"
    grep -q "^ERROR: .*missing.conf" "$CUPS_ROOT/err" || fail "no ERROR line for the missing configuration"

    printf '<document>\n<method name="printFullOrderReceipt"/>\n<company name="a"/>\n<receipe' >"$CUPS_ROOT/cut.xml"
    set +e
    BRISTEL_CONFIG=$BRISTEL_TEST_CONFIG "$filter" 10 alice order 1 "" "$CUPS_ROOT/cut.xml" >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err"
    status=$?
    set -e
    [ $status -ne 0 ] || fail "a malformed job ended with status 0"
    [ ! -s "$CUPS_ROOT/out" ] || fail "a malformed job sent $(wc -c <"$CUPS_ROOT/out") bytes to the printer"
    grep -q "^ERROR: job 10 (order): not printed: line 4" "$CUPS_ROOT/err" || fail "no ERROR line for the malformed job"

    BRISTEL_CONFIG=$BRISTEL_TEST_CONFIG "$filter" 11 alice order 1 "BristelCodePage=KLINGON" "$document" \
        >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err" || fail "an unusable option value stopped the job"
    grep -q "^WARNING: BristelCodePage: unusable value \"KLINGON\"" "$CUPS_ROOT/err" || fail "no WARNING for the bad value"
    # A title is the user's text: it neither breaks the message nor starts a line the scheduler
    # would obey.
    set +e
    BRISTEL_CONFIG=$BRISTEL_TEST_CONFIG "$filter" 12 alice $'Tavolo %2\nSTATE: +media-empty-error' 1 "" \
        "$CUPS_ROOT/cut.xml" >"$CUPS_ROOT/out" 2>"$CUPS_ROOT/err"
    set -e
    grep -q "^ERROR: job 12 (Tavolo %2?STATE: +media-empty-error): not printed: line 4" "$CUPS_ROOT/err" ||
        { cat "$CUPS_ROOT/err" >&2; fail "the title garbled the message"; }
    ! grep -q "^STATE:" "$CUPS_ROOT/err" || fail "a job's title set the printer's state"
    echo "ok: the filter alone"
}

# 8. The PPD files pass CUPS's own checks, with the filter where they say it is.
case_ppd_files() {
    command -v cupstestppd >/dev/null || fail "no cupstestppd (Debian package cups-client)"
    local root=$CUPS_ROOT/root
    mkdir -p "$root/usr/lib/cups/filter"
    install -m 0755 "$BRISTEL_BIN/bristeltoescpos" "$root/usr/lib/cups/filter/"
    cupstestppd -R "$root" "$PPD58" "$PPD80" "$PPD80_180" >"$CUPS_ROOT/cupstestppd.out" 2>&1 ||
        { cat "$CUPS_ROOT/cupstestppd.out" >&2; fail "cupstestppd finds fault with the PPD files"; }
    [ "$(grep -c ': PASS$' "$CUPS_ROOT/cupstestppd.out")" -eq 3 ] || fail "not all three PPD files pass"
    echo "ok: the three PPD files pass cupstestppd"
}

# 9. Every setting of the printer set with lpadmin -o on a queue (the 80 mm, 180 dpi PPD)
# reaches the bytes: the printer receives what bristel-render writes with the same options,
# and leaving out any one of them would have made a difference.  Two documents: the receipt
# opens the cash drawer, the kitchen ticket's profile has no width of its own.
case_queue_settings() {
    start_cupsd server
    start_printer kitchen
    local settings=(BristelCodePage=WPC1252 BristelCodePageNumber=7 BristelColumns=36 BristelCut=Full
        BristelCutFeed=12 BristelDrawerPin=5 BristelDrawerOnTime=120 BristelDrawerOffTime=240 BristelCodes=Raster)
    local render_options=(--codepage WPC1252 --codepage-number 7 --columns 36 --cut full --cut-feed 12
        --drawer-pin 5 --drawer-on 120 --drawer-off 240 --codes raster)
    local lpadmin_options=() setting
    for setting in "${settings[@]}"; do
        lpadmin_options+=(-o "$setting")
    done
    add_queue server kitchen "$PPD80_180" "$PRINTER_PORT" "${lpadmin_options[@]}"
    # A dish whose name the configuration's code page (PC437) writes differently.
    local receipt=$CUPS_ROOT/receipt.xml
    sed 's/name="Tagliata di manzo"/name="Caffè"/' "$DOCUMENTS/printFullOrderReceiptWithCodes.xml" >"$receipt"
    chmod 0644 "$receipt"
    local documents=("$receipt" "$DOCUMENTS/printPartialOrder.xml") i
    for i in 0 1; do
        render "all-$i" "${documents[$i]}" "${render_options[@]}"
        submit server kitchen "${documents[$i]}" >/dev/null
    done
    # Each option, left out, changes what at least one of the documents looks like.
    local n
    for ((n = 0; n < ${#settings[@]}; n++)); do
        local fewer=("${render_options[@]:0:$((2 * n))}" "${render_options[@]:$((2 * n + 2))}")
        render "fewer-0" "${documents[0]}" "${fewer[@]}"
        render "fewer-1" "${documents[1]}" "${fewer[@]}"
        if cmp -s "$EXPECTED/all-0" "$EXPECTED/fewer-0" && cmp -s "$EXPECTED/all-1" "$EXPECTED/fewer-1"; then
            fail "${settings[$n]} makes no difference to the test documents"
        fi
    done
    wait_for_printer_jobs kitchen 2 30 || fail "the jobs did not arrive"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq 2 ] || fail "${#received[@]} deliveries, not 2"
    same_bytes "$EXPECTED/all-0" "${received[0]}" "lpadmin -o with every setting (receipt)"
    same_bytes "$EXPECTED/all-1" "${received[1]}" "lpadmin -o with every setting (kitchen ticket)"
    grep -q $'\x1dVA\x0c' "${received[0]}" || fail "no full cut after a feed of 12"
    grep -q $'\x1bp\x01\x3c\x78' "${received[0]}" || fail "no drawer pulse on pin 5 for 120 ms, resting 240 ms"
    echo "ok: every printer setting set with lpadmin -o reaches the printer"
}

# 10, 12 and the configuration file: what CUPS makes of a job before and while the filter
# runs, on one queue set up as the README says (printer-error-policy=abort-job).
# - A job is a bristel job by a <method start tag near its top, whatever its root: one with
#   another root prints, one without such a tag (none, or only <methods>) is refused, and so
#   printer bytes that carry a job's text after a command are no job (isBristelJob's rule).
# - A configuration file that is there but closed to the filter stops the job with an ERROR
#   naming the file and the reason; nothing prints with defaults.
# - After either fault, the queue is not stopped and the next job prints.
case_job_faults() {
    start_cupsd server
    start_printer kitchen
    add_queue server kitchen "$PPD80" "$PRINTER_PORT" -o printer-error-policy=abort-job
    command -v ipptool >/dev/null || fail "no ipptool (Debian package cups-ipp-utils)"
    ipptool -t "ipp://127.0.0.1:${CUPSD_PORT[server]}/printers/kitchen" -d policy=abort-job \
        "$FIXTURE_DIR/error-policy.test" >"$CUPS_ROOT/ipptool.out" 2>&1 ||
        { cat "$CUPS_ROOT/ipptool.out" >&2; fail "the queue's error policy is not abort-job"; }

    local order=$CUPS_ROOT/order.xml plain=$CUPS_ROOT/plain.xml methods=$CUPS_ROOT/methods.xml
    sed -e 's/<document>/<order>/' -e 's|</document>|</order>|' "$DOCUMENTS/printFullOrderReceipt.xml" >"$order"
    grep -q '^<order>' "$order" || fail "the test document has no <order> root"
    printf '<document>\n  <receipe number="1" name="x" price="1" totalPrice="1"/>\n</document>\n' >"$plain"
    printf '<document>\n  <methods name="printFullOrderReceipt"/>\n</document>\n' >"$methods"
    local bytes=$CUPS_ROOT/bytes.escpos
    printf '\033@<document><method name="printFullOrderReceipt"/></document>\n' >"$bytes"
    chmod 0644 "$order" "$plain" "$methods" "$bytes"
    render order "$order" "${PPD80_DEFAULTS[@]}"
    local id
    id=$(submit server kitchen "$order" || true)
    [ -n "$id" ] || fail "a job whose root is <order> was refused"
    wait_until 20 job_completed server kitchen "$id" || fail "the <order> job did not print"
    for refused in "$plain" "$methods"; do
        if on server lp -d kitchen "$refused" 2>"$CUPS_ROOT/lp.err"; then
            fail "$(basename "$refused"), which has no <method start tag, was taken as a bristel job"
        fi
        grep -q "Unsupported document-format" "$CUPS_ROOT/lp.err" ||
            { cat "$CUPS_ROOT/lp.err" >&2; fail "$(basename "$refused") refused for another reason"; }
    done

    local type
    type=$(cups_type "$bytes")
    [ "$type" != application/vnd.bristel+xml ] || fail "printer bytes carrying a job's text were typed as a job"
    printf '\n\t<ticket>\n<method\tname="printFullOrderReceipt"/>\n</ticket>\n' >"$CUPS_ROOT/spaced.xml"
    type=$(cups_type "$CUPS_ROOT/spaced.xml")
    [ "$type" = application/vnd.bristel+xml ] || fail "a job after white space, its tag ended by a tab, was typed $type"

    # Closed to the filter: as root the scheduler runs it as lp, which cannot read a 0600 file
    # of root's; as anyone else it runs as that user, who cannot read a 0000 file.
    chmod 0600 "$BRISTEL_TEST_CONFIG"
    [ "$(id -u)" -eq 0 ] || chmod 0000 "$BRISTEL_TEST_CONFIG"
    local document=$DOCUMENTS/printFullOrderReceipt.xml number
    id=$(submit server kitchen "$document")
    number=${id##*-}
    local message="$BRISTEL_TEST_CONFIG (BRISTEL_CONFIG): cannot read the configuration file: Permission denied"
    wait_until 20 eval 'on server lpstat -l -o kitchen | grep -qF "$message"' ||
        { on server lpstat -l -o kitchen >&2; fail "the job's state does not name the unreadable file"; }
    grep -F "[Job $number]" "$CUPS_ROOT/server/log/error_log" | grep "^E " | grep -qF "$message" ||
        fail "the error log has no ERROR line naming the unreadable file"
    chmod 0644 "$BRISTEL_TEST_CONFIG"
    on server lpstat -p kitchen | grep -q "disabled" && fail "the queue stopped after a job failed"

    render next "$document" "${PPD80_DEFAULTS[@]}"
    id=$(submit server kitchen "$document")
    wait_until 20 job_completed server kitchen "$id" || fail "the next job did not print"
    settle
    local nonempty=() file
    for file in $(printer_jobs kitchen); do
        [ -s "$file" ] && nonempty+=("$file")
    done
    [ "${#nonempty[@]}" -eq 2 ] || fail "${#nonempty[@]} jobs reached the printer, not 2"
    same_bytes "$EXPECTED/order" "${nonempty[0]}" "the job whose root is <order>"
    same_bytes "$EXPECTED/next" "${nonempty[1]}" "the job after the unreadable configuration"
    echo "ok: typed by <method, an unreadable configuration stops its job, the queue goes on"
}

# 11. A scheduler that was running when the package arrived takes bristel jobs once it has
# reloaded (what the package's postinst asks of a running CUPS): no restart, no lost jobs.
case_types_on_reload() {
    CUPS_WITHOUT_BRISTEL_TYPES=1 start_cupsd server
    start_printer kitchen
    add_queue server kitchen "$PPD80" "$PRINTER_PORT"
    local document=$DOCUMENTS/printFullOrderReceipt.xml
    if on server lp -d kitchen "$document" >/dev/null 2>&1; then
        fail "a scheduler without the bristel types took a bristel job"
    fi
    install -m 0644 "$SOURCE_DIR/cups/bristel.types" "$SOURCE_DIR/cups/bristel.convs" "$CUPS_ROOT/server/etc/"
    kill -HUP "${CUPSD_PID[server]}"
    # The scheduler answers again once it has read everything anew.
    wait_until 20 eval 'on server lp -d kitchen "$document" >/dev/null 2>&1' ||
        fail "the scheduler still refuses bristel jobs after a reload"
    render job "$document" "${PPD80_DEFAULTS[@]}"
    wait_for_printer_jobs kitchen 1 30 || fail "the job never arrived"
    settle
    local received=($(printer_jobs kitchen))
    [ "${#received[@]}" -eq 1 ] || fail "${#received[@]} deliveries, not 1"
    same_bytes "$EXPECTED/job" "${received[0]}" "the job after the reload"
    echo "ok: a reload is enough for a running scheduler to take bristel jobs"
}

case ${1:-} in
matches-render) case_matches_render ;;
printer-off) case_printer_off ;;
malformed-job) case_malformed_job ;;
forward-ipp) case_forward_ipp ;;
options) case_options ;;
other-printer) case_other_printer ;;
filter-alone) case_filter_alone ;;
ppd-files) case_ppd_files ;;
queue-settings) case_queue_settings ;;
job-faults) case_job_faults ;;
types-on-reload) case_types_on_reload ;;
*) fail "usage: $0 matches-render|printer-off|malformed-job|forward-ipp|options|other-printer|filter-alone|ppd-files|queue-settings|job-faults|types-on-reload" ;;
esac
