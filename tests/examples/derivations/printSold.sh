#!/usr/bin/env bash
# The day's sold items, solddoc profile: paper 40, quantity 4, price 0, total 9.
. "$(dirname "$0")/lines.sh"
line 'VENDUTO DEL GIORNO' '12/03/2026'
rule 40
# The printer's name heads every document after the header lines: no printers element here.
line ''
rule 40
# quantity right in 4, " x ", the description dotted to 40 - 4 - 0 - 9 - 3 = 24, an empty
# price column, the amount right in 9.
row() { line "$(right "$1" 4) x $(dotted "$2" 24)$(right "$3" 9)"; }
row 48 'Spaghetti alla carbonara' 432.00
row 31 'Tagliata di manzo' 511.50
row 96 'Acqua minerale' 144.00
