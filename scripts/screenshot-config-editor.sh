#!/usr/bin/env bash
# Takes the picture of the configuration editor shown in README.md: starts bristel-config on the
# sample configuration under a virtual X server (xvfb-run) and saves docs/bristel-config.png.
#   scripts/screenshot-config-editor.sh [build-dir] [output.png]
# The sample is copied into a temporary home folder: your own ~/.bristel is not touched.
# scripts/retake-doc-pictures.sh (the "docs" target) runs it with the other pictures of docs/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
picture=${2:-$root/docs/bristel-config.png}

command -v xvfb-run >/dev/null || { echo "xvfb-run is missing: apt-get install -y xvfb" >&2; exit 1; }
[ -x "$build/bin/bristel-config" ] || "$root/scripts/build.sh" "$build"

sample=$root/examples/bristel.conf
[ -f "$sample" ] || sample=$root/tests/unit/configviews/data/bristel.conf

home=$(mktemp -d /tmp/bristel-home.XXXXXX)
trap 'rm -rf "$home"' EXIT
mkdir -p "$home/.bristel/conf" "$(dirname "$picture")"
cp "$sample" "$home/.bristel/conf/bristel.conf"

# No file argument: the editor opens ~/.bristel/conf/bristel.conf, as an operator would start it.
env -u QT_QPA_PLATFORM HOME="$home" \
    xvfb-run -a -s "-screen 0 1024x768x24" \
    "$build/bin/bristel-config" --screenshot "$picture"
echo "saved $picture"
