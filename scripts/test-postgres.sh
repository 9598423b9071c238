#!/usr/bin/env bash
# Starts or stops a private PostgreSQL server for the database tests.
#
#   test-postgres.sh start <record>   make a fresh folder under /tmp for the server
#                                     (tests/fixtures/private-dir.sh), write its path into the
#                                     file <record>, initialise a cluster in <folder>/data, start
#                                     it listening only on a Unix socket in <folder>, and create
#                                     the test database
#   test-postgres.sh stop <record>    stop that server and remove the folder and <record>
#
# Clients connect with host=<folder>, user "bristel", database "bristel_test" (trust
# authentication on the socket).  As root the server runs as the "postgres" user, which
# owns the folder; the checkout and the build tree may be anywhere, even in a folder that
# user cannot enter.  No system cluster is ever touched.
set -euo pipefail

usage() {
    echo "usage: $0 start|stop <record>" >&2
    exit 2
}

[ $# -eq 2 ] || usage
action=$1
record=$2
private_dir=$(cd "$(dirname "$0")/.." && pwd)/tests/fixtures/private-dir.sh
case "$record" in
/*) ;;
*) record=$PWD/$record ;;
esac
# The server's user may not be able to enter the folder the tests run in.
cd /

bindir=${PG_BINDIR:-}
if [ -z "$bindir" ]; then
    for candidate in /usr/lib/postgresql/*/bin; do
        [ -x "$candidate/initdb" ] && bindir=$candidate
    done
fi
if [ -z "$bindir" ] || [ ! -x "$bindir/initdb" ]; then
    echo "test-postgres: no PostgreSQL server binaries found (set PG_BINDIR)" >&2
    exit 1
fi

port=${BRISTEL_TEST_PGPORT:-5432}
dbuser=bristel
dbname=bristel_test

as_owner() {
    if [ "$(id -u)" -eq 0 ]; then
        runuser -u postgres -- "$@"
    else
        "$@"
    fi
}

stop_server() {
    if [ -f "$dir/data/postmaster.pid" ]; then
        as_owner "$bindir/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null || true
    fi
}

# The server of an earlier run that was interrupted before its stop: stopped and removed.
stop_recorded() {
    if dir=$("$private_dir" path "$record" 2>/dev/null); then
        stop_server
    fi
    "$private_dir" remove "$record"
}

case "$action" in
start)
    stop_recorded
    if [ "$(id -u)" -eq 0 ]; then
        dir=$("$private_dir" make "$record" pg postgres)
    else
        dir=$("$private_dir" make "$record" pg)
    fi
    socket="$dir/.s.PGSQL.$port"
    if [ ${#socket} -gt 100 ]; then
        echo "test-postgres: socket path too long for a Unix socket: $socket" >&2
        exit 1
    fi
    as_owner "$bindir/initdb" -D "$dir/data" -U "$dbuser" -A trust -E UTF8 --no-locale >"$dir/initdb.log" 2>&1 ||
        { cat "$dir/initdb.log" >&2; exit 1; }
    as_owner "$bindir/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 \
        -o "-c listen_addresses='' -c unix_socket_directories='$dir' -p $port -c fsync=off" start >/dev/null ||
        { cat "$dir/server.log" >&2; exit 1; }
    "$bindir/createdb" -h "$dir" -p "$port" -U "$dbuser" "$dbname"
    echo "test-postgres: server running, socket in $dir, database $dbname"
    ;;
stop)
    stop_recorded
    ;;
*)
    usage
    ;;
esac
