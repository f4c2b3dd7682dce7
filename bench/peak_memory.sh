#!/usr/bin/env bash
# Paints a 20000 by 20000 24-bit picture (1.2 GB) from a temporary file onto 1024 by 768, reduces it
# to 8 bits into another temporary file, and prints the peak resident memory of the whole tool.
# Fails above 48 MiB. Then mirrors and turns the like of it in its file.
#
#   bench/peak_memory.sh [BUILD_FOLDER]      files go to $TMPDIR, about 2.5 GB
set -eu

build=${1:-build-native}
vncore=$build/tools/vncore
most=$((48 * 1024))

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$vncore" chart "$folder/chart.png" --size 20000x20000

failed=0
# Runs the tool with the arguments behind the first, which says what it does.
check() {
  local what=$1 peak
  shift
  peak=$("$build/bench/vncore_peak_memory" "$vncore" "$@")
  echo "20000x20000 from a temporary file $what: peak $peak KiB of $most"
  [ "$peak" -lt "$most" ] || failed=1
}

for how in --ordered --diffusion; do
  for bits in 8 24; do
    check "to 1024x768 at $bits bits, $how" paint "$folder/chart.png" "$folder/out.png" \
      --low-memory --storage disk --size 1024x768 --device-bits $bits $how
  done
done
# Low memory has the tool claim a largest block of 4 MiB: the result of 400 MB is a temporary file.
for palette in fixed optimized; do
  check "to 8 bits, $palette palette" convert "$folder/chart.png" "$folder/out.png" \
    --low-memory --storage disk --depth 8 --palette $palette
done
# Mirrors and turns, which also have to keep to their times.
"$build/bench/vncore_large_turns" || failed=1
check "resampled to 30 %" convert "$folder/chart.png" "$folder/out.png" \
  --low-memory --storage disk --resample 30%
# Rows of a shear hold at most 32768 bytes, which 20000 pixels of 24 bits exceed.
check "turned gray and sheared by 20 degrees" convert "$folder/chart.png" "$folder/out.png" \
  --low-memory --storage disk --gray --shear 20
exit $failed
