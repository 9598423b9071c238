#!/bin/sh
# The summary order writes nothing: the output file exists and is empty.
cd "$(dirname "$0")" || exit 1
: >expected.out
