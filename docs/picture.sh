#!/usr/bin/env bash
# Writes docs/equity.svg: a terminal with an example and what the program answers to it.
set -euo pipefail
export LC_ALL=C.UTF-8

root=$(dirname "$(readlink -f "$0")")/..
example="equity AhKd 7s7c"
# shellcheck disable=SC2086
answer=$("$root/run" $example)
mapfile -t lines <<<"$ pokermath $example"$'\n'"$answer"

columns=0
for line in "${lines[@]}"; do
  ((${#line} <= columns)) || columns=${#line}
done

# In pixels; a character of the usual fixed-width fonts is about 0.6 of its size wide.
size=14 line_height=20 margin=20 bar=36
width=$((columns * size * 61 / 100 + 2 * margin))
height=$((bar + ${#lines[@]} * line_height + margin))

{
  cat <<SVG
<svg xmlns="http://www.w3.org/2000/svg" width="$width" height="$height" role="img">
<title>pokermath $example</title>
<rect width="100%" height="100%" rx="8" fill="#1b1f27"/>
<circle cx="20" cy="18" r="6" fill="#e0605a"/>
<circle cx="40" cy="18" r="6" fill="#e0b34e"/>
<circle cx="60" cy="18" r="6" fill="#5fb85f"/>
<g font-family="DejaVu Sans Mono, Menlo, Consolas, monospace" font-size="$size" fill="#d5dae3">
SVG
  y=$((bar + size))
  fill='#8fd18f'
  for line in "${lines[@]}"; do
    escaped=$(sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g' <<<"$line")
    echo "<text x=\"$margin\" y=\"$y\" xml:space=\"preserve\"${fill:+ fill=\"$fill\"}>$escaped</text>"
    fill=
    y=$((y + line_height))
  done
  echo '</g>'
  echo '</svg>'
} >"$root/docs/equity.svg"
