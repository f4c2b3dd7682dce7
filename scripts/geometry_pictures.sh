#!/usr/bin/env bash
# Makes the pictures of docs/geometry.md with the tool.
#
#   scripts/geometry_pictures.sh [VNCORE]
set -eu

vncore=${1:-build-native/tools/vncore}
out=$(dirname "$0")/../docs/geometry
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$out"

"$vncore" chart "$folder/chart.png" --size 640x480
"$vncore" convert "$folder/chart.png" "$folder/small.png" --resample 160x120
# The same with a region, filled after the operation: the region goes where the picture goes.
"$vncore" convert "$folder/small.png" "$out/picture.png" --region ellipse:20,20,50,30 --fill red

make() {
  local name=$1
  shift
  "$vncore" convert "$folder/small.png" "$out/$name.png" --region ellipse:20,20,50,30 "$@" --fill red
}
make flip --flip
make mirror --mirror
make quarter --rotate 90
make turned --rotate 17.3
make kept --rotate 17.3 --keep-size

# A shear drops the region: the picture alone.
slant() {
  local name=$1
  shift
  "$vncore" convert "$out/picture.png" "$out/$name.png" "$@"
}
slant sheared --shear 20
slant sheared-left --shear -20
slant sheared-vertical --shear 20,vertical

# A corner, eight times as large, and the whole at a quarter.
"$vncore" convert "$folder/small.png" "$out/scaled-up.png" --crop 8,50,24,18 --scale 800%
"$vncore" convert "$folder/small.png" "$out/resampled-up.png" --crop 8,50,24,18 --resample 800%
"$vncore" convert "$folder/chart.png" "$out/scaled-down.png" --scale 25%
"$vncore" convert "$folder/chart.png" "$out/resampled-down.png" --resample 25%
