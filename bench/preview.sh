#!/usr/bin/env bash
# Whole-process timings of bristel-preview, on this machine, in one run:
#   - the typical job (receipt-20.xml) to PNG against a floor program that starts a
#     QGuiApplication on the offscreen platform, draws one line of text into an image and saves
#     it as PNG;
#   - a 100,000-item receipt to PNG with --split, its wall time and peak resident memory.
# Builds build-bench-gui/ (the preview needs the GUI libraries, which build-bench/ leaves out).
#   bench/preview.sh [rounds-small] [rounds-large]
set -euo pipefail
small_rounds=${1:-100}
large_rounds=${2:-3}
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build-bench-gui"

"$root/scripts/install-deps.sh"
log="$build/build.log"
mkdir -p "$build"
if ! { cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBRISTEL_BUILD_BENCH=ON \
        -DBRISTEL_BUILD_TESTS=OFF -DBRISTEL_BUILD_GUI=ON &&
        cmake --build "$build" -j "$(nproc)" --target bristel-preview floor-gui-image translations; } >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "build failed: see $log" >&2
    exit 1
fi

bench_build=$build
# shellcheck source=common.sh
source "$root/bench/common.sh"
preview="$build/bin/bristel-preview"
floor="$build/bin/floor-gui-image"

print_header "$small_rounds" "$large_rounds"
# Warm the page cache and the dynamic loader's caches first.
"$floor" "$work/floor.png"
"$preview" "$work/receipt-20.xml" "$work/out-20.png"
mkdir -p "$work/split"
"$preview" --split "$work/receipt-100000.xml" "$work/split/big.png"
pieces=$(find "$work/split" -name 'big-*.png' | wc -l)

typical=$(run_interleaved "$small_rounds" \
    "floor=$floor $work/floor.png" \
    "preview-20=$preview $work/receipt-20.xml $work/out-20.png")
large=$(run_interleaved "$large_rounds" \
    "preview-100000=$preview --split $work/receipt-100000.xml $work/split/big.png")

floor_ms=$(median floor "$typical")
small_ms=$(median preview-20 "$typical")
big_ms=$(median preview-100000 "$large")
big_rss=$(peak_rss_kib "$preview" --split "$work/receipt-100000.xml" "$work/split/big.png")

printf '%-52s %10s\n' "command" "median ms"
printf '%-52s %10s\n' "floor: QGuiApplication, one line of text to PNG" "$floor_ms"
printf '%-52s %10s\n' "bristel-preview receipt-20.xml out.png" "$small_ms"
printf '%-52s %10s   peak RSS %s KiB, %s pictures\n' "bristel-preview --split receipt-100000.xml" "$big_ms" \
    "$big_rss" "$pieces"
echo
awk -v a="$small_ms" -v b="$floor_ms" 'BEGIN { printf "typical job / floor:             %.2fx (target <= 1.50x)\n", a / b }'
awk -v r="$big_rss" 'BEGIN { printf "100,000 items --split peak RSS:  %.1f MiB (target < 128 MiB)\n", r / 1024 }'
