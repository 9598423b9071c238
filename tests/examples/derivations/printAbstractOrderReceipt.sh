#!/usr/bin/env bash
# A summary receipt by dish categories, receiptdoc profile (paper 40, quantity 3, price 8,
# total 9).  No geometry and no headers element: no top margin, no header lines, no
# printer's name.
. "$(dirname "$0")/lines.sh"
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma'
rule 40
line ' Numero: 000124 '
rule 40
line ' Data: 12/03/2026 ' ' Ora: 22:05 ' ' Tavolo: 9 ' ' Cameriere: Luca '
rule 40
# Category headings: no price heading, "Prezzo" over the last column (right in 9).
line "Q.tà $(printf '%-19s' 'Descrizione')$(right '' 8)$(right 'Prezzo' 9)"
# A category's amount stands in the last column; its empty price column is dotted.
row() { line "$(right "$1" 3) x $(dotted "$2" 17)$(right '' 8 | tr ' ' '.')$(right "$3" 9)"; }
row 3 Primi 27.00
row 2 Secondi 33.00
row 4 Bevande 10.00
line ''
line "$(right '' 3) $(dotted 'TOTALE' 19)$(right '' 8 | tr ' ' '.')$(right 70.00 9)"
# The summary receipt's own label, in Italian whatever the translation, three blanks in.
line '' '   Corrispettivo non pagato: 20.00'
