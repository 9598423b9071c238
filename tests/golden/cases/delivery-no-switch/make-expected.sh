#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# Item rows as on the kitchen ticket: quantity 3, a blank, the name padded with blanks to 26.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Banco'
rule 32
line ' Delivery Number: 000077 '
rule 32
rule 32
line '  2 Spaghetti                 '
line '  2 + Parmigiano              '
line '  2 - Pepe                    '
line '  1 Tiramisu della casa con ma'
line '  1 2 Panna                   '
} >expected.out
