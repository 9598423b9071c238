#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Cucina'
rule 24
rule 24
line ' 2 Spaghetti alla carb' ' 2 + Parmigiano       ' ' 2 - Pepe             ' ' 3 Birra media        ' ' 3 0.5 Limone         ' ' 1 =Coperto           '
} >expected.out
