#!/usr/bin/env bash
# The compiler and the renderer stay lean: QtCore, Core5Compat and QtXml, nothing of the
# widgets, the painter, SVG, SQL or CUPS.
#   check-linkage.sh <program>...
set -euo pipefail
status=0
for program in "$@"; do
    needed=$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
    [ -n "$needed" ] || { echo "$program: no shared libraries listed"; status=1; continue; }
    qt=$(grep '^libQt6' <<<"$needed" | sort | tr '\n' ' ')
    if [ "$qt" != "libQt6Core.so.6 libQt6Core5Compat.so.6 libQt6Xml.so.6 " ]; then
        echo "$(basename "$program") links: $qt"
        status=1
    fi
    if grep -qE 'libcups|libpq|libGL|libX' <<<"$needed"; then
        echo "$(basename "$program") links: $(grep -E 'libcups|libpq|libGL|libX' <<<"$needed" | tr '\n' ' ')"
        status=1
    fi
done
exit $status
