#!/usr/bin/env bash
# A full receipt, receiptdoc profile: paper 40, quantity 3, price 8, total 9; geometry with
# a top margin of 1, header, company, billing address, telephone, date, time, table, waiter
# and customer switched on; labels in Italian.
. "$(dirname "$0")/lines.sh"
line ''
line 'Welcome to Trattoria da Anna' 'Open every day'
rule 40
line 'Cassa 1'
rule 40
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma' 'P.IVA 01234567890'
rule 40
# Indented lines carry their one blank again before the line end.
line ' Numero: 000123 '
rule 40
line ' Data: 12/03/2026 ' ' Ora: 20:15 ' ' Tavolo: 7 ' ' Cameriere: Anna '
rule 40
# The billing address is printed one part per line, split at ", ".
line 'CLIENTE' ' Mario Rossi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Italia ' ' Telefono: 06 1234567 '
rule 40
# Headings: quantity right in 3 (never cut), the description in 40 - 3 - 8 - 9 - 1 = 19.
line "Q.tà $(printf '%-19s' 'Descrizione')$(right 'Prezzo' 8)$(right 'Importo' 9)"
# Dishes: the description dotted to 40 - 3 - 8 - 9 - 3 = 17, the price right in 8 filled
# with dots, the amount right in 9; variants are not listed on a receipt.
row() { line "$(right "$1" 3) x $(dotted "$2" 17)$(right "$3" 8 | tr ' ' '.')$(right "$4" 9)"; }
row 2 'Spaghetti alla carbonara' 9.00 18.00
row 1 'Tagliata di manzo' 16.50 16.50
row 3 'Acqua minerale' 1.50 4.50
line ''
# The total: an empty quantity, the label dotted to 19, an empty price filled with dots.
line "$(right '' 3) $(dotted 'TOTALE' 19)$(right '' 8 | tr ' ' '.')$(right 39.00 9)"
line '' '    Importo non pagato: 0.00'
