#!/usr/bin/env bash
# Installs the shared libraries and their development files from a build folder into a
# temporary prefix, then, as another program of the installation would:
#   - configures tests/consumer against that prefix only (find_package(Bristel)), builds it and
#     runs it: it reads its configuration, logs, and runs a statement on the test server;
#   - compiles tests/consumer/pkg-config/main.cpp with what pkg-config says for the same
#     prefix, and runs it.
#   scripts/test-consumer.sh <build-dir> <source-dir> [compiler flags...]
# BRISTEL_TEST_PGRECORD names the file in which the bristel_postgres fixture records the
# socket folder of the test server (BRISTEL_TEST_PGHOST, when set, names the folder itself);
# the compiler flags are those the libraries were built with (sanitizers).
set -euo pipefail
build=$(realpath "${1:?build folder}")
source=$(realpath "${2:?source folder}")
shift 2
flags="$*"
host=${BRISTEL_TEST_PGHOST:-$("$source/tests/fixtures/private-dir.sh" path \
    "${BRISTEL_TEST_PGRECORD:?file naming the socket folder of the test database server}")}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
fail() {
    echo "consumer: $*"
    exit 1
}

for component in libraries development; do
    cmake --install "$build" --prefix "$prefix" --component "$component" >"$work/install.log" ||
        { cat "$work/install.log"; fail "install of $component failed"; }
done
for header in config/BRConfiguration.h config/Config.h config/SyncSingleton.h config/bristel_config_export.h \
    log/Logger.h log/HLogManager.h support/DatabaseManager.h support/bristel_database_export.h support/HLibrary.h \
    support/SleepThread.h support/bristel_support_widgets_export.h; do
    [ -f "$prefix/include/bristel/$header" ] || fail "not installed: include/bristel/$header"
done
# (Text files only: a library built with debug information names its sources.)
if grep -rlIF -e "$build" -e "$source" "$prefix"; then
    fail "the installed files above name the build or source folder"
fi

mkdir -p "$work/home/.bristel/conf" "$work/logs"
# The user's own file points at a database that does not exist: only the file given to the
# program may be used.
printf 'bristel : {\n  db : {\n    dbname = no_such_database;\n  };\n};\n' >"$work/home/.bristel/conf/bristel.conf"
cat >"$work/consumer.conf" <<CONF
bristel : {
  consumer : {
    name = bristel consumer;
  };
  logger : {
    level = debug;
    basedir = $work/logs;
    filename = consumer.log;
    type = overwrite;
  };
  db : {
    dbname = bristel_test;
    username = bristel;
    hostname = $host;
  };
};
CONF
export HOME="$work/home" LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen

# CMake: only the installed prefix is searched, never the package registry or the build tree.
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
cmake -S "$source/tests/consumer" -B "$work/build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF -DCMAKE_CXX_FLAGS="$flags" \
    >"$work/configure.log" 2>&1 || { cat "$work/configure.log"; fail "configure failed"; }
bristel_dir=$(sed -n 's/^Bristel_DIR:PATH=//p' "$work/build/CMakeCache.txt")
[[ "$bristel_dir" == "$prefix"/* ]] || fail "find_package(Bristel) took $bristel_dir"
cmake --build "$work/build" >"$work/build.log" 2>&1 || { cat "$work/build.log"; fail "build failed"; }
consumer=$work/build/bristel-consumer
loaded=$(ldd "$consumer" | grep libbristel || true)
[ "$(grep -c "=> $prefix/" <<<"$loaded")" -eq 4 ] || { echo "$loaded"; fail "not the four installed libraries"; }

output=$("$consumer" "$work/consumer.conf") || { echo "$output"; fail "bristel-consumer failed"; }
[ "$output" = "bristel consumer: 42" ] || fail "unexpected output: $output"
grep -q "INFO: bristel consumer started" "$work/logs/consumer.log" || fail "the program's line is not in the log"
grep -q "DEBUG: Query called from method executeSelectQuery(...): select 6 \* 7" "$work/logs/consumer.log" ||
    { cat "$work/logs/consumer.log"; fail "DatabaseManager did not log to the program's logger"; }

# pkg-config, for the make-based world.
pcdir=$(dirname "$(find "$prefix" -name libbristel-support-widgets.pc)")
pc_flags=$(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs libbristel-support-widgets) ||
    fail "pkg-config cannot resolve libbristel-support-widgets"
# A program that only wants the database is given no widgets.
database_flags=$(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs libbristel-database) ||
    fail "pkg-config cannot resolve libbristel-database"
if grep -qE 'Qt6?(Gui|Widgets|DBus)' <<<"$database_flags"; then
    fail "libbristel-database brings widgets: $database_flags"
fi
read -ra pc_words <<<"$pc_flags"
read -ra extra <<<"$flags"
libdir=$(PKG_CONFIG_PATH="$pcdir" pkg-config --variable=libdir libbristel-support-widgets)
# -fPIC as the README says: Debian's Qt refuses code built as a position-independent executable.
"${CXX:-c++}" -std=c++17 -fPIC "${extra[@]}" -o "$work/bristel-pkg-config" "$source/tests/consumer/pkg-config/main.cpp" \
    "${pc_words[@]}" || fail "the program does not compile with pkg-config's flags"
output=$(LD_LIBRARY_PATH="$libdir" "$work/bristel-pkg-config" "$work/consumer.conf")
[ "$output" = "bristel consumer 2.35" ] || fail "unexpected output of the pkg-config program: $output"
echo "consumer ok: CMake package and pkg-config files of $prefix"
