#!/usr/bin/env bash
# Compares the ABI of a built library with the recorded one: abi_test.sh LIBRARY CHECKOUT
set -euo pipefail

name=${1##*/}
record=$2/common/${name%%.so*}.abi
built=$(mktemp --suffix=.abi)
trap 'rm -f "$built"' EXIT
"$2/scripts/describe-abi" "$1" >"$built"
# Two empty descriptions would compare equal.
for description in "$built" "$record"; do
  grep -q "<class-decl .* size-in-bits='" "$description" || {
    echo "$description describes no class"
    exit 1
  }
done
abidiff --leaf-changes-only --harmless --no-show-locs "$record" "$built" || {
  echo 'The ABI has changed. If that is intended: ./check --abi records it.'
  exit 1
}
