#!/usr/bin/env bash
# Installs the library, moves it, and builds and runs a program against what then lies there alone,
# found by CMake and by pkg-config: installed_library_test.sh BUILD CHECKOUT, with CXX set
set -euo pipefail
build=$1 checkout=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "$1"
  exit 1
}

quietly() {
  "$@" >"$work/log" 2>&1 || {
    cat "$work/log"
    fail "failed: $*"
  }
}

quietly cmake --install "$build" --prefix "$work/installed"
prefix=$work/moved
mv "$work/installed" "$prefix"
! grep -rlF -e "$checkout" -e "$work" "$prefix" || fail 'these name a path of the machine'
library=$(find "$prefix" -name libcam_common.so)
bash "$checkout/tests/hardened_binary_test.sh" "$library"

quietly cmake -S "$checkout/tests/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
quietly cmake --build "$work/cmake"
"$work/cmake/consumer"

export PKG_CONFIG_PATH=${library%/*}/pkgconfig
read -ra flags < <(pkg-config --cflags --libs cam_common)
quietly "$CXX" -std=c++20 "$checkout/tests/consumer/main.cpp" "${flags[@]}" -o "$work/consumer"
LD_LIBRARY_PATH=${library%/*} "$work/consumer"

[ -s "$prefix/include/cam_common/docs/hooks.md" ] || fail 'the headers refer to docs/hooks.md'

# Each header that is installed finds the others.
(cd "$prefix/include/cam_common" && find . -name '*.h' -printf '#include "%P"\n') >"$work/all.cpp"
quietly "$CXX" -std=c++20 -fsyntax-only "${flags[@]}" "$work/all.cpp"
