#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# No column widths: quantity and amount unpadded, description 24 - 3 = 21 columns.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Ufficio'
rule 24
rule 24
line '3 x Pizza................15.00'
line '1 x Birra media alla spin3.00'
line ' x .....................'
} >expected.out
