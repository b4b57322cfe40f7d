#!/usr/bin/env bash
# Whether the table of docs/porting.md has a row for each header of platform/, and for no other:
# porting_doc_test.sh CHECKOUT
set -euo pipefail
cd "$1"
diff <(printf '%s\n' platform/*.h | LC_ALL=C sort) \
  <(sed -nE 's/^\| `(platform\/[^`]*)` \|.*/\1/p' docs/porting.md | LC_ALL=C sort)
