#!/usr/bin/env bash
# A fiscal receipt by dishes: names cut to fiscaldoc.descriptionWidth (20), the price after
# a blank, the dish's number as the quantity.  No payment record for "total" (see the
# abstract fiscal receipt).
. "$(dirname "$0")/lines.sh"
width=20
record 1020 1
record 1021 1 '' 2 1 '' "$(cut 'Spaghetti alla carbonara' $width)" ' 9.00' 2
record 1021 1 '' 2 1 '' "$(cut 'Tagliata di manzo con rucola e grana' $width)" ' 16.50' 1
record 1021 1 '' 1 1 '' "$(cut 'Acqua minerale' $width)" ' 1.50' 3
record 1030 1 1
