#!/usr/bin/env bash
# Draws what docs/drawing.md shows. Into a folder of its own it also compares the figures, which are
# the same on every machine, with those of the document.
#
#   scripts/drawing_pictures.sh [VNCORE [OUT_FOLDER]]
#
# Exit status 77: there is no font here, and no text was drawn.
set -eu

vncore=$(realpath "${1:-build-native/tools/vncore}")
docs=$(realpath "$(dirname "$0")/../docs")/drawing
out=${2:-$docs}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$out"

"$vncore" chart "$folder/chart.png" --size 320x240
"$vncore" convert "$folder/chart.png" "$folder/paper.png" --fill white

# Every kind of figure: thin pens, wide ones, none; lines of all of them.
"$vncore" convert "$folder/paper.png" "$out/figures.png" \
  --pen '#204080' --brush '#ffe0a0' --draw rect:12,12,90,60 --draw ellipse:115,12,90,60 \
  --draw polygon:262,12,307,71,217,71 \
  --pen '#c03020,7' --draw rect:15,90,84,54 --draw ellipse:118,90,84,54 \
  --brush none --draw polygon:262,92,302,142,222,142 \
  --pen none --brush '#60a060' --draw rect:12,162,90,60 --draw ellipse:115,162,90,60 \
  --pen black --draw line:220,166,308,172 --pen black,2 --draw line:220,178,308,184 \
  --pen black,5 --draw line:222,196,264,222,306,196
if [ "$out" != "$docs" ]; then
  "$vncore" convert "$docs/figures.png" "$folder/shown.bmp"
  "$vncore" convert "$out/figures.png" "$folder/drawn.bmp"
  cmp "$folder/shown.bmp" "$folder/drawn.bmp"
fi

if ! "$vncore" convert "$folder/paper.png" "$folder/text.png" --draw text:0,0,12,a 2>"$folder/why"; then
  cat "$folder/why" >&2
  exit 77
fi
# One note on a picture of each kind of depth; the blue lies in a circle, which is the region.
note() {
  local depth=$1
  shift
  "$vncore" convert "$folder/chart.png" "$out/note-$depth.png" "$@" \
    --region ellipse:150,50,150,150 --pen none --brush '#2050d0' --draw rect:150,125,150,80 \
    --pen white --brush none --font sans,bold --draw "text:155,134,36,$depth bits" \
    --region rect:0,0,320,240 --pen red,5 --draw line:40,190,120,110 \
    --draw line:88,116,120,110,114,142 \
    --pen black --brush white --font serif,italic --draw 'text:12,204,20,Größe & Λόγος'
}
note 24
note 8 --depth 8 --palette fixed
note 1 --depth 1 --palette fixed
