#!/usr/bin/env bash
# Uses the library the way that the first argument names. From the environment: SOURCE and BUILD,
# the library's folders, WORK, a folder to work in, and CXX and CXXFLAGS. PREFIX names a tree where it is
# installed already.
set -euo pipefail

way=$1
prefix=${PREFIX:-$WORK/moved}
export CMAKE_GENERATOR=Ninja
unset DESTDIR CMAKE_PREFIX_PATH PKG_CONFIG_LIBDIR

configure_host() { cmake -S "$SOURCE/tests/consumer/${host:-host}" -B "$WORK/$way" --fresh "$@"; }

fail() {
  echo "$*"
  exit 1
}

# Installs to one prefix and moves it to another: nothing may remember the first.
use_install() {
  rm -rf "$WORK/first" "$prefix"
  cmake --install "$BUILD" --prefix "$WORK/first" >"$WORK/install.log"
  mv "$WORK/first" "$prefix"
  if grep -rIl -e "$WORK/first" -e "$SOURCE" "$prefix"; then
    fail "these files remember where they were made"
  fi
  "$prefix/bin/pokermath" --version
}

# To find it takes none of the packages that it was built with.
configure_with_package() {
  local hidden
  mapfile -t hidden < <(printf -- '-DCMAKE_DISABLE_FIND_PACKAGE_%s=ON\n' ODBC OpenMP pugixml utf8cpp)
  configure_host -DCMAKE_PREFIX_PATH="$prefix" "${hidden[@]}"
}

use_find_package() {
  configure_with_package
  cmake --build "$WORK/$way"
  ctest --test-dir "$WORK/$way" --output-on-failure
  ldd "$WORK/$way/host_pokermath" | grep "$prefix/.*libpokermath.so.0"
  if ldd "$WORK/$way/host_pokermath_static" | grep libpokermath; then
    fail "the static library needs the shared one"
  fi
}

use_find_package_c() {
  host=host_c configure_with_package
  cmake --build "$WORK/$way"
  ctest --test-dir "$WORK/$way" --output-on-failure
}

use_pkg_config() {
  local pkgconfig
  pkgconfig=$(dirname "$(find "$prefix" -name pokermath.pc)")
  export PKG_CONFIG_PATH=$pkgconfig
  [[ -z $(pkg-config --print-requires --print-requires-private pokermath) ]] ||
    fail "it needs other packages"
  # What only the static library needs is in no other's line.
  [[ $(pkg-config --libs pokermath) != *odbc* && $(pkg-config --static --libs pokermath) == *odbc* ]] ||
    fail "pokermath.pc gives the wrong libraries"
  # shellcheck disable=SC2046,SC2086
  "$CXX" -std=c++20 $CXXFLAGS "$SOURCE/tests/consumer/host/main.cpp" -o "$WORK/pkg_config" \
    $(pkg-config --cflags --libs pokermath)
  LD_LIBRARY_PATH=$(pkg-config --variable=libdir pokermath) "$WORK/pkg_config" |
    grep "^pokermath $(pkg-config --modversion pokermath):"
  [[ $("$prefix/bin/pokermath" --version) == "pokermath $(pkg-config --modversion pokermath)" ]]
}

# As a sub-project the library must leave the host's flags, tests, targets and install rules alone.
use_add_subdirectory() {
  configure_host -DPOKERMATH_SOURCE="$SOURCE" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
  cmake --build "$WORK/$way"
  ctest --test-dir "$WORK/$way" --output-on-failure

  local commands
  commands=$(grep -e '"command".*host/main\.cpp' "$WORK/$way/compile_commands.json")
  [[ $commands != *-W* && $commands != *-O* ]] || fail "flags of ours: $commands"
  ctest --test-dir "$WORK/$way" -N | grep -x 'Total Tests: 2'
  [[ ! -e $WORK/$way/pokermath/cli ]] || fail "it built the command-line tool"
  cmake --install "$WORK/$way" --prefix "$WORK/$way/prefix"
  [[ -z $(find "$WORK/$way/prefix" -type f 2>/dev/null) ]] || fail "it installed something"
}

# What it cannot count on is refused before anything is compiled.
use_other_machines() {
  local target words text
  while read -r target words; do
    text=$(cmake -S "$SOURCE" -B "$WORK/$way" --fresh -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY \
      -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_COMPILER_TARGET="$target" 2>&1 | tr -s '\n ' ' ') &&
      fail "$target was taken"
    [[ $text == *"$words"* ]] || fail "$target is refused for another reason: $text"
  done <<'MACHINES'
i686-linux-gnu pokermath needs a 64-bit machine
armv7-linux-gnueabihf pokermath needs a 64-bit machine
s390x-linux-gnu pokermath needs a little-endian machine
MACHINES
}

"use_$way"
