# Helpers of the example derivations, sourced by each <method>.sh; each script writes the
# bytes its example must compile to on standard output.
#   line TEXT...         one text line each, ended CR LF CR as the printer side expects
#   rule WIDTH           a line of WIDTH '=' signs
#   record FIELDS...     one fiscal-printer record: the fields joined by ';', ended CR LF
#   cut TEXT WIDTH       TEXT cut to at most WIDTH characters
#   dotted TEXT WIDTH    TEXT cut or filled with dots to exactly WIDTH characters
#   right TEXT WIDTH     TEXT right-aligned in WIDTH columns (never cut)
line() { for text in "$@"; do printf '%s\r\n\r' "$text"; done; }
rule() { printf "%${1}s\r\n\r" '' | tr ' ' '='; }
record() {
    local IFS=';'
    printf '%s\r\n' "$*"
}
cut() { printf '%s' "${1:0:$2}"; }
dotted() {
    local text=${1:0:$2}
    printf '%s' "$text"
    printf "%$(($2 - ${#text}))s" '' | tr ' ' '.'
}
right() { printf "%${2}s" "$1"; }
