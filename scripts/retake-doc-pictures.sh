#!/usr/bin/env bash
# Takes every picture in docs/ again from a build, so that none shows what the programs no
# longer do:
#   docs/receipt-preview.png  the example receipt as bristel-preview draws it, on 80 mm paper,
#                             under the sample configuration and its Italian translation;
#   docs/bristel-config.png   the configuration editor on the sample configuration
#                             (scripts/screenshot-config-editor.sh, under xvfb-run);
#   docs/printer-page.png     a printer's page of bristel-printer-app in headless Chromium,
#                             after a receipt printed and the paper ran out (the browser test
#                             tests/printerapp/printer-page.sh, which takes it).
#   scripts/retake-doc-pictures.sh [build-dir]
# `cmake --build build --target docs` runs it.  The tests DocumentationPictures.* fail while the
# receipt or the editor's paper differs from what the build draws.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)

for program in bristel-preview bristel-config bristel-printer-app bristel-render; do
    [ -x "$build/bin/$program" ] || { echo "$build/bin/$program is missing: build first" >&2; exit 1; }
done
[ -f "$build/translations/bristel_it.qm" ] || { echo "$build/translations has no bristel_it.qm: build first" >&2; exit 1; }

work=$(mktemp -d /tmp/bristel-pictures.XXXXXX)
trap 'rm -rf "$work"' EXIT

# The sample names the installed translation; the build's own stands in for it.
sed "s|/usr/share/bristel/translations/|$build/translations/|" "$root/examples/bristel.conf" >"$work/bristel.conf"
env LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen HOME="$work" \
    "$build/bin/bristel-preview" --paper 80 -c "$work/bristel.conf" \
    "$root/examples/documents/printFullOrderReceipt.xml" "$root/docs/receipt-preview.png"
echo "saved $root/docs/receipt-preview.png"

"$root/scripts/screenshot-config-editor.sh" "$build" "$root/docs/bristel-config.png"

# The time the job was sent shows on the page, so this picture changes with each taking.
env LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen SCREENSHOT="$root/docs/printer-page.png" JOB_NAME=Table-7 \
    "$root/tests/printerapp/printer-page.sh" "$build/bin" "$root" /usr/bin/python3 >/dev/null
echo "saved $root/docs/printer-page.png"
