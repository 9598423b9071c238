#!/usr/bin/env bash
# bristel-printer-app's page of a printer, in a real browser: after a receipt has printed and
# the paper has run out, headless Chromium shows "Out of paper", the job under its name (as
# text, though the name is markup) and the picture of its paper, which is byte for byte what
# bristel-preview draws for the bytes the printer received.
#   printer-page.sh BIN_DIR SOURCE_DIR PYTHON3
# With SCREENSHOT=FILE in the environment, a picture of the page is saved there, and JOB_NAME
# names the job instead of the markup.
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"
python=${3:?usage: printer-page.sh BIN_DIR SOURCE_DIR PYTHON3}

start_with_printers kitchen

# A receipt, under a name a client could send: markup that must stay text.
job_name=${JOB_NAME:-'<script>window.injected=1</script>'}
document=$source_dir/examples/documents/printFullOrderReceipt.xml
"$bin/bristel-render" -f escpos "$document" "$dir/rendered.bin"
job=$("$app" submit -d kitchen -o document-format=application/vnd.bristel+xml -o "job-name=$job_name" \
    "$document") || fail "submit failed"
job=${job##*-}
control_printer kitchen wait-printed "$(stat -c %s "$dir/rendered.bin")"
cmp "$dir/rendered.bin" "$dir/kitchen/printed.bin" || fail "the receipt did not print as rendered"
# The picture the page must show: bristel-preview's, for the bytes the printer received.
"$bin/bristel-preview" --paper 80 --input escpos "$dir/kitchen/printed.bin" "$dir/expected.png" ||
    fail "bristel-preview failed"

# The paper runs out; a bounded number of looks until the server has seen it.
control_printer kitchen state paper-out
for try in $(seq 1 60); do
    "$app" status >"$dir/status.out" && grep -qxF "kitchen: Out of paper" "$dir/status.out" && break
    [ "$try" -lt 60 ] || fail "the server does not see the paper out: $(cat "$dir/status.out")"
    sleep 0.5
done

mkdir "$dir/browser"
"$python" "$source_dir/tests/printerapp/printer-page.py" "http://127.0.0.1:$port/bristel/printer?name=kitchen" \
    "$job" "$job_name" "Out of paper" "$dir/expected.png" "$dir/browser" ${SCREENSHOT:+"$SCREENSHOT"} ||
    fail "the printer's page in the browser"

# The page is linked from the status page and from libpappl's page of the printer.
page_of() { "$python" -c 'import sys, urllib.request; sys.stdout.write(urllib.request.urlopen(sys.argv[1]).read().decode())' \
    "http://127.0.0.1:$port$1"; }
page_of /bristel/status | grep -qF 'href="/bristel/printer?name=kitchen"' ||
    fail "the status page does not link the printer's page"
for try in $(seq 1 60); do
    page_of /kitchen | grep -qF 'href="/bristel/printer?name=kitchen"' && break
    [ "$try" -lt 60 ] || fail "libpappl's page of the printer does not link the printer's page"
    sleep 0.5
done

# A printer's page is found by its name, whatever libpappl makes of the name in its paths, and
# only by its name.
add_printer "2nd bar" bristel_58mm kitchen
page_of "/bristel/printer?name=2nd%20bar" | grep -qF '2nd bar' || fail "the page of the printer \"2nd bar\" is not found"
page_of "/bristel/printer?name=KITCHEN" >/dev/null 2>&1 && fail "a page is served for a printer no one called KITCHEN"

control_printer kitchen state ready
wait_for_jobs_to_end kitchen
stop_server
echo "printer-page: the printer's page shows its status, its job and the picture of its paper"
