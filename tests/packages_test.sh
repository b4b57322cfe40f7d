#!/usr/bin/env bash
# Builds and runs a program with the installed CMake package, add_subdirectory and pkg-config:
# packages_test.sh BUILD CHECKOUT, with CXX set. The installed tree is moved first: it must be relocatable.
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

buildConsumer() { # directory [cmake option...]
  local directory=$work/$1
  shift
  quietly cmake -S "$checkout/tests/consumer" -B "$directory" -G Ninja "$@"
  quietly cmake --build "$directory"
  "$directory/consumer"
}

quietly cmake --install "$build" --prefix "$work/installed"
prefix=$work/moved
mv "$work/installed" "$prefix"
! grep -rlF -e "$checkout" -e "$work" "$prefix" || fail 'these files contain a path of the machine'
library=$(find "$prefix" -name libcam_common.so)
bash "$checkout/tests/hardened_binary_test.sh" "$library"
[ -s "$prefix/share/doc/cam_common/hooks.md" ] || fail 'the headers refer to docs/hooks.md'
"$prefix/bin/camhook" tags MTK_HESK_FRAME_INDEX >"$work/tags" || fail 'the installed camhook does not run'
strip --strip-all "$prefix/bin/camhook"
"$prefix/bin/camhook" replay --json --steps "$checkout/scenarios/preview.json" >"$work/trace" 2>"$work/error"
[ "$(wc -l <"$work/error")" -eq 1 ] || fail "a stripped camhook does not give one warning: $(cat "$work/error")"
grep -q '"step": "?"' "$work/trace" || fail 'a stripped camhook shows no writes'
! grep '"step": "[^?]' "$work/trace" || fail 'a stripped camhook names steps'

buildConsumer installed -DCMAKE_PREFIX_PATH="$prefix"
buildConsumer subdirectory -DCAM_SOURCE="$checkout"

export PKG_CONFIG_PATH=${library%/*}/pkgconfig
read -ra flags < <(pkg-config --cflags --libs cam_common)
quietly "$CXX" -std=c++20 "$checkout/tests/consumer/main.cpp" "${flags[@]}" -o "$work/consumer"
LD_LIBRARY_PATH=${library%/*} "$work/consumer"

# The installed headers are complete.
(cd "$prefix/include/cam_common" && find . -name '*.h' -printf '#include "%P"\n') >"$work/all.cpp"
quietly "$CXX" -std=c++20 -fsyntax-only "${flags[@]}" "$work/all.cpp"
