#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' ''
line 'Trattoria da Anna' 'Grazie e arrivederci'
rule 32
line 'Cassa 1'
rule 32
line 'Anna S.r.l.' 'Via Roma 1, Roma' 'P.IVA 01234567890'
rule 32
line ' Invoice Number: 000031 '
rule 32
line ' Date: 12/03/2006 ' ' Time: 20:15 ' ' Table: 7 ' ' Waiter: Anna ' ' Note: Senza glutine ' ' Credit: 0.00 '
rule 32
line 'CUSTOMER' ' Mario Rossi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Piazza Navona 1 ' ' Telephone: 06 1234567 ' ' License Number: AB123 ' ' Fiscal Code: RSSMRA70A01H501U '
rule 32
line 'Num Description    Price  Amount'
line '  1 Pizza Margher...5.00    5.00'
line '  2 Beer............3.00    6.00'
line ''
line '    Taxable.............    9.09'
line '    TaxRate.............      21'
line '    Tax.................    1.91'
line '    TOTAL...............   11.00'
line ' 10 Grissini........0.10    1.00'
line ''
line '    Taxable.............        '
line '    TaxRate.............        '
line '    Tax.................        '
line '    TOTAL...............        '
} >expected.out
