#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Cassa 1'
rule 32
line ' Invoice Number: 000031 '
rule 32
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
