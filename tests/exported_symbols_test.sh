#!/usr/bin/env bash
# Compares the symbols that a shared library exports with its version script:
# exported_symbols_test.sh NM LIBRARY MAP
set -euo pipefail
# Symbols that match a pattern of the script are compared without their parameters.
withoutParameters=$(sed -nE 's/^ *([^" ]+)\*;$/s#^\1\\(.*#\1*#/p' "$3")
diff <("$1" --dynamic --defined-only --demangle "$2" | cut -d' ' -f3- | sed -E "$withoutParameters" | sort) \
  <(sed -nE 's/^ *"(.*)";$/\1/p; s/^ *([^" ]+::[^" ]+\*);$/\1/p' "$3" | sort)
