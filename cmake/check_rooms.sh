#!/usr/bin/env bash
# Prints every include that leads to a room behind, or out of the rooms; fails if there is one.
set -euo pipefail
cd "${1:-$(dirname "$(readlink -f "$0")")/..}"

# From the ground up: a room may include those before it, or those alone that stand behind its colon.
order="include: platform cards eval ranges kernels calculator omaha showdown pages jobs web python contracts \
support:platform cli"
no_rooms="bench build cmake docs tests"

code=0
before=
for word in $order; do
  room=${word%%:*}
  [[ $word == *:* ]] && allowed=${word#*:} || allowed=$before
  # A path with dots in it may lead anywhere.
  ! grep --exclude-dir=node_modules -rnE '^\s*#\s*include\s*[<"]([^>"]*/)?\.\.?/' "$room" || code=1
  for folder in */; do
    [[ " $room $allowed " == *" ${folder%/} "* ]] && continue
    ! grep --exclude-dir=node_modules -rnE "^\s*#\s*include\s*[<\"]$folder" "$room" || code=1
  done
  before+=" $room"
done
for folder in */; do
  [[ "$before $no_rooms " == *" ${folder%/} "* ]] || { echo "$folder is in no order"; code=1; }
done
exit $code
