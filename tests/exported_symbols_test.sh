#!/usr/bin/env bash
# Compares what a shared library exports with its version script: exported_symbols_test.sh LIBRARY MAP
set -euo pipefail
diff <(nm --dynamic --defined-only --demangle "$1" | cut -d' ' -f3- | sort) \
  <(sed -nE 's/^ *"(.*)";$/\1/p' "$2" | sort)
