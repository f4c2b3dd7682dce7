#!/usr/bin/env bash
# Paints a picture at every depth, ordered and diffused, at its size, halved and enlarged by half.
#
#   scripts/demo.sh VNCORE OUT_FOLDER [PICTURE]
set -eu

vncore=$1 out=$2 picture=${3:-}
mkdir -p "$out"
if [ -z "$picture" ]; then
  picture=$out/chart.png
  "$vncore" chart "$picture"
fi
name=$(basename "${picture%.*}")

seen=$("$vncore" info "$picture")
echo "$seen"
measures=$(sed -n 's/^size *\([0-9]*\) x \([0-9]*\) .*/\1 \2/p' <<<"$seen")
width=${measures% *} height=${measures#* }
# Cells of about 300 pixels.
longest=$((width > height ? width : height))
sheet_scale=$((longest > 300 ? 30000 / longest : 100))%
half() { echo $(($1 > 1 ? $1 / 2 : 1)); }
declare -A sizes=(
  [full]=${width}x$height
  [small]=$(half "$width")x$(half "$height")
  [large]=$((width * 3 / 2))x$((height * 3 / 2))
)

paint() {  # DEPTH SIZE_NAME FILE_NAME OPTION...
  local depth=$1 size=${sizes[$2]} file=$out/$3
  shift 3
  "$vncore" paint "$picture" "$file" --depth "$depth" --scale "$size" "$@"
  printf '%-44s %2s bits %s %s\n' "$file" "$depth" "$size" "$*"
}

for size in full small large; do
  for depth in 1 4 8; do
    paint $depth $size "$name-$depth-ordered-$size.png" --dither ordered
    paint $depth $size "$name-$depth-diffusion-$size.png" --dither floyd-steinberg
  done
  paint 24 $size "$name-24-$size.png"
done

sheet=$out/$name-dithering.png
"$(dirname "$0")/contact_sheet.sh" "$vncore" "$picture" "$sheet" "$sheet_scale"
echo "$sheet: all dithering methods and halftones"
