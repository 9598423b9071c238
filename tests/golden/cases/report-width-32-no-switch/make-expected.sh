#!/bin/sh
# Writes expected.out from hand-derived lines: each ends with CR LF CR.
# No report profile: paper 32, dotted labels 32 - 15 = 17 columns wide.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
dots() { printf "%${1}s" '' | tr ' ' '.'; }
{
line 'Ufficio'
rule 32
rule 32
line '' 'SUMMARIES' '' 'BeginDate: 01/03/2008' 'EndDate: 31/03/2008'
line '' 'PREFISCAL SUMMARY' ''
line "Number$(dots 11)40"
line "TOTAL$(dots 12)812.50"
line '' 'RECEIPTS SUMMARY' ''
line "Number$(dots 11)12"
line "Serials$(dots 10)101 - 112"
line 'Amount not paid: 0.00' 'Cash: 120.00' 'Credit Card: 30.00' 'Bancomat: 0.00' 'Other: 0.00'
line "TOTAL$(dots 12)150.00"
line ''
rule 32
line 'TAXRATE    TAXABLE        TAX     AMOUNT'
line '    10%     136.36      13.64     150.00 '
line '     4%       9.62       0.38      10.00 '
rule 32
line ''
line '' 'INVOICES SUMMARY' ''
line "Number$(dots 11)3"
line "Serials$(dots 10)21 - 23"
line "Taxable$(dots 10)90.91"
line "Tax$(dots 14)9.09"
line "TOTAL$(dots 12)100.00"
line '' 'CANCELLED DOC SUMMARY' ''
line "Number$(dots 11)2"
line "TOTAL$(dots 12)20.00"
line ''
line 'SERIAL    TOTAL      TAXRATE   '
line '105       12.50      10        '
line '106       7.50                 '
} >expected.out
