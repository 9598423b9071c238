#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' '' 'Welcome' 'Open every day'
rule 32
line 'Cassa 1'
rule 32
line 'Trattoria' 'Via Roma 1'
rule 32
line ' Serial Number: 000123 '
rule 32
line ' Date: 12/03/2006 ' ' Time: 20:15 ' ' Table: 7 '
rule 32
} >expected.out
