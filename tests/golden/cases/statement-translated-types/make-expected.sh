#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# The installed translation renames the headings and the movement types invoice and payment;
# "credit note" has no translation and prints as the document gives it.
# Paper 40, amount 7: date column 15, description 15.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line 'Ufficio'
rule 40
line ' Fattura N.: 000031 '
rule 40
line '28/02/2008:    pagamento.......-50.00'
line 'Data           Causale        Importo'
line '01/03/2008:    fattura.........120.00'
line '15/03/2008:    pagamento......-120.00'
line '20/03/2008:    credit note....1234567.00'
line ':              ......................'
line 'Data           Causale        Importo'
} >expected.out
