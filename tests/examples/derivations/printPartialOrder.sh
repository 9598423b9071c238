#!/usr/bin/env bash
# A kitchen ticket, doc profile: paper 32, quantity 3; header, date, time, table, waiter and
# note switched on.  No column heading (the order information claims its place).
. "$(dirname "$0")/lines.sh"
line 'CUCINA'
rule 32
line 'Cucina'
rule 32
line ' Data: 12/03/2026 ' ' Ora: 20:15 ' ' Tavolo: 7 ' ' Cameriere: Anna ' ' Note: Senza glutine al tavolo '
rule 32
# Quantity right in 3, a blank, the description padded with blanks to 32 - 3 - 3 = 26 (room
# for a " x " never written).
row() { line "$(right "$1" 3) $(printf '%-26s' "$2")"; }
row 2 'Spaghetti alla carbonara'
# Variants under the dish's number: "+" for 1, "-" for -1 and 0, any other quantity as given.
row 2 '+ Parmigiano'
row 2 '- Pepe'
row 1 'Tagliata di manzo'
row 1 '0.5 Rucola'
row 1 'Tiramisu (dopo)'
row 1 '- Cacao'
