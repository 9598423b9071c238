#!/usr/bin/env bash
# Installs what is missing, builds, and compiles the sample receipt with the sample
# configuration (in a temporary home folder: your own ~/.bristel is not touched), then shows
# the output file with its line ends made visible.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

scripts/install-deps.sh
scripts/build.sh "$root/build"

document=${1:-examples/documents/printFullOrderReceipt.xml}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -p "$home/.bristel/conf"
sed "s|/usr/share/bristel/translations/|$root/build/translations/|" examples/bristel.conf >"$home/.bristel/conf/bristel.conf"

HOME="$home" build/bin/bristel-compile "$document" "$home/output.txt"
echo "== $document -> output.txt (<CR> and <LF> mark the line-end bytes)"
perl -pe 's/\r/<CR>/g; s/\n/<LF>\n/' "$home/output.txt"
