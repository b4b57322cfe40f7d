#!/usr/bin/env bash
# Whether a shared library is linked as one that ships must be: hardened_binary_test.sh LIBRARY
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

# The entries of one kind in the dynamic section, each by what stands in its brackets.
entries() { sed -nE "s/.*\($1\) .*\[(.*)\]$/\1/p" <<<"$dynamic"; }

# Both halves make RELRO full: the part that becomes read-only, and nothing left to bind later.
grep -q ' GNU_RELRO ' <<<"$headers" || fault 'nothing becomes read-only after relocation (no RELRO)'
grep -qE '\(FLAGS\).* BIND_NOW|\(BIND_NOW\)' <<<"$dynamic" || fault 'symbols are bound late (no BIND_NOW)'

grep -qE ' GNU_STACK .* RW +0x' <<<"$headers" || fault 'the stack is executable, or not said not to be'
! grep -qE ' LOAD .* (RWE|W ?E) ' <<<"$headers" || fault 'a segment is writable and executable'
! grep -q TEXTREL <<<"$dynamic" || fault 'the code has relocations (TEXTREL)'
grep -q ' UND __stack_chk_fail' <<<"$symbols" || fault 'no function has a stack guard'

for library in $(entries NEEDED); do
  case $library in
    libcam_host.so.*) ;;  # the platform's
    libstdc++.so.* | libc++.so.* | libc++abi.so.* | libunwind.so.*) ;;
    libgcc_s.so.* | libm.so.* | libc.so.* | ld-linux*.so.*) ;;
    *) fault "needs another library: $library" ;;
  esac
done
for path in $(entries 'R[A-Z]*PATH'); do
  [ "$path" = "\$ORIGIN" ] || fault "is bound to a path of a machine: $path"
done
exit $failed
