#!/usr/bin/env bash
# The full receipt of printFullOrderReceipt.xml with a QR code and two barcodes among its
# elements: the command file has no place for codes, so its bytes are the receipt's own.
exec bash "$(dirname "$0")/printFullOrderReceipt.sh"
