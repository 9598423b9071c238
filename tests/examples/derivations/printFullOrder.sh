#!/usr/bin/env bash
# A priced ticket (pre-bill), prefiscaldoc profile: paper 32, quantity 3, price 7, total 8;
# header, date, time, table and waiter switched on.
. "$(dirname "$0")/lines.sh"
line 'PRECONTO'
rule 32
line 'Bar'
rule 32
line ' Data: 12/03/2026 ' ' Ora: 21:40 ' ' Tavolo: 7 ' ' Cameriere: Anna '
rule 32
# Headings and rows: quantity right in 3, a blank, the description in 32 - 3 - 7 - 8 - 1 = 13
# (headings padded with blanks, rows with dots), the price right in 7 (rows: dotted), the
# amount right in 8.
line "Q.tà $(printf '%-13s' 'Descrizione')$(right 'Prezzo' 7)$(right 'Importo' 8)"
row() { line "$(right "$1" 3) $(dotted "$2" 13)$(right "$3" 7 | tr ' ' '.')$(right "$4" 8)"; }
row 2 'Spaghetti alla carbonara' 9.00 18.00
# Variants under the dish's number, "+" added and "-" taken away.
row 2 '+ Parmigiano' 0.50 1.00
row 2 '- Pepe' 0.00 0.00
row 1 'Tagliata di manzo' 16.50 16.50
# "=Coperto": a name beginning with "=" stays off the priced ticket.
line ''
line "$(right '' 3) $(dotted 'TOTALE' 13)$(right '' 7 | tr ' ' '.')$(right 35.50 8)"
