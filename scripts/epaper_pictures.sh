#!/usr/bin/env bash
# Makes the pictures of docs/epaper.md with the tool, of the benchmarks' made photograph or another.
#
#   scripts/epaper_pictures.sh [VNCORE [PHOTO]]
set -eu
cd "$(dirname "$0")/.."

vncore=${1:-build-native/tools/vncore}
out=docs/epaper
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$out"

photo=${2:-$folder/photo.ppm}
if [ $# -lt 2 ]; then
  ${CXX:-c++} -std=c++20 -O2 -I. -x c++ - bench/photograph.cpp -o "$folder/photograph" <<'EOF'
#include "bench/photograph.h"
int main(int, char** file) { return vn::bench::ThePhotograph().WritePpm(file[1]) ? 0 : 1; }
EOF
  "$folder/photograph" "$photo"
fi

# A small panel: what it is sent, and with --recolor what is seen on it.
panel() {
  local name=$1
  shift
  "$vncore" convert "$photo" "$out/$name" --fill-box 400x240 --crop 400x240 "$@"
}
panel photo.jpg
panel six-by-name.png --palette epaper-6 --recolor epaper-6-measured
panel six-by-looks.png --palette epaper-6-measured
panel six-sent.png --palette epaper-6-measured --recolor epaper-6
panel seven-by-name.png --palette epaper-7 --recolor epaper-7-measured
panel seven-by-looks.png --palette epaper-7-measured
panel red.png --palette epaper-red-measured
panel gray-16.png --gray --palette gray-16
panel black-white.png --gray --palette black-white
