#!/usr/bin/env bash
# The summary order writes nothing at all: its handler takes no element, not even the
# section headers, so neither the order information nor the dish reaches the output.
. "$(dirname "$0")/lines.sh"
