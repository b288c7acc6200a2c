#!/usr/bin/env bash
# in_readme.sh README: the C++ example that it shows is readme.cpp.
set -euo pipefail
sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$1" | diff -u "$(dirname "$0")/readme.cpp" -
