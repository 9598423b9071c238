#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# Quantity 3, " x ", description 11, the empty price column 7 (dots), amount 8.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line ''
line 'Venduto del giorno'
rule 32
line 'Ufficio'
rule 32
line 'Anna S.r.l.'
rule 32
line ' Date: 31/03/2008 ' ' Time:  ' ' Table:  ' ' Waiter:  ' ' Note:  ' ' Credit:  '
rule 32
line '  3 x Pizza.............   15.00'
line '  1 x Birra media.......    3.00'
line '    x ..................        '
} >expected.out
