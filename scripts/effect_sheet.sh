#!/usr/bin/env bash
# All effects over one picture on a screen of 8 bits, ordered, a strip of five states for each, on one
# labelled sheet.
#
#   scripts/effect_sheet.sh VNCORE PICTURE SHEET.png [WIDTHxHEIGHT]
set -eu

vncore=$1 picture=$2 sheet=$3 size=${4:-72x54}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

cells=()
while read -r number name; do
  "$vncore" effect "$picture" "$folder/$name" --effect "$number" --frames 7 --scale "$size" --dither ordered
  states=("$folder/$name"/frame-00[2-6].png)
  montage -tile x1 -geometry +1+1 -background gray "${states[@]}" "$folder/$name.png"
  cells+=(-label "$number  $name" "$folder/$name.png")
done < <("$vncore" effect --list)

montage -font DejaVu-Sans -pointsize 12 -tile 3x -geometry +6+4 "${cells[@]}" "$folder/sheet.png"
"$vncore" convert "$folder/sheet.png" "$sheet" --colors 128 --dither none
