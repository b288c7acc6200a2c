#!/usr/bin/env bash
# Holds the shared library's binary interface against that of the last release, which is described in
# libpokermath.abi.gz: programs that were linked with that one have to go on running. What is new breaks
# nobody. A change that does needs another SOVERSION, and then
#
#   tests/abi/abi.sh store
#
# which writes the description anew, as every release does. LIBRARY: of the build with POKERMATH_DESCRIBED.
set -euo pipefail

here=$(dirname "$(readlink -f "$0")")
library=${LIBRARY:-$here/../../build/release/libpokermath.so}
headers=$here/../../include/pokermath
stored=$here/libpokermath.abi.gz
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "$*"
  exit 1
}

# Only what hosts see: types that the headers define.
describe() {
  abidw --exported-interfaces-only --headers-dir "$headers" --drop-private-types --no-comp-dir-path \
    --no-corpus-path --no-show-locs --no-parameter-names "$library"
}

# What of a description is missing or changed in another; fails if something is.
changes() { abidiff --no-added-syms --drop-private-types "$@"; }

soname() { grep -o "soname='[^']*'" "$1" | head -n 1; }

if [[ ${1:-} == store ]]; then
  describe | gzip -9n >"$stored"
  exit
fi

describe >"$scratch/now.abi"
gunzip -c "$stored" >"$scratch/release.abi"
for file in now release; do
  (($(grep -c "<elf-symbol .*type='func-type'" "$scratch/$file.abi") > 300)) ||
    fail "$file.abi describes hardly any function"
  (($(grep -c "<function-decl .*mangled-name=" "$scratch/$file.abi") > 300)) ||
    fail "$file.abi describes hardly any type of a function"
done
if [[ $(soname "$scratch/now.abi") != "$(soname "$scratch/release.abi")" ]]; then
  echo "another SOVERSION than the last release's: whatever it is, hosts are linked anew"
  exit
fi
changes "$scratch/release.abi" "$scratch/now.abi" ||
  fail "programs that were linked with the last release would break: see the lines above"

# It would notice a function that went away, and a class of another size.
sed 's/_Z10eval_7handPi/_Z10eval_7handPl/' "$scratch/release.abi" >"$scratch/gone.abi"
sed "s/\(<class-decl name='CDeck' size-in-bits='\)/\11/" "$scratch/release.abi" >"$scratch/larger.abi"
for file in gone larger; do
  if cmp -s "$scratch/$file.abi" "$scratch/release.abi"; then fail "$file.abi has no change"; fi
  if changes "$scratch/$file.abi" "$scratch/now.abi" >/dev/null; then
    fail "the change in $file.abi was not noticed"
  fi
done
