#!/bin/sh
# Writes expected.out by hand-derived lines: each ends with CR LF CR.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line '' '' 'Comanda' 'Sala 1'
rule 32
line 'Cucina'
rule 32
line 'Trattoria da Anna' 'Via Roma 1'
rule 32
line ' Date: 12/03/2006 ' ' Time: 20:15 ' ' Table: 7 ' ' Waiter: Anna ' ' Note: senza glutine ' ' Credit: 0 '
rule 32
line 'CUSTOMER' ' Mario Rossi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Via Po 5 ' ' Telephone: 06 1234567 ' ' License Number: L-42 ' ' Fiscal Code: RSSMRA80A01H501U '
rule 32
line '  2 Spaghetti alla carbonara c' '  2 + Parmigiano              ' '  2 - Pepe                    ' '  3 Birra media               ' '  3 0.5 Limone                ' '  1 =Coperto                  '
} >expected.out
