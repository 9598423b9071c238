#!/usr/bin/env bash
# An invoice by dishes, invoicedoc profile: paper 40, quantity 3, price 8, total 9; header,
# company, both addresses, telephone, date, customer, VAT number and fiscal code switched on.
# No headers element, so the printer's name is not printed.
. "$(dirname "$0")/lines.sh"
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma' 'P.IVA 01234567890'
rule 40
line ' Fattura N.: 2026/0042 '
rule 40
line ' Data: 12/03/2026 '
rule 40
# Billing, then delivery address, each one part per line, split at ", ".
line 'CLIENTE' ' Studio Bianchi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Piazza Navona 10 ' ' 00186 Roma ' \
    ' Telefono: 06 7654321 ' ' Partita IVA: IT09876543210 ' ' Codice Fiscale: BNCLRA70A01H501X '
rule 40
# Quantity right in 3, a blank, the description in 40 - 3 - 8 - 9 - 1 = 19 (headings padded
# with blanks, rows with dots), the price right in 8 (rows: dotted), the amount right in 9.
line "Q.tà $(printf '%-19s' 'Descrizione')$(right 'Prezzo' 8)$(right 'Importo' 9)"
row() { line "$(right "$1" 3) $(dotted "$2" 19)$(right "$3" 8 | tr ' ' '.')$(right "$4" 9)"; }
row 4 'Menu pranzo di lavoro' 25.00 100.00
row 2 'Vino rosso della casa' 12.00 24.00
line ''
# The totals: rows with an empty quantity and price, the figure in the last column.
total() { row '' "$1" '' "$2"; }
total Imponibile 112.73
total Aliquota 10
total Imposta 11.27
total TOTALE 124.00
