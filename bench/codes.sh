#!/usr/bin/env bash
# What a QR code and a barcode cost, whole-process, with hyperfine: the typical job
# (receipt-20.xml) and the same job with one QR code and one barcode,
#   - through bristel-preview to PNG (the virtual printer draws both codes);
#   - through bristel-render -f escpos (the printer's own commands, to standard output).
# Three hyperfine runs of each pair; prints each run's medians and their ratio.
# Uses the programs of an existing build (default build/, made by scripts/build.sh).
#   bench/codes.sh [build-dir] [runs-per-command]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bench_build=${1:-$root/build}
runs=${2:-60}
preview="$bench_build/bin/bristel-preview"
render="$bench_build/bin/bristel-render"
for program in "$preview" "$render"; do
    if [ ! -x "$program" ]; then
        echo "no $program: build first (scripts/build.sh)" >&2
        exit 1
    fi
done
command -v hyperfine >/dev/null || { echo "hyperfine is needed (Debian hyperfine)" >&2; exit 1; }

# shellcheck source=common.sh
source "$root/bench/common.sh"

plain="$work/receipt-20.xml"
codes="$work/receipt-20-codes.xml"
sed 's|^</document>|  <qrcode data="https://trattoria-da-anna.example/pay?receipt=000123" size="4" ecc="M"/>\
  <barcode type="code128" data="T7-000123" height="60"/>\
</document>|' "$plain" >"$codes"

# hyperfine_median <hyperfine json> <index>: the command's median in milliseconds.
hyperfine_median() {
    python3 -c 'import json, sys; print("%.1f" % (json.load(open(sys.argv[1]))["results"][int(sys.argv[2])]["median"] * 1000))' "$1" "$2"
}

# compare <name> <goal> <command without codes> <command with codes>
compare() {
    local name=$1 goal=$2 without=$3 with=$4 run json
    for run in 1 2 3; do
        json="$work/$name-$run.json"
        hyperfine -N --style none --warmup 5 --runs "$runs" --export-json "$json" "$without" "$with" >/dev/null
        local a b
        a=$(hyperfine_median "$json" 0)
        b=$(hyperfine_median "$json" 1)
        printf '%-8s run %d: without %7.1f ms, with codes %7.1f ms: %s (goal <= %s)\n' "$name" "$run" "$a" "$b" \
            "$(awk -v a="$a" -v b="$b" 'BEGIN { printf "%.2fx", b / a }')" "$goal"
    done
}

echo "machine: $(nproc) cores, $(awk -F: '/model name/ { print $2; exit }' /proc/cpuinfo | sed 's/^ *//')"
echo "runs: $runs a command, three hyperfine runs"
echo
compare preview 1.2x "$preview $plain $work/plain.png" "$preview $codes $work/codes.png"
compare render 1.1x "$render -f escpos $plain" "$render -f escpos $codes"
