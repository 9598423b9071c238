#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line ' Invoice Number: F-2006-17 '
rule 20
line ' Delivery Number: D-9 '
rule 20
line 'CUSTOMER' ' Uno ' ' Via Roma 1 ' ' 00100 Roma ' ' Italia ' ' Via Po 5 '
rule 20
line 'CUSTOMER' ' Due ' ' Via Roma 1 ' '  ' ' Roma '
rule 20
line 'CUSTOMER' '  ' ' Piazza Navona 2 ' ' Roma '
rule 20
line 'Bar'
rule 20
line ' Serial Number:  '
rule 20
} >expected.out
