#!/usr/bin/env bash
# The daily report, reportdoc profile: paper 40; company switched on; labels in Italian.
. "$(dirname "$0")/lines.sh"
# A label dotted to 40 - 15 = 25 columns, the value right after it.
dotline() { line "$(dotted "$1" 25)$2"; }
# A title between two empty lines.
title() { line '' "$1" ''; }
line 'Trattoria da Anna s.r.l.'
rule 40
title 'RIEPILOGHI'
line 'Dal: 01/03/2026' 'Al: 31/03/2026'
title 'RIEPILOGO PRECONTI'
dotline Numero 212
dotline TOTALE 6480.50
title 'RIEPILOGO RICEVUTE'
dotline Numero 180
dotline Numerazione '000101 - 000280'
line 'Non pagato: 45.00' 'Contanti: 3120.00' 'Carta di credito: 2250.50' 'Bancomat: 610.00' 'Altro: 0.00'
dotline TOTALE 6025.50
line ''
rule 40
# The tax table: the rate right in 6, the other columns right in 10, a blank between them;
# a row has "% " after the rate and one blank more at its end.
line "$(right 'ALIQ.' 6) $(right 'IMPONIBILE' 10) $(right 'IMPOSTA' 10) $(right 'IMPORTO' 10)"
taxrow() { line "$(right "$1" 6)% $(right "$2" 10) $(right "$3" 10) $(right "$4" 10) "; }
taxrow 10 5032.27 503.23 5535.50
taxrow 22 401.64 88.36 490.00
# The invoices' summary closes the table and leaves an empty line before its own title.
rule 40
line ''
title 'RIEPILOGO FATTURE'
dotline Numero 12
dotline Numerazione '2026/0031 - 2026/0042'
dotline Imponibile 1127.27
dotline Imposta 112.73
dotline TOTALE 1240.00
title 'RIEPILOGO DOC. ANNULLATI'
dotline Numero 2
dotline TOTALE 31.50
line ''
# Cancelled documents: serial left in 10, total left in 11, rate left in 10; the rows take
# the attributes after "number" and "totals" three at a time, by position.
cancelled() { line "$(printf '%-10s%-11s%-10s' "$1" "$2" "$3")"; }
cancelled NUMERO TOTALE ALIQ.
cancelled 000117 12.50 10
cancelled 000203 19.00 22
