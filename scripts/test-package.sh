#!/usr/bin/env bash
# Builds the .deb from a build folder, unpacks it with dpkg -x into a temporary root, and
# checks what it installs: the programs, the translation, the manual pages, the examples; then
# compiles the sample receipt with the installed compiler and translation.
#   scripts/test-package.sh <build-dir> <source-dir>
set -euo pipefail
build=$(realpath "${1:?build folder}")
source=$(realpath "${2:?source folder}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

(cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/package" >"$work/cpack.log" 2>&1) ||
    { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/package/*.deb)
dpkg-deb -f "$deb" Depends | grep -q "libqt6core6" || { echo "the package names no Qt runtime"; exit 1; }
dpkg -x "$deb" "$work/root"

for path in usr/bin/bristel-compile usr/bin/bristel-config usr/share/bristel/translations/bristel_it.qm \
    usr/share/man/man1/bristel-compile.1 usr/share/man/man1/bristel-config.1 \
    usr/share/doc/bristel/README.md usr/share/doc/bristel/examples/bristel.conf \
    usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml; do
    [ -e "$work/root/$path" ] || { echo "missing from the package: /$path"; exit 1; }
done

mkdir -p "$work/home/.bristel/conf"
sed "s|/usr/share/bristel/translations/|$work/root/usr/share/bristel/translations/|" \
    "$work/root/usr/share/doc/bristel/examples/bristel.conf" >"$work/home/.bristel/conf/bristel.conf"
HOME="$work/home" "$work/root/usr/bin/bristel-compile" \
    "$work/root/usr/share/doc/bristel/examples/documents/printFullOrderReceipt.xml" "$work/output.txt"
cmp "$work/output.txt" "$source/examples/documents/printFullOrderReceipt.out"
echo "package ok: $(basename "$deb")"
