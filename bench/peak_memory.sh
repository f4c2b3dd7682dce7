#!/usr/bin/env bash
# Paints a 20000 by 20000 24-bit picture (1.2 GB) from a temporary file onto 1024 by 768 and prints
# the peak resident memory of the whole tool. Fails above 48 MiB.
#
#   bench/peak_memory.sh [BUILD_FOLDER]      files go to $TMPDIR, about 1.5 GB
set -eu

build=${1:-build-native}
vncore=$build/tools/vncore
most=$((48 * 1024))

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$vncore" chart "$folder/chart.png" --size 20000x20000

failed=0
for how in --ordered --diffusion; do
  for bits in 8 24; do
    peak=$("$build/bench/vncore_peak_memory" "$vncore" paint "$folder/chart.png" \
      "$folder/out.png" --low-memory --storage disk --size 1024x768 --device-bits $bits $how)
    echo "20000x20000 from a temporary file to 1024x768 at $bits bits, $how: peak $peak KiB of $most"
    [ "$peak" -lt "$most" ] || failed=1
  done
done
exit $failed
