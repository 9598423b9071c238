#!/usr/bin/env bash
# An invoice by dish categories, invoicedoc profile (paper 40, quantity 3, price 8, total
# 9); the same heading blocks as the invoice by dishes, without a delivery address.
. "$(dirname "$0")/lines.sh"
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma' 'P.IVA 01234567890'
rule 40
line ' Fattura N.: 2026/0043 '
rule 40
line ' Data: 12/03/2026 '
rule 40
line 'CLIENTE' ' Studio Bianchi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Telefono: 06 7654321 ' \
    ' Partita IVA: IT09876543210 ' ' Codice Fiscale: BNCLRA70A01H501X '
rule 40
# Category headings: no price heading, "Prezzo" over the last column (right in 9).
line "Q.tà $(printf '%-19s' 'Descrizione')$(right '' 8)$(right 'Prezzo' 9)"
# A category: " x " after the quantity, the name dotted to 40 - 3 - 8 - 9 - 3 = 17, its
# empty price column dotted, its amount right in 9.
row() { line "$(right "$1" 3) x $(dotted "$2" 17)$(right '' 8 | tr ' ' '.')$(right "$3" 9)"; }
row 8 Primi 72.00
row 8 Secondi 128.00
line ''
# The totals: an empty quantity, the label dotted to 19, an empty dotted price, the figure.
total() { line "$(right '' 3) $(dotted "$1" 19)$(right '' 8 | tr ' ' '.')$(right "$2" 9)"; }
total Imponibile 181.82
total Aliquota 10
total Imposta 18.18
total TOTALE 200.00
