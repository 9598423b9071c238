#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Num Description  Price  Amount' '  2 Spaghetti...9.00   18.00' '  2 + Parmigiano...0.50    1.00' '1234 Grissini...0.10  123.40' '' '    TOTAL.......  142.40' ''
rule 10
} >expected.out
