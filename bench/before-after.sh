#!/usr/bin/env bash
# The programs of two builds timed against each other, before and after a change: the same
# commands, the same documents, configuration and translations for both, run interleaved round
# after round (old, new, old, new, ...; every other round each pair the other way round), so
# that a slow spell of a shared, loaded machine hits both builds alike.  Timings of two builds
# taken at different moments cannot be compared on such a machine; medians of one run can.
#
#   bench/before-after.sh [--runs N] OLD_BUILD NEW_BUILD [rounds-small [rounds-large]]
#
# OLD_BUILD and NEW_BUILD are build folders made by scripts/build.sh (release); only their bin/
# is used.  The commands, each run by both builds' programs:
#   compile-20          bristel-compile, the typical 20-item receipt, overwriting its output
#   compile-20-new      the same, into a new output file each round
#   render-escpos       bristel-render -f escpos, the typical receipt, to standard output
#   render-listing      bristel-render -f listing, the same
#   render-codes        bristel-render -f escpos, the typical receipt with a QR code and a barcode
#   preview-png         bristel-preview, the typical receipt to PNG
#   preview-codes       the same with the QR code and the barcode
#   preview-svg         bristel-preview, the typical receipt to SVG (outline fonts)
#   preview-foreign     bristel-preview, a receipt of another program's ESC/POS bytes, to PNG
#   filter              bristeltoescpos, the CUPS filter, on the typical receipt
#   compile-100000      bristel-compile, the 100,000-item receipt (rounds-large)
#   render-100000       bristel-render -f escpos, the same (rounds-large)
# A command whose program one of the builds lacks is left out, with a note.
#
# Each run prints, per command, the median time of each build, their ratio new/old, and the
# median of the rounds' own ratios ("paired": each new time divided by the old time of the same
# round, taken a moment before or after it), then a line "command: OK" or "command: SLOWER"
# (paired ratio above 1.03).  The verdict goes by the paired ratio: on a loaded machine the load
# changes within a run, and with two copies of the same build the ratio of the two medians
# moved far more from run to run than the paired one.  With --runs N the whole run is repeated
# N times; the summary then gives every run's ratios and judges by the median of the paired
# ones.
set -euo pipefail

usage() {
    echo "usage: bench/before-after.sh [--runs N] OLD_BUILD NEW_BUILD [rounds-small [rounds-large]]" >&2
    exit 2
}

runs=1
operands=()
while [ $# -gt 0 ]; do
    case $1 in
    --runs)
        [ $# -ge 2 ] || usage
        runs=$2
        shift 2
        ;;
    --runs=*)
        runs=${1#--runs=}
        shift
        ;;
    -*) usage ;;
    *)
        operands+=("$1")
        shift
        ;;
    esac
done
if [ ${#operands[@]} -lt 2 ] || [ ${#operands[@]} -gt 4 ]; then
    usage
fi
[[ $runs =~ ^[1-9][0-9]*$ ]] || usage
small_rounds=${operands[2]:-200}
large_rounds=${operands[3]:-$(((small_rounds + 4) / 5))}
[[ $small_rounds =~ ^[1-9][0-9]*$ && $large_rounds =~ ^[1-9][0-9]*$ ]] || usage
limit=1.03

fail() {
    echo "before-after.sh: $*" >&2
    exit 2
}

# The absolute path of a build folder that has a bin/ folder.
build_folder() {
    [ -d "$1/bin" ] || fail "$1: no bin/ folder (a build made by scripts/build.sh)"
    (cd "$1" && pwd)
}
old=$(build_folder "${operands[0]}")
new=$(build_folder "${operands[1]}")

# A debug build beside a release one would measure the flags, not the change.
for folder in "$old" "$new"; do
    cache="$folder/CMakeCache.txt"
    if [ -f "$cache" ] && ! grep -qx 'CMAKE_BUILD_TYPE:STRING=Release' "$cache"; then
        echo "warning: $folder is not a release build" >&2
    fi
done

# first_existing <path under a build>: that path in the new build, else in the old one.  Both
# builds then read the same translations and the same PPD file: a difference between the two
# builds' copies is not what is being timed.
first_existing() {
    local folder
    for folder in "$new" "$old"; do
        if [ -e "$folder/$1" ]; then
            echo "$folder/$1"
            return
        fi
    done
}
translation_file=$(first_existing translations/bristel_it.qm)
[ -n "$translation_file" ] || echo "warning: neither build has translations/bristel_it.qm; the labels stay untranslated" >&2
bench_translations=$(dirname "${translation_file:-$new/translations/bristel_it.qm}")
bench_build=$new
# shellcheck source=common.sh
source "$(dirname "$0")/common.sh"

# The filter reads the configuration the scheduler names, and its queue's PPD file.
export BRISTEL_CONFIG="$work/home/.bristel/conf/bristel.conf"
ppd=$(first_existing cups/ppd/bristel-escpos-80mm.ppd)
if [ -n "$ppd" ]; then
    export PPD=$ppd
else
    unset PPD
fi

typical="$work/receipt-20.xml"
codes="$work/receipt-20-codes.xml"
large="$work/receipt-100000.xml"
foreign="$work/foreign.escpos"
"$root/bench/make-foreign-receipt.sh" 1 >"$foreign"
sed 's|^</document>|  <qrcode data="https://trattoria-da-anna.example/pay?receipt=000123" size="4" ecc="M"/>\
  <barcode type="code128" data="T7-000123" height="60"/>\
</document>|' "$typical" >"$codes"

# name=command; @bin stands for the build's bin/ folder, @out for a folder of its own for each
# build (the output files of one build are never overwritten by the other's), @round for the
# round's number.  The commands are split on blanks: no quotes, no spaces in the paths.
small_commands=(
    "compile-20=@bin/bristel-compile $typical @out/compile-20.txt"
    "compile-20-new=@bin/bristel-compile $typical @out/new-@round.txt"
    "render-escpos=@bin/bristel-render -f escpos $typical -"
    "render-listing=@bin/bristel-render -f listing $typical -"
    "render-codes=@bin/bristel-render -f escpos $codes -"
    "preview-png=@bin/bristel-preview $typical @out/preview-20.png"
    "preview-codes=@bin/bristel-preview $codes @out/preview-codes.png"
    "preview-svg=@bin/bristel-preview $typical @out/preview-20.svg"
    "preview-foreign=@bin/bristel-preview $foreign @out/foreign.png"
    "filter=@bin/bristeltoescpos 1 bench receipt 1 none $typical"
)
large_commands=(
    "compile-100000=@bin/bristel-compile $large @out/compile-100000.txt"
    "render-100000=@bin/bristel-render -f escpos $large @out/render-100000.bin"
)

# for_build <old|new> <command>: the command with the build's folders filled in.
for_build() {
    local command=${2//@bin/${!1}/bin}
    echo "${command//@out/$work/$1}"
}

# The commands both builds have; notes the others.
runnable() {
    local entry program
    for entry in "$@"; do
        program=${entry#*=}
        program=${program%% *}
        program=${program#@bin/}
        if [ -x "$old/bin/$program" ] && [ -x "$new/bin/$program" ]; then
            echo "$entry"
        else
            echo "note: ${entry%%=*} left out: $program is not in both builds" >&2
        fi
    done
}
mapfile -t small_commands < <(runnable "${small_commands[@]}")
mapfile -t large_commands < <(runnable "${large_commands[@]}")

# interleaved <name=command>...: every command once for the old build, once for the new.
interleaved() {
    local entry
    for entry in "$@"; do
        echo "old-${entry%%=*}=$(for_build old "${entry#*=}")"
        echo "new-${entry%%=*}=$(for_build new "${entry#*=}")"
    done
}
mapfile -t small_pairs < <(interleaved "${small_commands[@]}")
mapfile -t large_pairs < <(interleaved "${large_commands[@]}")

# Every command once, which also warms the page cache and the dynamic loader's: it must
# succeed, and both builds should write the same bytes (a build that does less work is not
# faster).  Standard output is kept beside the output files to be compared too.
mkdir -p "$work/old" "$work/new"
for entry in "${small_pairs[@]}" "${large_pairs[@]}"; do
    name=${entry%%=*}
    command=${entry#*=}
    command=${command//@round/warm}
    if ! $command >"$work/${name%%-*}/${name#*-}.stdout" 2>"$work/warm.err"; then
        cat "$work/warm.err" >&2
        fail "$name failed: $command"
    fi
done
if ! differences=$(diff -rq "$work/old" "$work/new" 2>&1); then
    echo "note: the two builds' outputs differ:" >&2
    sed "s|$work/||g; s|^|    |" <<<"$differences" >&2
fi

echo "old: $old"
echo "new: $new"
echo "translations: ${translation_file:-none}; PPD: ${ppd:-none}"
print_header "$small_rounds" "$large_rounds"

commands=("${small_commands[@]}" "${large_commands[@]}")
declare -A ratios=() paired_ratios=()

# median_of: the median of the numbers on standard input, one a line.
median_of() {
    sort -n | awk '{ v[NR] = $1 } END { printf "%.3f", (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

# paired_ratio <command> <samples file>: the median of new/old taken round by round.
paired_ratio() {
    awk -v old="old-$1" -v new="new-$1" '
        $1 == old { for (i = 2; i <= NF; i++) o[i] = $i }
        $1 == new { for (i = 2; i <= NF; i++) n[i] = $i; last = NF }
        END { for (i = 2; i <= last; i++) print n[i] / o[i] }' "$2" | median_of
}

# one_run <number>: times every command of both builds, prints the table and the verdicts.
# What the programs say on standard error (the filter's PAGE: lines, the preview's notes on
# bytes it does not draw) goes to a file, opened once for all the rounds.
one_run() {
    local results entry name old_ms new_ms ratio paired
    bench_samples="$work/samples-$1"
    results=$(run_interleaved --swap-pairs "$small_rounds" "${small_pairs[@]}" 2>"$work/timed.err")
    if [ ${#large_pairs[@]} -gt 0 ]; then
        results+=$'\n'$(run_interleaved --swap-pairs "$large_rounds" "${large_pairs[@]}" 2>"$work/timed.err")
    fi
    [ "$runs" -eq 1 ] || echo "run $1 of $runs"
    printf '%-16s %10s %10s %8s %8s\n' "command" "old ms" "new ms" "new/old" "paired"
    local verdicts=()
    for entry in "${commands[@]}"; do
        name=${entry%%=*}
        old_ms=$(median "old-$name" "$results")
        new_ms=$(median "new-$name" "$results")
        ratio=$(awk -v n="$new_ms" -v o="$old_ms" 'BEGIN { printf "%.3f", n / o }')
        paired=$(paired_ratio "$name" "$bench_samples")
        ratios[$name]+="$ratio "
        paired_ratios[$name]+="$paired "
        printf '%-16s %10.2f %10.2f %8s %8s\n' "$name" "$old_ms" "$new_ms" "$ratio" "$paired"
        verdicts+=("$name: $(verdict "$paired")")
    done
    echo
    printf '%s\n' "${verdicts[@]}"
    echo
}

# verdict <ratio>: OK, or SLOWER above the limit.
verdict() {
    awk -v r="$1" -v limit="$limit" 'BEGIN { print (r > limit) ? "SLOWER" : "OK" }'
}

for ((run = 1; run <= runs; run++)); do
    one_run "$run"
done

# summary <ratios>: their median and spread (highest - lowest).
summary() {
    local median spread
    median=$(tr ' ' '\n' <<<"$1" | grep . | median_of)
    spread=$(tr ' ' '\n' <<<"$1" | grep . | sort -n | awk 'NR == 1 { low = $1 } { high = $1 } END { printf "%.3f", high - low }')
    echo "$median $spread"
}

if [ "$runs" -gt 1 ]; then
    echo "paired new/old of each run, their median and spread (highest - lowest), judged by the"
    echo "median; then the same of the ratios of the medians:"
    for entry in "${commands[@]}"; do
        name=${entry%%=*}
        read -r median spread <<<"$(summary "${ratios[$name]}")"
        read -r paired_median paired_spread <<<"$(summary "${paired_ratios[$name]}")"
        printf '%-16s %s median %s spread %s %-6s  of medians %s median %s spread %s\n' "$name" \
            "${paired_ratios[$name]}" "$paired_median" "$paired_spread" "$(verdict "$paired_median")" \
            "${ratios[$name]}" "$median" "$spread"
    done
fi
