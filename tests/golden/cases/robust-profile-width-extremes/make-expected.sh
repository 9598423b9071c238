#!/bin/sh
# A paper width far below any real one: the columns are computed without overflow and the
# description, having no room, is printed whole.
cd "$(dirname "$0")" || exit 1
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
{
line 'Num DescriptionPriceAmount' '  2 x Spaghetti9.0018.00' '' '    TOTAL18.00'
} >expected.out
