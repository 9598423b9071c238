# shellcheck shell=bash
# Shared by scripts/check-abi.sh and scripts/update-abi.sh; sourced.

# The SONAME an ABI description records.
soname() { grep -o -m 1 "soname='[^']*'" "$1" | cut -d"'" -f2; }

# Whether an abidiff report ($2, status $1) shows a change that breaks programs built against
# the old library: abidiff's own verdict (a function or variable removed), or a class that
# changed its size or the place of a member, which abidiff reports without that verdict.
breaks() { (($1 & 8)) || grep -qE 'type size changed|offset changed' "$2"; }
