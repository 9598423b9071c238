#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# Paper 16: dotted labels are 16 - 15 = 1 column wide, so every label prints without dots.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
{
line ''
line 'Chiusura di cassa'
rule 16
line 'Ufficio'
rule 16
line 'Anna S.r.l.'
rule 16
line ' Date: 31/03/2008 ' ' Time:  ' ' Table:  ' ' Waiter:  ' ' Note: Fine mese ' ' Credit:  '
rule 16
line '' 'SUMMARIES' '' 'BeginDate: 01/03/2008' 'EndDate: 31/03/2008'
line '' 'PREFISCAL SUMMARY' ''
line 'Number40' 'TOTAL812.50'
line '' 'RECEIPTS SUMMARY' ''
line 'Number12' 'Serials101 - 112'
line 'Amount not paid: 0.00' 'Cash: 120.00' 'Credit Card: 30.00' 'Bancomat: 0.00' 'Other: 0.00'
line 'TOTAL150.00'
line ''
rule 16
line 'TAXRATE    TAXABLE        TAX     AMOUNT'
line '    10%     136.36      13.64     150.00 '
line '     4%       9.62       0.38      10.00 '
rule 16
line ''
line '' 'INVOICES SUMMARY' ''
line 'Number3' 'Serials21 - 23' 'Taxable90.91' 'Tax9.09' 'TOTAL100.00'
line '' 'CANCELLED DOC SUMMARY' ''
line 'Number2' 'TOTAL20.00'
line ''
line 'SERIAL    TOTAL      TAXRATE   '
line '105       12.50      10        '
line '106       7.50                 '
} >expected.out
