#!/usr/bin/env bash
# Compiles the zoom transition's tables with tuning rows of a product, right and wrong ones:
# sat_tuning_test.sh COMPILER CHECKOUT
set -euo pipefail
compiler=$1 checkout=$2
rows=$(mktemp)
trap 'rm -f "$rows"' EXIT

compile() {
  "$compiler" -std=c++20 -fsyntax-only -I"$checkout" -DCAM_SAT_TUNING="\"$rows\"" \
    "$checkout/common/sat/SatTables.cpp" 2>&1
}
row() { echo "SAT_ROW($1)" >>"$rows"; }
whole() { cp "$checkout/tests/support/SatTuning.def" "$rows"; }
refuses() { # message
  local output
  if output=$(compile) || [[ $output != *"$1"* ]]; then
    echo "not refused with \"$1\":" && cat "$rows" && exit 1
  fi
}

whole
compile
whole && row '"KX0105", 8, 1.0F, 2.0F' && refuses 'names a product of this file and a group from 1 to 7'
whole && row '"KX0102", 1, 1.0F, 2.0F' && refuses 'names a product of this file and a group from 1 to 7'
whole && row '"KX0105", 2, 1.0F, 2.0F, 3.0F' && refuses 'has 2 or 6 floats'
whole && row '"KX0105", 1, 1.0F, 2.0F' && row '"KX0105", 1, 1.0F, 2.0F' && refuses '3 or 4 rows in all'
whole && row '"KX0104", 1, 1.0F, 2.0F' && refuses '3 or 4 rows in all'
