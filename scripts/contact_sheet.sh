#!/usr/bin/env bash
# One picture through all nine dithering methods to 16 colours of its own, and through both
# halftones, on one labelled sheet.
#
#   scripts/contact_sheet.sh VNCORE PICTURE SHEET.png [SCALE]
set -eu

vncore=$1 picture=$2 sheet=$3 scale=${4:-100%}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

cells=()
cell() {  # LABEL OPTION...
  local file=$folder/${#cells[@]}.png
  "$vncore" convert "$picture" "$file" --scale "$scale" "${@:2}"
  cells+=(-label "$1" "$file")
}

cell 'the picture'
for method in none floyd-steinberg stucki burkes sierra stevenson-arce jarvis ordered clustered; do
  cell "$method, 16 colours" --depth 4 --palette optimized --dither "$method"
done
cell 'halftone, ordered' --halftone ordered
cell 'halftone, clustered, 30 degrees' --halftone clustered,30

montage -font DejaVu-Sans -pointsize 14 -tile 4x -geometry +6+6 "${cells[@]}" "$sheet"
