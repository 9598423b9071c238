#!/usr/bin/env bash
# bristel-printer-app renders with the configuration file BRISTEL_CONFIG names (the service names
# the system's, /etc/bristel/bristel.conf), as the CUPS filter does: a bristel job prints the bytes
# bristel-render writes with that file, and a named file that is missing stops the server from
# starting, with a message, rather than printing every ticket with defaults; so does a mistyped
# server option.
#   printer-config.sh BIN_DIR SOURCE_DIR
# shellcheck source=server.sh
. "$(dirname "$0")/server.sh"

# A missing named file: no server.
if BRISTEL_CONFIG=$dir/missing.conf "$app" server -o log-file="$dir/missing.log" -o spool-directory="$dir/spool" \
    >"$dir/missing.out" 2>&1; then
    fail "the server started with a missing configuration file"
fi
grep -qF "$dir/missing.conf (BRISTEL_CONFIG): the configuration file does not exist" "$dir/missing.out" ||
    fail "no message names the missing configuration file: $(cat "$dir/missing.out")"

# A mistyped server option: no server, and no folders made for it.
refuses() {
    local option=$1 message=$2
    if "$app" server -o "$option" -o log-file="$dir/refused.log" -o spool-directory="$dir/refused" \
        >"$dir/refused.out" 2>&1; then
        fail "the server started with -o $option"
    fi
    grep -qxF "bristel-printer-app: $message" "$dir/refused.out" ||
        fail "-o $option is refused with: $(cat "$dir/refused.out")"
    [ ! -e "$dir/refused" ] || fail "-o $option made the spool folder before it was refused"
}
refuses server-port=80a 'server-port: "80a" is not a port (1 to 65535)'
refuses server-port=65536 'server-port: "65536" is not a port (1 to 65535)'
refuses log-level=loud 'log-level: "loud" is not one of debug, info, warn, error, fatal'
refuses max-pending-jobs=0 'max-pending-jobs: "0" is not a number of jobs (1 to 1000000)'

# The site's file sets the code page, the width and the cut; the user's file says otherwise.
site=$dir/site.conf
echo 'bristel : { escpos : { codePage = "PC850"; columns = 30; cut = "full"; }; };' >"$site"
mkdir -p "$dir/home/.bristel/conf"
echo 'bristel : { escpos : { codePage = "PC437"; cut = "none"; }; };' >"$dir/home/.bristel/conf/bristel.conf"
document=$source_dir/examples/documents/printFullOrderReceipt.xml
mkdir -p "$dir/render-home/.bristel/conf"
cp "$site" "$dir/render-home/.bristel/conf/bristel.conf"
HOME=$dir/render-home "$bin/bristel-render" -f escpos "$document" "$dir/expected.bin"
"$bin/bristel-render" -f escpos "$document" "$dir/users.bin"
cmp -s "$dir/expected.bin" "$dir/users.bin" && fail "the site's and the user's files render alike: the test proves nothing"

export BRISTEL_CONFIG=$site
start_with_printers kitchen
"$app" submit -d kitchen -o document-format=application/vnd.bristel+xml "$document" >/dev/null || fail "submit failed"
control_printer kitchen wait-printed "$(stat -c %s "$dir/expected.bin")"
cmp "$dir/expected.bin" "$dir/kitchen/printed.bin" ||
    fail "the job did not print as bristel-render renders it with the named configuration"
wait_for_jobs_to_end kitchen
stop_server
echo "$test_name: the named configuration file rendered the job, and a missing one stopped the server"
