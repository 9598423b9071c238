#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' 'Conto'
rule 32
line 'Cassa 2'
rule 32
line 'Trattoria da Anna' 'Via Roma 1' 'P.IVA 01234567890'
rule 32
line ' Date: 12/03/2006 ' ' Time: 20:15 ' ' Table: 7 ' ' Waiter: Anna ' ' Note:  ' ' Credit: 12.50 '
rule 32
line 'CUSTOMER' ' Mario Rossi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Telephone: 06 1234567 ' ' License Number:  ' ' Fiscal Code:  '
rule 32
line 'Num Description    Price  Amount' '  2 Spaghetti all...9.00   18.00' '  2 + Parmigiano....0.50    1.00' '  2 - Pepe..........0.00    0.00' ' 10 Acqua...........1.50   15.00' ' 10 2 Ghiaccio......0.10    2.00' '' '    TOTAL...............   36.00' ' Serial Number: 000045 '
rule 32
} >expected.out
