#!/usr/bin/env bash
# A delivery note, deliverydoc profile: paper 40, quantity 3, no price columns; header,
# company, delivery address, telephone, date, time, customer and note switched on.
. "$(dirname "$0")/lines.sh"
line 'Trattoria da Anna s.r.l.' 'Via Roma 1, 00100 Roma'
rule 40
line ' DDT N.: D-0318 '
rule 40
line ' Data: 12/03/2026 ' ' Ora: 19:30 ' ' Note: Citofono Rossi, 2 piano '
rule 40
# The delivery address one part per line, split at ", ".
line 'CLIENTE' ' Mario Rossi ' ' Via Verdi 3 ' ' 00100 Roma ' ' Telefono: 06 1234567 '
rule 40
# Quantity right in 3, a blank, the description padded with blanks to 40 - 3 - 3 = 34.
row() { line "$(right "$1" 3) $(printf '%-34s' "$2")"; }
row 2 'Pizza margherita'
row 1 '+ Bufala'
row 1 'Calzone'
row 4 'Birra artigianale 33cl'
