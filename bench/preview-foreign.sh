#!/usr/bin/env bash
# Peak memory and wall time of bristel-preview on ESC/POS files written by other programs:
#   - 200,000 drawer pulses (1 MB) and 333,000 selections of a code table the printer lacks
#     (1 MB), none of them feeding paper, drawn as PNG and SVG;
#   - a foreign receipt (text, QR codes, barcodes, graphics, bytes of no command) repeated to
#     1 MB and to 10 MB, and 10 MB of plain text lines, with --split.
# Uses the programs of an existing build (default build/, made by scripts/build.sh).
#   bench/preview-foreign.sh [build-dir]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
preview="$build/bin/bristel-preview"
if [ ! -x "$preview" ]; then
    echo "no $preview: build first (scripts/build.sh)" >&2
    exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work" LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR="$work"

perl -e 'print "\x1b@", "\x1bp\x00\x19\xfa" x 200000, "ok\n"' >"$work/pulses.escpos"
perl -e 'print "\x1bt\x63" x 333000' >"$work/tables.escpos"
# A foreign receipt repeated to 1 MB, and that to 10 MB.
"$root/bench/make-foreign-receipt.sh" 1000000 >"$work/foreign-1mb.escpos"
perl -e '
    local $/; my $one = <STDIN>; print $one x 10;' <"$work/foreign-1mb.escpos" >"$work/foreign-10mb.escpos"
perl -e 'print sprintf("%5d Piatto del giorno con contorno    12.50\n", $_ % 100000) x 1 for 1 .. 220000' \
    >"$work/text-10mb.escpos"

# Wall time in seconds and peak resident memory in MiB of one run.
measure() {
    /usr/bin/time -f '%e %M' "$@" 2>&1 >/dev/null | tail -n 1 | awk '{ printf "%8.2f s %8.1f MiB", $1, $2 / 1024 }'
}

echo "machine: $(nproc) cores, $(awk -F: '/model name/ { print $2; exit }' /proc/cpuinfo | sed 's/^ *//')"
printf '%-44s %10s %12s\n' "input" "wall" "peak RSS"
for name in pulses tables; do
    for suffix in png svg; do
        printf '%-44s %s\n' "$name.escpos ($(stat -c %s "$work/$name.escpos") bytes) -> .$suffix" \
            "$(measure "$preview" "$work/$name.escpos" "$work/$name.$suffix")"
    done
done
for name in foreign-1mb foreign-10mb text-10mb; do
    mkdir -p "$work/$name"
    for suffix in png svg; do
        printf '%-44s %s\n' "$name.escpos --split -> .$suffix" \
            "$(measure "$preview" --split "$work/$name.escpos" "$work/$name/out.$suffix")"
    done
done
echo "target: every input up to 10 MB in at most 128 MiB, time linear in its size"
