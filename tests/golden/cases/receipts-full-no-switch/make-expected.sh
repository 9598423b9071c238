#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Cassa 1'
rule 32
line ' Serial Number: 000123 '
rule 32
rule 32
line 'Num Description                    PriceAmount' '2 x Spaghetti alla carbonara.....9.0018.00' '1 x =Coperto.....................2.002.00' '3 x Acqua minerale...............1.504.50' '' ' TOTAL..........................24.50' '' '    Amount not paid: 5.00'
} >expected.out
