#!/usr/bin/env bash
# Runs two builds' programs over the same inputs and compares what they do, byte for byte:
#   scripts/compare-outputs.sh OLD_BIN NEW_BIN [work-folder]
#
# OLD_BIN and NEW_BIN are build/bin folders (kept copies of them are fine: the programs link
# the project's libraries statically).  Each build runs bristel-compile, bristel-render (every
# format and the options, good values and bad), bristel-preview (PNG, SVG, PDF, logos, printer
# bytes, the options) and the CUPS filter bristeltoescpos over every document of examples/, the
# golden cases, the preview's and the fuzzers' saved inputs, the benchmark's documents and a
# few hundred documents made from the examples (more items, none, cut short, odd characters,
# codes good and bad).  Standard output, standard error, the exit status and every file a run
# writes are compared; a PDF's creation date is the one byte range set aside.  Prints each
# difference and the count at the end; the status is 0 only with no difference.
# The work folder (default: a fresh one under /tmp) keeps both runs for a closer look.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
old=$(cd "${1:?usage: compare-outputs.sh OLD_BIN NEW_BIN [work-folder]}" && pwd)
new=$(cd "${2:?usage: compare-outputs.sh OLD_BIN NEW_BIN [work-folder]}" && pwd)
work=${3:-$(mktemp -d /tmp/compare-outputs.XXXXXX)}
mkdir -p "$work"
work=$(cd "$work" && pwd)
for program in bristel-compile bristel-render bristel-preview bristeltoescpos bristel-ppd; do
    for bin in "$old" "$new"; do
        [ -x "$bin/$program" ] || { echo "compare-outputs: no $bin/$program" >&2; exit 2; }
    done
done
# A fixed hash seed: the PDF writer embeds its fonts in the order of a hash table.
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen TZ=UTC QT_HASH_SEED=0
unset BRISTEL_CONFIG PPD XDG_RUNTIME_DIR

inputs=$work/inputs
rm -rf "$inputs" "$work/run" "$work/old" "$work/new"
mkdir -p "$inputs/documents" "$inputs/escpos" "$inputs/configs" "$inputs/logos" "$inputs/home/.bristel/conf"
cp "$root/examples/bristel.conf" "$inputs/home/.bristel/conf/bristel.conf"

# --- The inputs -------------------------------------------------------------------------------
cp "$root"/examples/documents/*.xml "$inputs/documents/"
cp "$root"/examples/documents/*.escpos "$root/tests/unit/preview/data/features.escpos" "$inputs/escpos/"
for saved in "$root"/fuzz/crashes/fuzz_preview/*; do
    cp "$saved" "$inputs/escpos/saved-$(basename "$saved").escpos"
done
cp "$root/examples/bristel.conf" "$inputs/configs/example.conf"
for case in "$root"/tests/golden/cases/*/; do
    name=$(basename "$case")
    [ -f "$case/input.xml" ] && cp "$case/input.xml" "$inputs/documents/golden-$name.xml"
    if [ -f "$case/bristel.conf" ]; then
        cp "$case/bristel.conf" "$inputs/configs/golden-$name.conf"
    fi
done
"$root/bench/make-documents.sh" "$inputs/documents" >/dev/null

python3 - "$inputs" <<'PYTHON'
import glob, os, random, re, sys

inputs = sys.argv[1]
docs = os.path.join(inputs, "documents")
rng = random.Random(20261125)

def write(name, data):
    with open(os.path.join(docs, name + ".xml"), "wb") as f:
        f.write(data if isinstance(data, bytes) else data.encode("utf-8"))

repeated = re.compile(r'^\s*<(receipe|receipe_type|otherreceipe|variant|statement|taxrate_item)\b.*$', re.M)
codes = {
    "qr": '<qrcode data="https://example.invalid/pay?r=1" size="4" ecc="M"/>',
    "qr-big": '<qrcode data="%s" size="8" ecc="H"/>' % ("x" * 3000),
    "qr-bad-ecc": '<qrcode data="abc" ecc="Z"/>',
    "qr-bad-size": '<qrcode data="abc" size="99"/>',
    "ean13": '<barcode type="ean13" data="400638133393" height="80" hri="below"/>',
    "ean13-letters": '<barcode type="ean13" data="40063813339X"/>',
    "code39": '<barcode type="code39" data="T7-1" hri="none"/>',
    "itf": '<barcode type="itf" data="123"/>',
    "unknown-type": '<barcode type="pdf417" data="abc"/>',
    "bad-hri": '<barcode type="code128" data="abc" hri="above"/>',
    "bad-height": '<barcode type="code128" data="abc" height="0"/>',
}
for path in sorted(glob.glob(os.path.join(docs, "print*.xml"))):
    stem = os.path.basename(path)[:-4]
    text = open(path, encoding="utf-8").read()
    for count in (0, 3, 40):
        write("gen-%s-items%d" % (stem, count),
              repeated.sub(lambda m: "\n".join([m.group(0)] * count), text))
    raw = text.encode("utf-8")
    for share in (5, 20, 45, 70, 95):
        write("gen-%s-cut%d" % (stem, share), raw[: len(raw) * share // 100])
    write("gen-%s-odd-names" % stem,
          re.sub(r'(name|line1|address)="(?!print)',
                 lambda m: m.group(0) + "Caff\u00e8 \u20ac \u2550\u2557 \u00f1 \u65e5\u672c \u00a7 ", text))
    write("gen-%s-long-names" % stem, re.sub(r'name="(?!print)', 'name="' + "Lunghissimo " * 9, text))
    write("gen-%s-empty-values" % stem,
          re.sub(r'="[^"]*"', '=""', text).replace('<method name=""', '<method name="%s"' % stem))
    write("gen-%s-controls" % stem, re.sub(r'name="(?!print)', 'name="tab\tbell&#7;cr&#13;', text))
    for code in sorted(codes):
        if rng.random() < 0.45 or stem == "printFullOrderReceipt":
            write("gen-%s-code-%s" % (stem, code), text.replace("</document>", codes[code] + "\n</document>"))
    write("gen-%s-unknown-method" % stem, text.replace('name="%s"' % stem, 'name="printMenu"', 1))

# Documents of random length and content, seeded: the same every run.
methods = ["printFullOrderReceipt", "printFullOrder", "printPartialOrder", "printAbstractOrderReceipt",
           "printFullOrderInvoice", "printFullOrderDelivery", "printSold", "printFullOrderFiscal"]
words = ["Spaghetti", "carbonara", "Acqua", "Tagliata", "Vino rosso", "Caff\u00e8", "Tiramis\u00f9",
         "Birra 0,4 l", "\u00c0 la carte", "Men\u00f9 del giorno", "Gr\u00fc\u00dfe", "\u20ac"]
for n in range(60):
    method = rng.choice(methods)
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', "<document>", '  <method name="%s"/>' % method]
    if rng.random() < 0.7:
        lines.append('  <company name="Trattoria %d" address="Via Roma %d"/>' % (n, n))
    if rng.random() < 0.6:
        lines.append('  <orderinfo date="1%d/03/2026" table="%d" waiter="Anna"/>' % (n % 10, n))
    for i in range(rng.randint(0, 60)):
        name = " ".join(rng.choice(words) for _ in range(rng.randint(1, 6)))
        lines.append('  <receipe number="%d" name="%s" price="%d.%02d" totalPrice="%d.00"/>'
                     % (rng.randint(1, 99), name, rng.randint(0, 999), rng.randint(0, 99), rng.randint(0, 9999)))
        if rng.random() < 0.2:
            lines.append('  <variant quantity="1" name="%s"/>' % rng.choice(words))
    lines.append('  <total price="%d.00"/>' % rng.randint(0, 99999))
    if rng.random() < 0.3:
        lines.append("  " + codes[rng.choice(sorted(codes))])
    lines.append("</document>")
    write("random-%02d" % n, "\n".join(lines) + "\n")

# A job that prints the logo.
receipt = open(os.path.join(docs, "printFullOrderReceipt.xml"), encoding="utf-8").read()
write("logo-job", receipt.replace('<method name="printFullOrderReceipt"/>',
                                  '<method name="printFullOrderReceipt"/>\n  <logo/>'))

# A job longer than one picture holds.
items = "".join('  <receipe number="1" name="Piatto %d" price="1.00" totalPrice="1.00"/>\n' % i
                for i in range(900))
write("long-job", '<document>\n  <method name="printFullOrder"/>\n%s</document>\n' % items)

# Printer bytes: the saved ones damaged, byte by byte, and random ones.
escpos = os.path.join(inputs, "escpos")
for path in sorted(glob.glob(os.path.join(escpos, "*.escpos"))):
    data = bytearray(open(path, "rb").read())
    for k in range(3):
        damaged = bytearray(data)
        for _ in range(max(1, len(damaged) // 50)):
            damaged[rng.randrange(len(damaged))] = rng.randrange(256)
        open(path[:-7] + "-damaged%d.escpos" % k, "wb").write(bytes(damaged[: len(damaged) - rng.randrange(8)]))
for n in range(10):
    data = bytes(rng.choice([0x1b, 0x1d, 0x10, 0x0a, 0x41, 0x20, rng.randrange(256)])
                 for _ in range(rng.randint(1, 400)))
    open(os.path.join(escpos, "random-%02d.escpos" % n), "wb").write(data)

# Logos: plain and raw PBM, and broken ones.
logos = os.path.join(inputs, "logos")
def logo(name, data):
    open(os.path.join(logos, name + ".pbm"), "wb").write(data)
logo("raw", b"P4\n# a comment\n20 3\n" + bytes([0xff, 0x0f, 0xa0, 0x55, 0xaa, 0x50, 0x00, 0xff, 0xf0]))
logo("plain", b"P1\n5 3\n1 0 1 0 1\n0 1 0 1 0\n# c\n11111\n")
logo("wide", b"P4 1000 2\n" + bytes(range(250)) * 1)
logo("not-pbm", b"P2\n1 1\n1\n")
logo("cut-short", b"P4\n8 2\n\xff")
logo("no-width", b"P4\n0 5\n")
logo("letter", b"P1\n2 1\n1 x\n")
logo("tall", b"P4\n8 5000\n")
logo("plain-short", b"P1\n2 2\n1 0 1\n")
logo("plain-comments", b"P1 # size next\n4 2 # rows next\n1 1\t0 0 # end of row\n\n01\r\n10\f")
logo("plain-together", b"P1\n9 2\n101010101\n010101010")
logo("raw-whole-bytes", b"P4 16 2\r" + bytes([0x81, 0x42, 0x24, 0x18]))
logo("raw-crlf-extra", b"P4\n7 2\n\xff\xfe\x00\x00trailing")
logo("no-height", b"P1\n4\n")
logo("empty", b"")
logo("p-only", b"P")
PYTHON

# Configurations with other widths, switches and printer settings.
conf() { printf 'bristel : {\n%s\n};\n' "$2" >"$inputs/configs/$1.conf"; }
conf narrow '    receiptdoc : { paperWidth = 24; printDate = true; printTable = true; };
    escpos : { codepage = "PC437"; columns = "24"; cut = "none"; };'
conf wide '    receiptdoc : { paperWidth = 64; quantityFieldWidth = 4; priceFieldWidth = 9; totalPriceFieldWidth = 10; };
    doc : { paperWidth = 64; };
    escpos : { codepage = "PC858"; columns = "64"; cut = "full"; cutFeed = "3"; drawerPin = "5"; codes = "raster"; };'
conf bad-values '    escpos : { codepage = "KLINGON"; columns = "-3"; cut = "sideways"; drawerPin = "9"; codes = "maybe"; };'
conf with-logo "    escpos : { logo = \"$inputs/logos/raw.pbm\"; };"
conf with-bad-logo "    escpos : { logo = \"$inputs/logos/cut-short.pbm\"; };"
printf 'not a configuration at all {{{ ;;;\n' >"$inputs/configs/garbage.conf"
mkdir -p "$inputs/configs/folder.conf"
cp "$root/tests/unit/preview/data/features.png" "$inputs/logos/picture.png"
printf 'not a picture' >"$inputs/logos/broken.png"
mkdir -p "$inputs/ppd"
"$old/bristel-ppd" "$inputs/ppd" >/dev/null

# --- The runs ---------------------------------------------------------------------------------
# A case: its name, a file for standard input (- for none), then VAR=value words, then the
# program (compile, render, preview or filter) and its arguments.  It runs in its own folder,
# the same path for both builds, which keeps every message that names a file alike.
cases=$work/cases
: >"$cases"
add() { printf '%q ' "$@" >>"$cases"; printf '\n' >>"$cases"; }

docs=("$inputs"/documents/*.xml)
confs=("$inputs"/configs/*.conf)
home=HOME=$inputs/home
i=0
for doc in "${docs[@]}"; do
    name=$(basename "$doc" .xml)
    i=$((i + 1))
    big=false
    case $name in receipt-100000) big=true ;; esac
    conf=${confs[$((i % ${#confs[@]}))]}
    [ -f "$inputs/configs/$name.conf" ] && conf=$inputs/configs/$name.conf
    [ -d "$conf" ] && conf=$inputs/configs/example.conf
    casehome=$work/homes/$name
    mkdir -p "$casehome/.bristel/conf"
    cp "$conf" "$casehome/.bristel/conf/bristel.conf"
    add "compile-$name" - "HOME=$casehome" compile "$doc" out.txt
    for format in text escpos listing; do
        add "render-$format-$name" - "$home" render -f "$format" -c "$conf" "$doc" "out.$format"
    done
    add "filter-$name" - "BRISTEL_CONFIG=$conf" "PPD=$inputs/ppd/bristel-escpos-80mm.ppd" filter 7 alice "$name" 1 "" "$doc"
    $big && continue
    add "preview-png-$name" - "$home" preview -c "$conf" "$doc" out.png
    if [ $((i % 4)) -eq 0 ] || [[ $name != gen-* && $name != random-* ]]; then
        add "preview-svg-$name" - "$home" preview -c "$conf" "$doc" out.svg
        add "preview-pdf-$name" - "$home" preview -c "$conf" "$doc" out.pdf
    fi
done
for bytes in "$inputs"/escpos/*.escpos; do
    name=$(basename "$bytes" .escpos)
    add "preview-escpos-$name" - "$home" preview "$bytes" out.png
    add "preview-escpos-strict-$name" - "$home" preview --strict --paper 58 "$bytes" out.png
done
add preview-escpos-svg - "$home" preview "$inputs/escpos/features.escpos" out.svg
add preview-escpos-pdf - "$home" preview --input escpos "$inputs/escpos/features.escpos" out.pdf

# The options, one at a time, good and bad, on a typical job.
job=$inputs/documents/printFullOrderReceiptWithCodes.xml
example=$inputs/configs/example.conf
render_option() { add "render-option-$1" - "$home" render "${@:2}"; }
render_option help --help
render_option version --version
render_option unknown --no-such-option "$job"
render_option none
render_option three "$job" a b
render_option stdout "$job"
render_option dash-out "$job" -
add render-option-stdin-listing "$job" "$home" render -f listing - out.lst
add render-option-stdin "$job" "$home" render - out.txt
render_option suffix-txt "$job" out.txt
render_option suffix-lst "$job" out.LST
render_option suffix-other "$job" out.bin
render_option format-bad -f pdf "$job" out
render_option format-long --format listing "$job" out.txt
render_option missing-input "$inputs/no-such.xml" out
render_option folder-input "$inputs" out
render_option unwritable "$job" "$inputs/no-such-folder/out"
render_option full-disk "$job" /dev/full
render_option config-missing -c "$inputs/no-such.conf" "$job" out
render_option config-folder -c "$inputs/configs/folder.conf" "$job" out
render_option config-garbage -c "$inputs/configs/garbage.conf" "$job" out
render_option config-bad-values -c "$inputs/configs/bad-values.conf" "$job" out
logojob=$inputs/documents/logo-job.xml
render_option config-logo -c "$inputs/configs/with-logo.conf" -f listing "$logojob" out
render_option config-bad-logo -c "$inputs/configs/with-bad-logo.conf" -f listing "$logojob" out
for setting in "codepage PC858" "codepage PC437" "codepage PC999" "codepage-number 19" "codepage-number x" \
    "columns 32" "columns 0" "columns abc" "cut full" "cut partial" "cut none" "cut sideways" \
    "cut-feed 0" "cut-feed 255" "cut-feed 256" "drawer-pin 2" "drawer-pin 5" "drawer-pin 3" \
    "drawer-on 100" "drawer-on 600" "drawer-off 0" "drawer-off -1" "codes native" "codes raster" "codes x"; do
    set -- $setting
    render_option "$1-$2" -c "$example" -f listing "--$1" "$2" "$job" out
    render_option "$1-$2-escpos" -c "$example" "--$1=$2" "$job" out.escpos
done
render_option two-bad --columns 0 --cut sideways "$job" out
render_option every-setting --codepage PC852 --columns 40 --cut none --cut-feed 4 --drawer-pin 5 \
    --drawer-on 120 --drawer-off 240 --codes raster -f listing "$job" out
for pbm in "$inputs"/logos/*.pbm; do
    render_option "logo-$(basename "$pbm" .pbm)" -f listing --logo "$pbm" "$logojob" out
    render_option "logo-$(basename "$pbm" .pbm)-escpos" --logo "$pbm" "$logojob" out.escpos
    mkdir -p "$inputs/logo-configs"
    logoconf=$inputs/logo-configs/$(basename "$pbm" .pbm).conf
    printf 'bristel : {\n    escpos : { logo = "%s"; };\n};\n' "$pbm" >"$logoconf"
    add "preview-option-logo-$(basename "$pbm" .pbm)" - "$home" preview -c "$logoconf" "$logojob" out.png
done
render_option logo-missing --logo "$inputs/logos/none.pbm" "$logojob" out
render_option logo-folder --logo "$inputs/logos" "$logojob" out

preview_option() { add "preview-option-$1" - "$home" preview "${@:2}"; }
preview_option help --help
preview_option version --version
preview_option unknown --no-such-option "$job" out.png
preview_option none
preview_option one "$job"
preview_option three "$job" a.png b.png
preview_option suffix-bad "$job" out.gif
preview_option suffix-none "$job" out
preview_option suffix-upper "$job" out.PNG
preview_option missing-input "$inputs/no-such.xml" out.png
preview_option folder-input "$inputs" out.png
preview_option unwritable "$job" "$inputs/no-such-folder/out.png"
preview_option unwritable-svg "$job" "$inputs/no-such-folder/out.svg"
preview_option config-missing -c "$inputs/no-such.conf" "$job" out.png
preview_option config-folder -c "$inputs/configs/folder.conf" "$job" out.png
preview_option config-bad-values -c "$inputs/configs/bad-values.conf" "$job" out.png
preview_option config-wide -c "$inputs/configs/wide.conf" "$job" out.png
for setting in "codepage PC858" "codepage PC999" "columns 24" "columns 48" "columns x" "codes native" \
    "codes raster" "codes x" "paper 58" "paper 80" "paper 80-512" "paper 76" "input xml" "input escpos" \
    "input auto" "input pdf"; do
    set -- $setting
    preview_option "$1-$2" -c "$example" "--$1" "$2" "$job" out.png
done
preview_option escpos-as-xml --input xml "$inputs/escpos/features.escpos" out.png
preview_option two-bad --columns x --paper 76 "$job" out.png
preview_option strict-job --strict "$job" out.png
preview_option strict-malformed --strict "$inputs/documents/gen-printFullOrderReceipt-cut45.xml" out.png
preview_option strict-escpos --strict "$inputs/escpos/features.escpos" out.png
preview_option too-long "$inputs/documents/long-job.xml" out.png
preview_option split --split "$inputs/documents/long-job.xml" out.png
preview_option split-no-suffix --split "$inputs/documents/long-job.xml" out.svg
preview_option split-short --split "$job" piece.png
preview_option split-unwritable --split "$inputs/documents/long-job.xml" "$inputs/no-such-folder/out.png"
preview_option too-long-escpos-split --split --input escpos "$inputs/documents/long-job.xml" out.png
preview_option logo --make-logo "$inputs/logos/picture.png" logo.pbm
preview_option logo-576 --make-logo --width 576 "$inputs/logos/picture.png" logo.pbm
preview_option logo-width-7 --make-logo --width 7 "$inputs/logos/picture.png" logo.pbm
preview_option logo-width-4097 --make-logo --width 4097 "$inputs/logos/picture.png" logo.pbm
preview_option logo-width-x --make-logo --width x "$inputs/logos/picture.png" logo.pbm
preview_option logo-one --make-logo "$inputs/logos/picture.png"
preview_option logo-broken --make-logo "$inputs/logos/broken.png" logo.pbm
preview_option logo-missing --make-logo "$inputs/logos/none.png" logo.pbm
preview_option logo-unwritable --make-logo "$inputs/logos/picture.png" "$inputs/no-such-folder/logo.pbm"
preview_option logo-pdf-output --make-logo "$inputs/logos/picture.png" logo.pdf

ppd58=PPD=$inputs/ppd/bristel-escpos-58mm.ppd
filter_case() { add "filter-$1" "$2" "${@:3}"; }
filter_case five-arguments - "BRISTEL_CONFIG=$example" filter 1 alice order 1
filter_case eight-arguments - "BRISTEL_CONFIG=$example" filter 1 alice order 1 "" "$job" extra
filter_case stdin "$job" "BRISTEL_CONFIG=$example" "$ppd58" filter 2 alice order 1 ""
filter_case two-copies - "BRISTEL_CONFIG=$example" "$ppd58" filter 3 alice order 2 "BristelCut=None BristelDrawerPin=5" "$job"
filter_case zero-copies - "BRISTEL_CONFIG=$example" filter 4 alice order 0 "" "$job"
filter_case word-copies - "BRISTEL_CONFIG=$example" filter 4 alice order many "" "$job"
filter_case bad-option - "BRISTEL_CONFIG=$example" filter 5 alice order 1 "BristelCodePage=KLINGON BristelColumns=x" "$job"
filter_case options - "BRISTEL_CONFIG=$example" filter 5 alice order 1 "BristelCodePage=PC437 BristelCodes=Raster BristelCutFeed=9 BristelDrawerOnTime=100" "$job"
filter_case no-config - filter 6 alice order 1 "" "$job"
filter_case config-missing - "BRISTEL_CONFIG=$inputs/no-such.conf" filter 6 alice order 1 "" "$job"
filter_case config-folder - "BRISTEL_CONFIG=$inputs/configs/folder.conf" filter 6 alice order 1 "" "$job"
filter_case config-garbage - "BRISTEL_CONFIG=$inputs/configs/garbage.conf" filter 6 alice order 1 "" "$job"
filter_case config-bad-values - "BRISTEL_CONFIG=$inputs/configs/bad-values.conf" filter 6 alice order 1 "" "$job"
filter_case config-bad-logo - "BRISTEL_CONFIG=$inputs/configs/with-bad-logo.conf" filter 6 alice order 1 "" "$logojob"
filter_case config-logo - "BRISTEL_CONFIG=$inputs/configs/with-logo.conf" filter 6 alice order 1 "" "$logojob"
filter_case ppd-missing - "BRISTEL_CONFIG=$example" "PPD=$inputs/no-such.ppd" filter 7 alice order 1 "" "$job"
filter_case input-missing - "BRISTEL_CONFIG=$example" filter 8 alice order 1 "" "$inputs/no-such.xml"
filter_case input-folder - "BRISTEL_CONFIG=$example" filter 8 alice order 1 "" "$inputs"
filter_case input-empty-name "$job" "BRISTEL_CONFIG=$example" filter 8 alice order 1 "" ""
filter_case title - "BRISTEL_CONFIG=$example" filter 9 alice $'Tavolo %2\nSTATE: +media-empty-error' 1 "" \
    "$inputs/documents/gen-printFullOrderReceipt-cut45.xml"
filter_case full-disk - "BRISTEL_CONFIG=$example" filter 10 alice order 1 "" "$job" '>/dev/full'

cat >"$work/run-cases.sh" <<'RUNNER'
# Sourced with B (the programs' folder), RUN (the runs' folder) and a file of cases.
run() {
    local name=$1 input=$2 program
    shift 2
    local environment=()
    while [[ $1 == *=* ]]; do environment+=("$1"); shift; done
    case $1 in
    compile) program=$B/bristel-compile ;;
    render) program=$B/bristel-render ;;
    preview) program=$B/bristel-preview ;;
    filter) program=$B/bristeltoescpos ;;
    esac
    shift
    local output=stdout arguments=("$@")
    # The filter's "printer" is its standard output; '>/dev/full' as the last word sends it there.
    if [ ${#arguments[@]} -gt 0 ] && [ "${arguments[-1]}" = ">/dev/full" ]; then
        output=/dev/full
        unset 'arguments[-1]'
    fi
    mkdir -p "$RUN/$name"
    cd "$RUN/$name"
    local status=0
    if [ "$input" = - ]; then
        env "${environment[@]}" "$program" "${arguments[@]}" </dev/null >"$output" 2>stderr || status=$?
    else
        env "${environment[@]}" "$program" "${arguments[@]}" <"$input" >"$output" 2>stderr || status=$?
    fi
    echo "$status" >status
}
while IFS= read -r line; do
    eval "run $line"
done <"$CASES"
RUNNER

jobs=$(nproc)
run_with() {
    local bin=$1 side=$2
    rm -rf "$work/run" "$work/chunk."* "$work/bin"
    mkdir -p "$work/run" "$work/bin"
    # The same path for both builds: messages and --help name the program as it was started.
    cp "$bin"/bristel-compile "$bin"/bristel-render "$bin"/bristel-preview "$bin"/bristeltoescpos "$work/bin/"
    split -n "r/$jobs" "$cases" "$work/chunk."
    local pids=()
    for chunk in "$work/chunk."*; do
        B=$work/bin RUN=$work/run CASES=$chunk bash "$work/run-cases.sh" &
        pids+=($!)
    done
    for pid in "${pids[@]}"; do wait "$pid"; done
    rm -f "$work/chunk."*
    # A PDF names the moment it was made.
    find "$work/run" -name '*.pdf' -exec perl -0777 -pi -e 's{/CreationDate \(D:[^)]*\)}{/CreationDate (D:)}g' {} +
    mv "$work/run" "$work/$side"
}
echo "compare-outputs: $(wc -l <"$cases") runs of each build, $(ls "$inputs/documents" | wc -l) documents, in $work"
run_with "$old" old
run_with "$new" new

differences=0
while IFS= read -r line; do
    echo "$line"
    differences=$((differences + 1))
done < <(diff -rq "$work/old" "$work/new" || true)
echo "compare-outputs: $differences differences"
[ "$differences" -eq 0 ]
