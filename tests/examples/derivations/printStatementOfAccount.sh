#!/usr/bin/env bash
# A customer's statement of account, reportdoc profile: paper 40, price 9.  Each row is the
# date and ": " left in 15 columns, the description in 40 - 15 - 9 - 3 = 13 (three columns
# reserved for a separator never written), the amount right in 9; the heading pads with
# blanks, the movements with dots.  Types print in Italian (invoice: fattura, payment:
# pagamento).
. "$(dirname "$0")/lines.sh"
line 'Trattoria da Anna s.r.l.'
rule 40
left15() { printf '%-15s' "$1"; }
line "$(left15 'Data')$(printf '%-13s' 'Descrizione')$(right 'Importo' 9)"
movement() {
    local amount
    amount=$(right "$3" 9 | tr ' ' '.')
    line "$(left15 "$1: ")$(dotted "$2" 13)$amount"
}
movement 01/03/2026 fattura 124.00
movement 05/03/2026 fattura 200.00
movement 15/03/2026 pagamento -324.00
