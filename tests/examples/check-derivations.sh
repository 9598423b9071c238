#!/usr/bin/env bash
# The committed example outputs agree with their derivations: derivations/<method>.sh writes
# the bytes examples/documents/<method>.out must hold.  Every example needs a derivation
# unless it is named on the command line as still pending; a pending one that has gained its
# derivation must leave the list.
#   check-derivations.sh <examples/documents> <derivations> [pending method...]
set -euo pipefail
documents=${1:?usage: check-derivations.sh <documents> <derivations> [pending...]}
derivations=${2:?usage: check-derivations.sh <documents> <derivations> [pending...]}
shift 2
pending=" $* "

status=0 checked=0
for out in "$documents"/*.out; do
    method=$(basename "$out" .out)
    script=$derivations/$method.sh
    if [ ! -f "$script" ]; then
        if [[ $pending != *" $method "* ]]; then
            echo "FAIL [$method]: no derivation ($script)"
            status=1
        fi
        continue
    fi
    if [[ $pending == *" $method "* ]]; then
        echo "FAIL [$method]: has a derivation but is still listed as pending"
        status=1
    fi
    if ! bash "$script" | cmp - "$out"; then
        echo "FAIL [$method]: the derivation gives other bytes than $method.out"
        diff <(od -c "$out") <(bash "$script" | od -c) | head -n 20 || true
        status=1
    fi
    checked=$((checked + 1))
done
if [ -n "${pending// /}" ]; then
    echo "$checked example outputs agree with their derivations; still pending:${pending% }"
else
    echo "$checked example outputs agree with their derivations"
fi
exit $status
