#!/usr/bin/env bash
# Writes to standard output one receipt as a foreign program writes it, repeated until it is at
# least the given number of bytes long (one receipt for 1): 80 mm, bold title, a QR code stored
# and printed, a CODE39 barcode, a graphic, a tab and bytes of another printer language.
#   bench/make-foreign-receipt.sh <bytes>
set -euo pipefail
perl -e '
    my $qr = "https://example.org/r/12345";
    my $receipt = "\x1b@\x1bt\x13\x1ba\x01\x1bE\x01TRATTORIA\n\x1bE\x00\x1ba\x00"
        . join("", map { sprintf("%2d x Piatto %-20s %8.2f\n", $_ % 3 + 1, $_, $_ * 1.5) } 1 .. 12)
        . "\x1d(k" . pack("v", length($qr) + 3) . "1P0" . $qr . "\x1d(k\x03\x001Q0"
        . "\x1dk\x04*12345*\x00\x1d(L\x06\x000p0\x01\x01\x31\tTOTALE\x1b\x78\x07\n\x1dVB\x10";
    my $count = int($ARGV[0] / length($receipt)) + 1;
    print $receipt x $count;' "${1:?bytes}"
