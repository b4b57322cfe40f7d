#!/usr/bin/env bash
# Checks that tuning rows of the zoom transition (SAT) with an unknown product or group, or with a number of
# floats other than 2 or 6, do not compile: sat_tuning_test.sh COMPILER CHECKOUT
set -euo pipefail
compiler=$1 checkout=$2
rows=$(mktemp)
trap 'rm -f "$rows"' EXIT

compiles() { # row
  echo "SAT_ROW($1)" >"$rows"
  "$compiler" -std=c++20 -fsyntax-only -I"$checkout" -DCAM_SAT_TUNING="\"$rows\"" \
    "$checkout/common/sat/SatTables.cpp" 2>/dev/null
}

six='1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F'
compiles '"KX0105", 7, 1.0F, 2.0F'
compiles "\"KX0105\", 7, $six"
for row in '"KX0105", 8, 1.0F, 2.0F' '"KX0105", 0, 1.0F, 2.0F' '"KX0102", 1, 1.0F, 2.0F' \
  '"KX0105", 7, 1.0F' '"KX0105", 7, 1.0F, 2.0F, 3.0F' "\"KX0105\", 7, $six, 7.0F"; do
  if compiles "$row"; then
    echo "compiles: $row"
    exit 1
  fi
done
