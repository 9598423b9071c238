#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line ' Bon Nr.: 000123 '
rule 32
line ' Datum: 12/03/2006 '
rule 32
line 'KUNDE' ' Mario Rossi ' ' Tel.: 06 1234567 '
rule 32
line 'Stk Artikel        Preis   Summe' '  2 x Spaghetti.....8.00   16.00' '' '    GESAMT..............   16.00' '' '    Offen: 5.00' '  3 x Primi.............   24.00' '' '   Corrispettivo non pagato: 4.00'
} >expected.out
