#!/usr/bin/env bash
# Writes the benchmark documents into a folder: a typical job (a receipt of 20 items with
# every header block) and a large one (100,000 items, about 9 MB).
#   bench/make-documents.sh <folder>
set -euo pipefail
out=${1:?folder}
mkdir -p "$out"
receipt() {
    awk -v items="$1" 'BEGIN {
        print "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        print "<document>"
        print "  <method name=\"printFullOrderReceipt\"/>"
        print "  <printers name=\"Cassa 1\" charsize=\"1\" ipaddress=\"192.168.1.50\" port=\"9100\"/>"
        print "  <geometry/>"
        print "  <headers line1=\"Welcome to Trattoria da Anna\" line2=\"Open every day\"/>"
        print "  <company name=\"Trattoria da Anna s.r.l.\" address=\"Via Roma 1, 00100 Roma\"/>"
        print "  <receipt serialnumber=\"000123\"/>"
        print "  <orderinfo date=\"12/03/2026\" time=\"20:15\" table=\"7\" waiter=\"Anna\"/>"
        print "  <customer name=\"Mario Rossi\" billingaddress=\"Via Verdi 3, 00100 Roma, Italia\" telephone=\"06 1234567\"/>"
        for (i = 1; i <= items; i++)
            printf "  <receipe number=\"%d\" name=\"Spaghetti alla carbonara n. %d\" price=\"9.00\" totalPrice=\"%d.00\"/>\n", i % 9 + 1, i, (i % 9 + 1) * 9
        print "  <total price=\"999.00\"/>"
        print "  <notPaid price=\"0.00\"/>"
        print "</document>"
    }'
}
receipt 20 >"$out/receipt-20.xml"
receipt 100000 >"$out/receipt-100000.xml"
