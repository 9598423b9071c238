# shellcheck shell=bash
# Shared by the whole-process benchmark scripts: builds build-bench/, writes the documents and a
# home folder with the sample configuration into $work, and times commands interleaved.
# Sourced; sets root, build, work, compiler, renderer and the two floor programs.  A script
# that times the programs of another build names it in bench_build before sourcing this file,
# and build-bench/ is then neither installed for nor built; bench_translations, if set, names
# the folder of translations the configuration points at (default: the build's own).
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
if [ -n "${bench_build:-}" ]; then
    build=$bench_build
else
    build="$root/build-bench"
    "$root/scripts/install-deps.sh"
    "$root/scripts/build.sh" "$build" -DBRISTEL_BUILD_BENCH=ON -DBRISTEL_BUILD_TESTS=OFF -DBRISTEL_BUILD_GUI=OFF
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$root/bench/make-documents.sh" "$work"
mkdir -p "$work/home/.bristel/conf"
translations=${bench_translations:-$build/translations}
sed "s|/usr/share/bristel/translations/|$translations/|" "$root/examples/bristel.conf" \
    >"$work/home/.bristel/conf/bristel.conf"
# The programs that draw need no display, and a runtime folder of their own spares the
# toolkit's warning about a missing one.
export HOME="$work/home" LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR="$work"

# shellcheck disable=SC2034 # read by the scripts that source this file
compiler="$build/bin/bristel-compile"
# shellcheck disable=SC2034
compiler_shared="$build/bin/bristel-compile-shared"
# shellcheck disable=SC2034
renderer="$build/bin/bristel-render"
# shellcheck disable=SC2034
empty="$build/bin/floor-empty-app"
# shellcheck disable=SC2034
pass="$build/bin/floor-stream-pass"

# print_header <rounds-small> <rounds-large>: the machine and the rounds, before the figures.
print_header() {
    echo "machine: $(nproc) cores, $(awk -F: '/model name/ { print $2; exit }' /proc/cpuinfo | sed 's/^ *//')"
    echo "rounds: $1 (typical job), $2 (100,000 items)"
    echo
}

# run_interleaved [--swap-pairs] <rounds> <name=command>...: prints "name median-ms" per
# command; "@round" in a command stands for the round's number.  The commands run round after
# round, so that a slow spell of the machine hits them alike.  With --swap-pairs the commands
# come in pairs (the same job by two programs) and every other round runs each pair the other
# way round: neither of the two always runs first, finding the other's traces in the caches.
# If bench_samples names a file, each command's times are appended to it
# too, as a line "name ms ms ..." in the order of the rounds.
run_interleaved() {
    local swap=false
    if [ "$1" = --swap-pairs ]; then
        swap=true
        shift
    fi
    local rounds=$1
    shift
    local -a forward=("$@") swapped=() order
    local i
    for ((i = 0; i + 1 < $#; i += 2)); do
        swapped+=("${forward[$((i + 1))]}" "${forward[$i]}")
    done
    if (($# % 2 == 1)); then
        swapped+=("${forward[$(($# - 1))]}")
    fi
    local -A samples=()
    local round entry name command start end
    for ((round = 0; round < rounds; round++)); do
        order=("${forward[@]}")
        if $swap && ((round % 2 == 1)); then
            order=("${swapped[@]}")
        fi
        for entry in "${order[@]}"; do
            name=${entry%%=*}
            command=${entry#*=}
            command=${command//@round/$round}
            start=$EPOCHREALTIME
            $command >/dev/null
            end=$EPOCHREALTIME
            samples[$name]+="$(awk -v s="$start" -v e="$end" 'BEGIN { printf "%.3f", (e - s) * 1000 }') "
        done
    done
    for entry in "$@"; do
        name=${entry%%=*}
        printf '%s %s\n' "$name" "$(tr ' ' '\n' <<<"${samples[$name]}" | grep . | sort -n |
            awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }')"
        if [ -n "${bench_samples:-}" ]; then
            printf '%s %s\n' "$name" "${samples[$name]}" >>"$bench_samples"
        fi
    done
}

# peak_rss_kib <command...>: the command's peak resident memory in KiB.
peak_rss_kib() { /usr/bin/time -f %M "$@" 2>&1 >/dev/null | tail -n 1; }

# median <name> <output of run_interleaved>
median() { awk -v n="$1" '$1 == n { print $2 }' <<<"$2"; }
