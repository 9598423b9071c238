#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' '' '' 'Benvenuti' 'Aperto tutti i giorni'
rule 40
line 'Cassa 1'
rule 40
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma' 'P.IVA 01234567890'
rule 40
line ' Serial Number: 000123 '
rule 40
line ' Date: 12/03/2006 ' ' Time: 20:15 ' ' Table: 7 ' ' Waiter: Anna ' ' Note:  ' ' Credit: 5.00 '
rule 40
line 'CUSTOMER' ' Mario Rossi ' ' Via Verdi 3 ' '  ' ' 00100 Roma ' ' Via Po 5 ' ' Telephone: 06 1234567 ' ' License Number:  ' ' Fiscal Code: RSSMRA80A01H501U '
rule 40
line 'Num Description           Price   Amount' '  2 x Spaghetti alla ca....9.00    18.00' '  1 x =Coperto.............2.00     2.00' '  3 x Acqua minerale.......1.50     4.50' '' '    TOTAL......................    24.50' '' '    Amount not paid: 5.00'
} >expected.out
