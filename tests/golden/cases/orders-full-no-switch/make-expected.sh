#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Cassa 2'
rule 32
rule 32
line 'Num Description                    PriceAmount' '2 Spaghetti alla carbonara.......9.0018.00' '2 + Parmigiano...................0.501.00' '2 - Pepe.........................0.000.00' '10 Acqua..........................1.5015.00' '10 2 Ghiaccio.....................0.102.00' '' ' TOTAL..........................36.00' ' Serial Number: 000045 '
rule 32
} >expected.out
