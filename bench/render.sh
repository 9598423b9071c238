#!/usr/bin/env bash
# Whole-process timings of bristel-render writing ESC/POS, against the same floors as
# bench/compare.sh, in one run:
#   - the typical job (receipt-20.xml) against an empty QCoreApplication program, written the
#     way a job goes to the printer (to standard output, which `nc` or the CUPS scheduler
#     reads), and into a file, new or overwritten;
#   - a 100,000-item receipt against one bare QXmlStreamReader pass, with peak resident memory.
# bristel-compile runs beside them for comparison.
#   bench/render.sh [rounds-small] [rounds-large]
set -euo pipefail
small_rounds=${1:-200}
large_rounds=${2:-15}
# shellcheck source=common.sh
source "$(dirname "$0")/common.sh"

print_header "$small_rounds" "$large_rounds"
"$renderer" -f escpos "$work/receipt-20.xml" "$work/out-20.bin"
"$renderer" -f escpos "$work/receipt-100000.xml" "$work/out-big.bin"

typical=$(run_interleaved "$small_rounds" \
    "empty-app=$empty" \
    "render-20-stdout=$renderer -f escpos $work/receipt-20.xml -" \
    "render-20=$renderer -f escpos $work/receipt-20.xml $work/out-20.bin" \
    "render-20-new=$renderer -f escpos $work/receipt-20.xml $work/new-@round.bin" \
    "compile-20=$compiler $work/receipt-20.xml $work/out-20.txt")
large=$(run_interleaved "$large_rounds" \
    "stream-pass=$pass $work/receipt-100000.xml $work/pass.txt" \
    "render-100000=$renderer -f escpos $work/receipt-100000.xml $work/out-big.bin")

empty_ms=$(median empty-app "$typical")
stdout_ms=$(median render-20-stdout "$typical")
render_ms=$(median render-20 "$typical")
new_ms=$(median render-20-new "$typical")
compile_ms=$(median compile-20 "$typical")
pass_ms=$(median stream-pass "$large")
big_ms=$(median render-100000 "$large")
big_rss=$(peak_rss_kib "$renderer" -f escpos "$work/receipt-100000.xml" "$work/out-big.bin")

printf '%-46s %10s\n' "command" "median ms"
printf '%-46s %10s\n' "empty QCoreApplication" "$empty_ms"
printf '%-46s %10s\n' "bristel-render -f escpos receipt-20.xml -" "$stdout_ms"
printf '%-46s %10s\n' "  the same, into a new output file" "$new_ms"
printf '%-46s %10s\n' "  the same, overwriting the output file" "$render_ms"
printf '%-46s %10s\n' "bristel-compile receipt-20.xml" "$compile_ms"
printf '%-46s %10s\n' "stream pass receipt-100000.xml" "$pass_ms"
printf '%-46s %10s   peak RSS %s KiB\n' "bristel-render -f escpos receipt-100000.xml" "$big_ms" "$big_rss"
echo
awk -v a="$stdout_ms" -v b="$empty_ms" 'BEGIN { printf "typical job / empty application: %.2fx (target <= 1.30x)\n", a / b }'
awk -v a="$new_ms" -v b="$empty_ms" 'BEGIN { printf "  into a new output file:        %.2fx\n", a / b }'
awk -v a="$render_ms" -v b="$empty_ms" 'BEGIN { printf "  overwriting the output file:   %.2fx\n", a / b }'
awk -v a="$render_ms" -v b="$compile_ms" 'BEGIN { printf "overwriting / bristel-compile:   %.2fx\n", a / b }'
awk -v a="$big_ms" -v b="$pass_ms" 'BEGIN { printf "100,000 items / stream pass:     %.2fx (target <= 1.50x)\n", a / b }'
awk -v r="$big_rss" 'BEGIN { printf "100,000 items peak RSS:          %.1f MiB (target < 48 MiB)\n", r / 1024 }'
