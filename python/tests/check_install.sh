#!/usr/bin/env bash
# check_install.sh PYTHON MODULE: the package as pip installs it into a new environment, with a module
# that is built already, answers from there alone.
set -euo pipefail
python=$1
export POKERMATH_MODULE=$2
here=$(dirname "$(readlink -f "$0")")
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
# What setuptools leaves behind stays out of the sources.
mkdir "$work/tree"
cp -r "$here/.." "$work/tree/python"
cp -r "$here/../../include" "$work/tree/include"
"$python" -m venv --system-site-packages "$work/venv"
"$work/venv/bin/pip" install -q --disable-pip-version-check --no-index --no-build-isolation \
  "$work/tree/python"
cd "$work"
unset PYTHONPATH
installed=$(venv/bin/python -c 'import pokermath as pm
print(pm.__file__, pm.__version__, pm.equity("AhKd", "7s7c").players[0].wins)')
version=$(sed -n 's/.*POKERMATH_VERSION_STRING "\(.*\)"/\1/p' tree/include/pokermath/version.h)
[[ $installed == "$work/venv/"*" $version 761478" ]] || { echo "answered: $installed"; exit 1; }
