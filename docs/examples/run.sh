#!/usr/bin/env bash
# run.sh PROGRAM EXPECTED: runs an example in a folder of its own and compares what it prints.
set -euo pipefail
folder=$(mktemp -d -p .)
trap 'rm -rf "$folder"' EXIT
(cd "$folder" && "$1") >"$folder.printed" 2>&1 || code=$?
mv "$folder.printed" "$folder/printed"
diff -u "$2" "$folder/printed"
exit "${code:-0}"
