#!/usr/bin/env bash
# Builds the shared libraries in a configuration of their own and writes the ABI description of
# each (abidw) into an output folder, as lib<name>.abi.  The configuration is fixed here (g++,
# RelWithDebInfo: abidw reads the types from the debug information; no sanitizers), so the
# descriptions do not depend on how the calling build was configured.
#   scripts/abi-dump.sh <abi-build-dir> <output-dir>
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=${1:?build folder for the ABI configuration}
out=${2:?output folder}
# Absolute paths in the debug information, whatever the caller's ccache settings: the headers
# below are matched by path.
unset CCACHE_BASEDIR
mkdir -p "$dir" "$out"
dir=$(cd "$dir" && pwd)

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
log="$dir/abi-build.log"
failed() {
    tail -n 60 "$log"
    echo "abi-dump: $1 (see $log)" >&2
    exit 1
}
cmake -S "$root" -B "$dir" "${generator[@]}" "${launcher[@]}" -DCMAKE_CXX_COMPILER=g++ \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBRISTEL_BUILD_TESTS=OFF -DBRISTEL_BUILD_GUI=ON \
    -DBRISTEL_BUILD_BENCH=OFF -DBRISTEL_SANITIZE=OFF -DBRISTEL_FUZZ=OFF >"$log" 2>&1 ||
    failed "the ABI configuration failed"
mapfile -t targets < <(cut -d' ' -f1 "$dir/shared-libraries.txt")
cmake --build "$dir" --target "${targets[@]}" >>"$log" 2>&1 || failed "the build of the shared libraries failed"

# Types count as public when a header of the libraries or a generated export header defines
# them; other types are described only as far as the exported declarations reach them (Qt's
# QString or QSqlDatabase, for instance), the rest is left out.  A private header (*_p.h)
# defines the part behind a class's private pointer, which may change freely: its types are
# not public.
headers=()
for folder in config log support; do
    for header in "$root/$folder"/*.h; do
        [[ "$header" == *_p.h ]] || headers+=(--header-file "$header")
    done
done
headers+=(--headers-dir "$dir/exports")
while read -r _ file; do
    name=$(basename "$file")
    abidw --no-show-locs --no-corpus-path --no-comp-dir-path "${headers[@]}" --drop-private-types \
        --out-file "$out/${name%%.so*}.abi" "$file"
    # The compilation units keep their source paths; the description must not depend on where
    # the checkout or the build lives.
    sed -i -e "s|path='$root/|path='|g" -e "s|path='$dir/|path='@build@/|g" "$out/${name%%.so*}.abi"
done <"$dir/shared-libraries.txt"
