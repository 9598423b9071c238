#!/usr/bin/env bash
# Starts or stops a private PostgreSQL server for the database tests.
#
#   test-postgres.sh start <dir>   initialise a cluster in <dir>/data, start it listening
#                                  only on a Unix socket in <dir>, create the test database
#   test-postgres.sh stop <dir>    stop that server and remove <dir>
#
# Clients connect with host=<dir>, user "bristel", database "bristel_test" (trust
# authentication on the socket).  As root the server runs as the "postgres" user.
# No system cluster is ever touched.
set -euo pipefail

usage() {
    echo "usage: $0 start|stop <dir>" >&2
    exit 2
}

[ $# -eq 2 ] || usage
action=$1
dir=$2

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

case "$action" in
start)
    mkdir -p "$dir"
    dir=$(cd "$dir" && pwd)
    # A server left over from an interrupted run is stopped and thrown away.
    stop_server
    rm -rf "$dir/data" "$dir/server.log"
    socket="$dir/.s.PGSQL.$port"
    if [ ${#socket} -gt 100 ]; then
        echo "test-postgres: socket path too long for a Unix socket: $socket" >&2
        exit 1
    fi
    if [ "$(id -u)" -eq 0 ]; then
        chown postgres: "$dir"
        if ! runuser -u postgres -- test -w "$dir"; then
            echo "test-postgres: user postgres cannot reach $dir (check the parent folders' permissions)" >&2
            exit 1
        fi
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
    if [ -d "$dir" ]; then
        dir=$(cd "$dir" && pwd)
        stop_server
        rm -rf "$dir"
    fi
    ;;
*)
    usage
    ;;
esac
