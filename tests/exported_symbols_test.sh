#!/usr/bin/env bash
# Compares what a shared library exports with its version script:
# exported_symbols_test.sh NM LIBRARY MAP
set -euo pipefail
# What a pattern of the script stands for is compared without its parameters.
withoutParameters=$(sed -nE 's/^ *([^" ]+)\*;$/s#^\1\\(.*#\1*#/p' "$3")
diff <("$1" --dynamic --defined-only --demangle "$2" | cut -d' ' -f3- | sed -E "$withoutParameters" | sort) \
  <(sed -nE 's/^ *"(.*)";$/\1/p; s/^ *([^" ]+::[^" ]+\*);$/\1/p' "$3" | sort)
