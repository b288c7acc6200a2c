#!/usr/bin/env bash
# check_stubs.sh PYTHON: types of the package, the tests and the examples, and whether the stubs say
# what the module has. The package is the one on PYTHONPATH.
set -euo pipefail
python=$1
here=$(dirname "$(readlink -f "$0")")
cache=$(mktemp -d)
trap 'rm -r "$cache"' EXIT
export MYPYPATH=$PYTHONPATH MYPY_CACHE_DIR=$cache
"$python" -m mypy --strict -p pokermath
printf '[mypy]\nstrict = True\n[mypy-pandas.*]\nignore_missing_imports = True\n' >"$cache/mypy.ini"
"$python" -m mypy --config-file "$cache/mypy.ini" "$here"/*.py "$here"/../examples/*.py "$here"/../bench/*.py
# The classes have a metaclass of their own; those that nobody makes have the base's __init__.
cat >"$cache/allowed" <<'EOF'
pokermath\._core\.(Answer|Hand|Player|Range)
pokermath\._core\.(Answer|Player)\.__init__
EOF
"$python" -m mypy.stubtest pokermath._core --allowlist "$cache/allowed"
