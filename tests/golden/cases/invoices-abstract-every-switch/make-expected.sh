#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# Paper 40, quantity 2, price 6, amount 9: item-type rows keep 20 columns for the name,
# the heading and the totals 22.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line ''
line 'Trattoria da Anna'
rule 40
line 'Cassa 2'
rule 40
line 'Anna S.r.l.' 'P.IVA 01234567890'
rule 40
line ' Invoice Number: 000032 '
rule 40
line ' Date: 14/03/2006 ' ' Time:  ' ' Table: 12 ' ' Waiter:  ' ' Note:  ' ' Credit: 10.00 '
rule 40
line 'CUSTOMER' ' Ditta Bianchi ' ' Corso Italia 10 ' ' 20100 Milano ' ' Italia ' ' Telephone: 02 7654321 ' ' License Number:  ' ' Fiscal Code:  '
rule 40
line 'Num Description                     Price'
line ' 3 x Primi.....................    24.00'
line '12 x Secondi di carne e p......   130.00'
line ''
line '   Taxable.....................   127.27'
line '   TaxRate.....................       21'
line '   Tax.........................    26.73'
line '   TOTAL.......................   154.00'
line '   x Vini......................         '
} >expected.out
