#!/bin/sh
# Writes expected.out from hand-derived fiscal records: each ends with CR LF.
# No description width configured: names are cut to the back-end's 32 columns.
cd "$(dirname "$0")" || exit 1
record() { for text in "$@"; do printf '%s\r\n' "$text"; done; }
record '1020;1' \
       '1021;1;;2;1;;Spaghetti alla carbonara con gua; 8.00;3' \
       '1021;1;;1;1;;Tagliata bue; 18.50;2' \
       '1021;1;;1;1;;Acqua; 1,50;2' \
       '1021;1;;;1;;Coperto; ;' \
       '1030;1;1' >expected.out
