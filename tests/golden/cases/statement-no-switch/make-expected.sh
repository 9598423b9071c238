#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# No report profile: paper 32, amount 0 (unpadded), description 32 - 15 - 0 - 3 = 14.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Ufficio'
rule 32
line ' Invoice Number: 000031 '
rule 32
line '28/02/2008:    payment.......-50.00'
line 'Date           Description   Amount'
line '01/03/2008:    invoice.......120.00'
line '15/03/2008:    payment.......-120.00'
line '20/03/2008:    credit note...1234567.00'
line ':              ..............'
line 'Date           Description   Amount'
} >expected.out
