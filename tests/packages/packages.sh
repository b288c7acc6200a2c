#!/usr/bin/env bash
# Makes the Debian packages of a build, installs them below a folder, uses what is there, and removes
# them again. From the environment what consumer.sh wants: SOURCE, BUILD, WORK, CXX and
# CXXFLAGS; and PYTHON, which is ON where a package for it is to be there.
set -euo pipefail

fail() {
  echo "$*"
  exit 1
}

debs=$WORK/debs root=$WORK/root
rm -rf "$debs" "$root"
# Quickly packed: they are thrown away.
cpack -G DEB --config "$BUILD/CPackConfig.cmake" -B "$debs" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip
ls "$debs"/*.deb
lintian --allow-root --fail-on error,warning "$debs"/*.deb

mkdir -p "$root/var/lib/dpkg/"{info,triggers,updates}
touch "$root/var/lib/dpkg/status"
# The folder has no other packages, and scripts may change nothing outside of it. Two packages with
# one file are refused.
with_dpkg() {
  PATH=$PATH:/usr/sbin:/sbin dpkg --root="$root" --log=/dev/null --force-not-root --force-depends \
    --force-script-chrootless "$@"
}
with_dpkg --install "$debs"/*.deb
version=$("$root/usr/bin/pokermath" --version)
version=${version#pokermath }
for package in libpokermath0 libpokermath-dev pokermath; do
  [[ $(with_dpkg --status $package) == *"Version: $version-"* ]] || fail "$package is another version"
  [[ -s $root/usr/share/doc/$package/copyright ]] || fail "$package has no copyright"
  grep -q CLI11 "$root/usr/share/doc/$package/licences.md" || fail "$package has no notices"
done
depends() { dpkg-deb -f "$debs/$1"_*.deb Depends; }
[[ $(depends libpokermath0) == *libodbc2* && $(depends libpokermath0) == *libpugixml* ]]
[[ $(depends libpokermath-dev) == "libpokermath0 (= $version-"*")" ]]
[[ $(depends pokermath) == *libodbc2* && $(depends pokermath) != *libpokermath* ]]

# As other projects use it.
for way in find_package find_package_c pkg_config; do
  WORK=$WORK/consumer PREFIX=$root/usr bash "$SOURCE/tests/consumer/consumer.sh" $way
done

(($("$root/usr/bin/pokermath" eval AhKhQhJhTh --json | grep -c '"category"') == 1))
page=$(MANWIDTH=100 man -l "$root/usr/share/man/man1/pokermath.1.gz" | col -b)
[[ $page == *"pokermath bulk submit"*"POKERMATH_DATA"* ]] || fail "this is no man page: $page"
bash --norc -c 'source "$1" && COMP_WORDS=(pokermath eq) COMP_CWORD=1 && _pokermath &&
  [[ ${COMPREPLY[*]} == equity ]]' bash "$root/usr/share/bash-completion/completions/pokermath"
[[ $(head -n 1 "$root/usr/share/zsh/vendor-completions/_pokermath") == "#compdef pokermath" ]]
[[ -s $root/usr/share/fish/vendor_completions.d/pokermath.fish ]]

if [[ $PYTHON == ON ]]; then
  python=$(PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$root/usr/lib/python3/dist-packages /usr/bin/python3 -c '
import importlib.metadata, pokermath as pm
print(pm.__file__, pm.__version__, importlib.metadata.version("pokermath"),
      pm.equity("AhKd", "7s7c").players[0].wins)')
  [[ $python == "$root/usr/"*" $version $version 761478" ]] || fail "Python says $python"
  [[ $(depends python3-pokermath) == *python3-numpy* ]]
fi

mapfile -t packages < <(with_dpkg --get-selections | cut -f 1)
((${#packages[@]} >= 3)) || fail "only ${packages[*]} are installed"
with_dpkg --purge "${packages[@]}"
left=$(cd "$root" && find . -path ./var/lib/dpkg -prune -o ! -type d -print)
[[ -z $left ]] || fail "these are left: $left"
[[ ! -e $root/usr ]] || fail "folders are left: $(find "$root/usr")"
