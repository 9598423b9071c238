#!/bin/sh
# Writes expected.out from hand-derived fiscal records: each ends with CR LF.
# Every category is sold once, with its whole name.
cd "$(dirname "$0")" || exit 1
record() { for text in "$@"; do printf '%s\r\n' "$text"; done; }
record '1020;1' \
       '1021;1;;2;1;;Primi piatti della tradizione romana e laziale; 42.00;1' \
       '1021;1;;3;1;;Dolci; 9.00;1' \
       '1021;1;;;1;;; ;1' \
       '1030;1;1' >expected.out
