#!/bin/sh
# The link check fails on the fixture's user library, which calls the provider and includes its
# header without linking it, and names both faults.
#   finds-a-missing-link.sh <check> <fixture manifest> <source root>
output=$("$1" "$2" "$3")
status=$?
printf '%s\n' "$output"
fail() { echo "FAIL: $1"; exit 1; }
[ "$status" -eq 1 ] || fail "the check ended with status $status, not 1"
printf '%s\n' "$output" | grep -qF 'link_fixture_user uses 1 symbol(s) of link_fixture_provider without linking it, for example providedAnswer()' ||
    fail "the missing link is not reported"
printf '%s\n' "$output" | grep -qF 'includes "tests/links/fixture/provider/Provider.h" of link_fixture_provider, which link_fixture_user does not link' ||
    fail "the header of a library not linked is not reported"
printf '%s\n' "$output" | grep -qF '2 libraries checked, 2 problem(s)' || fail "other problems were reported"
