#!/usr/bin/env bash
# Checks the hardening of a shared library and what it depends on: hardened_binary_test.sh LIBRARY
set -euo pipefail
export LC_ALL=C

headers=$(readelf --program-headers --wide "$1")
dynamic=$(readelf --dynamic --wide "$1")
symbols=$(readelf --dyn-syms --wide "$1")
failed=0

fault() {
  echo "$1"
  failed=1
}

# Prints the bracketed values of the entries of one kind in the dynamic section.
entries() { sed -nE "s/.*\($1\) .*\[(.*)\]$/\1/p" <<<"$dynamic"; }

# Full RELRO needs both.
grep -q ' GNU_RELRO ' <<<"$headers" || fault 'no RELRO'
grep -qE '\(FLAGS\).* BIND_NOW|\(BIND_NOW\)' <<<"$dynamic" || fault 'no BIND_NOW'

grep -qE ' GNU_STACK .* RW +0x' <<<"$headers" || fault 'the stack may be executable'
! grep -qE ' LOAD .* (RWE|W ?E) ' <<<"$headers" || fault 'a segment is writable and executable'
! grep -q TEXTREL <<<"$dynamic" || fault 'the code has relocations (TEXTREL)'
grep -q ' UND __stack_chk_fail' <<<"$symbols" || fault 'no function has a stack guard'

for library in $(entries NEEDED); do
  case $library in
    libcam_host.so.*) ;;  # the platform
    libstdc++.so.* | libc++.so.* | libc++abi.so.* | libunwind.so.*) ;;
    libgcc_s.so.* | libm.so.* | libc.so.* | ld-linux*.so.*) ;;
    *) fault "unexpected dependency: $library" ;;
  esac
done
for path in $(entries 'R[A-Z]*PATH'); do
  [ "$path" = "\$ORIGIN" ] || fault "absolute run path: $path"
done
exit $failed
