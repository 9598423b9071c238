#!/usr/bin/env bash
# Builds the .deb packages from a build folder and checks the split: bristel (the programs),
# libbristel<SONAME> (the shared libraries) and libbristel-dev (headers, CMake and pkg-config
# files), each holding only its own kind of file and depending on the right others.  Unpacks
# all three with dpkg -x into a temporary root and checks what they install: the programs, the
# translation, the manual pages, the examples, the libraries and their development files;
# then compiles the sample receipt with the installed compiler and translation.  Runs lintian
# on the three packages: any error, or any warning the packages do not override with a reason,
# fails.  Runs the programs' maintainer scripts against a stand-in for invoke-rc.d: a running
# CUPS is told to read the new MIME types and filter, a stopped one is left alone.  Checks the
# printer application's service: its unit passes systemd-analyze verify, the package's scripts
# make its folders lp's alone and never enable or start it on a first installation, and a purge
# forgets it.
#   scripts/test-package.sh <build-dir> <source-dir>
set -euo pipefail
build=$(realpath "${1:?build folder}")
source=$(realpath "${2:?source folder}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*"
    exit 1
}

(cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/package" >"$work/cpack.log" 2>&1) ||
    { cat "$work/cpack.log"; exit 1; }
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
programs=$(ls "$work"/package/bristel_*.deb)
libraries=$(ls "$work"/package/libbristel[0-9]*_*.deb)
soversion=$(basename "$libraries" | sed 's/^libbristel\([0-9]*\)_.*/\1/')
development=$(ls "$work"/package/libbristel-dev_*.deb)
[ "$(find "$work/package" -maxdepth 1 -name '*.deb' | wc -l)" -eq 3 ] || fail "not three packages: $(ls "$work"/package)"

depends() { dpkg-deb -f "$1" Depends; }
depends "$programs" | grep -q "libqt6core6" || fail "bristel names no Qt runtime"
depends "$programs" | grep -qF "libbristel${soversion} (= $version)" || fail "bristel does not depend on libbristel${soversion}"
depends "$libraries" | grep -q "libqt6sql6" || fail "libbristel${soversion} names no Qt SQL runtime"
depends "$development" | grep -qF "libbristel${soversion} (= $version)" ||
    fail "libbristel-dev does not depend on libbristel${soversion}"
depends "$development" | grep -q "qt6-base-dev" || fail "libbristel-dev does not depend on the Qt headers"
# Rendering needs no CUPS: the scheduler is a suggestion only (the printer application's
# libpappl brings the CUPS client library, libcups2, which is no scheduler).
dpkg-deb -f "$programs" Suggests | grep -q "cups-daemon" || fail "bristel does not suggest cups-daemon"
depends "$programs" | tr ',' '\n' | grep -qE "^ *cups(-daemon|-client)?( |$)" && fail "bristel depends on CUPS"
# The preview's fonts are built into it: no font package at run time, their licences shipped.
depends "$programs" | grep -qE "xfonts-|fonts-" && fail "bristel depends on a font package"
for library in database support-widgets; do
    dpkg-deb -I "$libraries" shlibs | grep -q "^libbristel-$library ${soversion} libbristel${soversion}" ||
        fail "libbristel${soversion} has no shlibs entry for libbristel-$library"
done

# Each package holds its own kind of file only (directories aside), and the files Debian asks
# of every package: its copyright, changelog and lintian overrides.
files() {
    dpkg-deb -c "$1" | grep -v '^d' | awk '{ print $6 }' | sed 's|^\./||' |
        grep -vE '^usr/share/doc/[^/]+/(copyright|changelog\.gz)$|^usr/share/lintian/overrides/[^/]+$'
}
stray=$(files "$libraries" | grep -vE "^usr/lib/(.*/)?libbristel-[a-z-]+\.so\.${soversion}(\.[0-9.]+)?$" || true)
[ -z "$stray" ] || fail "libbristel${soversion} holds: $stray"
stray=$(files "$development" |
    grep -vE '^usr/include/bristel/|^usr/lib/(.*/)?(cmake/Bristel/|pkgconfig/libbristel-|libbristel-[a-z-]+\.so$)' || true)
[ -z "$stray" ] || fail "libbristel-dev holds: $stray"
stray=$(files "$programs" | grep -E '^usr/include/|/(cmake|pkgconfig)/|\.so(\.[0-9]+)*$' || true)
[ -z "$stray" ] || fail "bristel holds: $stray"

for deb in "$programs" "$libraries" "$development"; do
    dpkg -x "$deb" "$work/root"
done
for path in usr/bin/bristel-compile usr/bin/bristel-config usr/share/bristel/translations/bristel_it.qm \
    usr/share/man/man1/bristel-compile.1.gz usr/share/man/man1/bristel-config.1.gz \
    usr/share/doc/bristel/README.md usr/share/doc/bristel/examples/bristel.conf \
    usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml \
    usr/include/bristel/config/BRConfiguration.h usr/include/bristel/support/DatabaseManager.h \
    usr/bin/bristel-preview usr/share/man/man1/bristel-preview.1.gz \
    usr/bin/bristel-render usr/share/man/man1/bristel-render.1.gz \
    usr/lib/cups/filter/bristeltoescpos usr/share/man/man8/bristeltoescpos.8.gz \
    usr/share/cups/mime/bristel.types usr/share/cups/mime/bristel.convs \
    usr/share/ppd/bristel/bristel-escpos-58mm.ppd usr/share/ppd/bristel/bristel-escpos-80mm.ppd \
    usr/share/ppd/bristel/bristel-escpos-80mm-180dpi.ppd etc/bristel/bristel.conf \
    usr/bin/bristel-printer-app usr/share/man/man8/bristel-printer-app.8.gz \
    lib/systemd/system/bristel-printer-app.service usr/lib/tmpfiles.d/bristel-printer-app.conf \
    usr/share/doc/bristel/copyright usr/share/doc/bristel/changelog.gz \
    "usr/share/doc/libbristel${soversion}/copyright" usr/share/doc/libbristel-dev/changelog.gz; do
    [ -e "$work/root/$path" ] || fail "missing from the packages: /$path"
done
for licence in "SIL OPEN FONT LICENSE Version 1.1" "License: bitstream-vera"; do
    grep -qF "$licence" "$work/root/usr/share/doc/bristel/copyright" ||
        fail "the copyright file lacks the licence of a font built into bristel-preview: $licence"
done
# The package is named after the SONAME of the libraries it holds, as Debian names them.
for library in config config-widgets log database support-widgets; do
    file=$(find "$work/root/usr/lib" -name "libbristel-$library.so.$soversion")
    [ -n "$file" ] || fail "missing from the packages: libbristel-$library.so.$soversion"
    soname=$(readelf -d "$file" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
    [ "$soname" = "libbristel-$library.so.$soversion" ] ||
        fail "libbristel${soversion} holds libbristel-$library with the SONAME $soname"
done
config=$(find "$work/root/usr/lib" -name BristelConfig.cmake)
[ -n "$config" ] || fail "missing from the packages: BristelConfig.cmake"
grep -q '^prefix=/usr$' "$(find "$work/root/usr/lib" -name libbristel-database.pc)" ||
    fail "libbristel-database.pc does not name /usr as its prefix"

mkdir -p "$work/home/.bristel/conf"
sed "s|/usr/share/bristel/translations/|$work/root/usr/share/bristel/translations/|" \
    "$work/root/usr/share/doc/bristel/examples/bristel.conf" >"$work/home/.bristel/conf/bristel.conf"
HOME="$work/home" "$work/root/usr/bin/bristel-compile" \
    "$work/root/usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml" "$work/output.txt"
cmp "$work/output.txt" "$source/examples/documents/printFullOrderReceipt.out"
# The installed preview draws the same receipt with the fonts of the packages it depends on.
HOME="$work/home" QT_QPA_PLATFORM=offscreen "$work/root/usr/bin/bristel-preview" \
    "$work/root/usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml" "$work/receipt.png"
head -c 8 "$work/receipt.png" | cmp -s - <(printf '\211PNG\r\n\032\n') || fail "bristel-preview drew no PNG"

# The system-wide configuration is a conffile, readable by the scheduler's user, and the
# installed filter reads it without a complaint.
dpkg-deb --ctrl-tarfile "$programs" | tar -xO ./conffiles | grep -qx /etc/bristel/bristel.conf ||
    fail "/etc/bristel/bristel.conf is not a conffile"
[ "$(stat -c %a "$work/root/etc/bristel/bristel.conf")" = 644 ] || fail "/etc/bristel/bristel.conf is not 0644"
BRISTEL_CONFIG="$work/root/etc/bristel/bristel.conf" "$work/root/usr/lib/cups/filter/bristeltoescpos" 1 lp order 1 "" \
    "$work/root/usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml" >"$work/filter.out" 2>"$work/filter.err" ||
    { cat "$work/filter.err"; fail "the installed filter failed with the installed configuration"; }
! grep -q "^WARNING\|^ERROR" "$work/filter.err" || { cat "$work/filter.err"; fail "the installed configuration has faults"; }
# The libraries' package tells ldconfig through its trigger.
dpkg-deb --ctrl-tarfile "$libraries" | tar -xO ./triggers | grep -qx "activate-noawait ldconfig" ||
    fail "libbristel${soversion} has no ldconfig trigger"

# The maintainer scripts, against a stand-in invoke-rc.d that says whether CUPS runs and
# writes down what it is asked.
mkdir -p "$work/control" "$work/stand-in"
dpkg-deb -e "$programs" "$work/control"
cat >"$work/stand-in/invoke-rc.d" <<'STANDIN'
#!/bin/sh
echo "$*" >>"$STANDIN_LOG"
case "$*" in
*status*) [ "$CUPS_RUNS" = yes ] ;;
esac
STANDIN
chmod +x "$work/stand-in/invoke-rc.d"
# Stand-ins for the helpers of the printer application's service, which write down what they
# are asked, so that no script touches the machine's own systemd.  deb-systemd-helper says the
# service was enabled when SERVICE_WAS_ENABLED is yes, as on the upgrade of a site that did.
for helper in deb-systemd-helper deb-systemd-invoke systemctl systemd-tmpfiles; do
    cat >"$work/stand-in/$helper" <<STANDIN
#!/bin/sh
echo "$helper \$*" >>"\$STANDIN_LOG"
case "\$*" in
*was-enabled*) [ "\$SERVICE_WAS_ENABLED" = yes ] ;;
*debian-installed*) [ "\$SERVICE_WAS_ENABLED" = yes ] ;;
esac
STANDIN
    chmod +x "$work/stand-in/$helper"
done
run_script() { # run_script SCRIPT ARGUMENT CUPS-RUNS: what it asked invoke-rc.d, one line each
    : >"$work/invoked"
    PATH="$work/stand-in:$PATH" STANDIN_LOG="$work/invoked" CUPS_RUNS=$3 DPKG_ROOT="$work/dpkg-root" \
        sh "$work/control/$1" "$2" || fail "$1 $2 failed"
    grep -v status "$work/invoked" | grep -vE '^(deb-systemd-|systemctl |systemd-tmpfiles )' || true
}
[ "$(run_script postinst configure yes)" = "cups force-reload" ] ||
    fail "postinst configure does not reload a running CUPS"
[ -z "$(run_script postinst configure no)" ] || fail "postinst configure touches a stopped CUPS"
[ "$(run_script postrm remove yes)" = "cups force-reload" ] || fail "postrm remove does not reload a running CUPS"
[ -z "$(run_script postrm purge yes)" ] || fail "postrm purge reloads CUPS a second time"

# The printer application's service: where Debian 12 keeps the units of packages, checked by
# systemd itself against the packaged program (the machine's own units stand in for the rest of
# a system), running the server as user lp with the folders the package makes.
unit=lib/systemd/system/bristel-printer-app.service
dpkg-deb -c "$programs" | awk '{ print $6 }' | grep -x "./$unit" >/dev/null || fail "bristel does not hold /$unit"
mkdir -p "$work/verify/lib/systemd/system" "$work/verify/usr/bin" "$work/verify/usr/lib/systemd"
cp "$work/root/$unit" "$work/verify/$unit"
cp "$work/root/usr/bin/bristel-printer-app" "$work/verify/usr/bin/"
ln -s /lib/systemd/system "$work/verify/usr/lib/systemd/system"
# It reports a key it does not know, or a value it cannot use, and goes on with status 0.
if ! systemd-analyze verify --man=no --root="$work/verify" "$work/verify/$unit" >"$work/verify.out" 2>&1 ||
    [ -s "$work/verify.out" ]; then
    cat "$work/verify.out"
    fail "systemd-analyze finds fault with /$unit"
fi
unit_says() { grep -qx "$1" "$work/root/$unit" || fail "/$unit does not say $1"; }
unit_says "User=lp"
unit_says "Group=lp"
unit_says "Restart=on-failure"
unit_says "ExecStart=/usr/bin/bristel-printer-app server -o spool-directory=/var/spool/bristel-printer-app -o state-file=/var/lib/bristel-printer-app/state -o log-file=syslog -o server-port=8000 -o listen-hostname=\*"
# The folders, as systemd-tmpfiles makes them from the package's entry at boot and in the
# postinst: lp's, mode 0700.  Only root can give a folder to lp.
if [ "$(id -u)" -eq 0 ]; then
    mkdir -p "$work/tmpfiles/etc" "$work/tmpfiles/usr/lib/tmpfiles.d"
    cp /etc/passwd /etc/group "$work/tmpfiles/etc/"
    cp "$work/root/usr/lib/tmpfiles.d/bristel-printer-app.conf" "$work/tmpfiles/usr/lib/tmpfiles.d/"
    systemd-tmpfiles --root="$work/tmpfiles" --create bristel-printer-app.conf ||
        fail "systemd-tmpfiles refuses the package's entry"
    for folder in var/spool/bristel-printer-app var/lib/bristel-printer-app; do
        [ "$(stat -c '%U:%G %a' "$work/tmpfiles/$folder")" = "lp:lp 700" ] ||
            fail "/$folder is not lp's with mode 0700: $(stat -c '%U:%G %a' "$work/tmpfiles/$folder")"
    done
fi

service_calls() { # service_calls SCRIPT ARGUMENTS WAS-ENABLED: the calls of the helpers
    : >"$work/invoked"
    PATH="$work/stand-in:$PATH" STANDIN_LOG="$work/invoked" CUPS_RUNS=no SERVICE_WAS_ENABLED=$3 \
        DPKG_ROOT="$work/dpkg-root" sh "$work/control/$1" $2 || fail "$1 $2 failed"
    grep -E '^(deb-systemd-|systemctl |systemd-tmpfiles )' "$work/invoked" || true
}
# The printer application's service.
calls=$(service_calls postinst configure no)
grep -qx "systemd-tmpfiles --root=$work/dpkg-root --create bristel-printer-app.conf" <<<"$calls" ||
    fail "postinst configure does not make the service's folders: $calls"
grep -E " (enable|start|restart|try-restart) " <<<"$calls" && fail "postinst enables or starts the service on installation"
grep -qx "deb-systemd-helper enable bristel-printer-app.service" <<<"$(service_calls postinst "configure 1.0.0" yes)" ||
    fail "an upgrade does not keep the service enabled"
mkdir -p "$work/dpkg-root/var/lib/bristel-printer-app" "$work/dpkg-root/var/spool/bristel-printer-app"
grep -qx "deb-systemd-helper purge bristel-printer-app.service" <<<"$(service_calls postrm purge no)" ||
    fail "a purge does not forget the service"
[ ! -e "$work/dpkg-root/var/lib/bristel-printer-app" ] && [ ! -e "$work/dpkg-root/var/spool/bristel-printer-app" ] ||
    fail "a purge leaves the service's printers or jobs behind"

# Debian's own checks: no error, and every warning overridden with its reason in the package.
lintian --fail-on error,warning "$programs" "$libraries" "$development" >"$work/lintian.out" 2>&1 ||
    { cat "$work/lintian.out"; fail "lintian finds fault with the packages"; }
! grep -q "^[EW]: " "$work/lintian.out" || { cat "$work/lintian.out"; fail "lintian finds fault with the packages"; }
echo "packages ok: $(cd "$work/package" && echo *.deb)"
