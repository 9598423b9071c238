#!/usr/bin/env bash
# A fiscal receipt by kinds of dishes: one sale record per kind, its name whole (the
# description width cuts only single dishes), the price after a blank, quantity 1; opened
# by 1020 and closed by 1030.  The credit-card payment writes no record: the command-file
# back-end writes payments for a "totals" element only, and this one is "total".
. "$(dirname "$0")/lines.sh"
record 1020 1
record 1021 1 '' 2 1 '' 'Primi e secondi piatti della cucina' ' 60.00' 1
record 1021 1 '' 1 1 '' 'Bevande' ' 10.00' 1
record 1030 1 1
