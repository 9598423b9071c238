#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' 'Benvenuti'
rule 40
line 'Cassa 1'
rule 40
line 'Trattoria da Anna'
rule 40
line ' Serial Number: 000124 '
rule 40
line ' Date: 12/03/2006 ' ' Time: 21:40 ' ' Table: 12 ' ' Waiter: Luca ' ' Note: tavolo esterno ' ' Credit: 0.00 '
rule 40
line 'Num Description                    Price' '  3 x Primi piatti dell........    27.00' ' 12 x Bevande..................    18.00' '' '    TOTAL......................    45.00' '' '   Corrispettivo non pagato: 10.00' '  1 x Dolci....................     5.00'
} >expected.out
