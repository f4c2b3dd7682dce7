#!/usr/bin/env bash
# What the Windows zip file gives its user: an example is compiled from it with each import library, at 32
# and at 64 bits, and runs under Wine; all paint the same picture. The DLL's file tells its version.
#
#   test_windows_zip.sh ZIP WORK_FOLDER
set -eu

here=$(cd "$(dirname "$0")" && pwd)
zip=$(realpath "$1")
work=$2
rm -rf "$work/unpacked"
mkdir -p "$work/unpacked"
cd "$work/unpacked"
unzip -q "$zip"
mv ./*/* .
export VNCORE_WINE_HOME=$PWD/../wine

for machine in x86:i686 x64:x86_64; do
  tree=${machine%:*} triple=${machine#*:}-w64-mingw32
  for library in libvncore32.dll.a vncore32.lib libvncore32.a; do
    program=paint-$tree-${library//./-}.exe
    runtime='-lgdi32 -luser32'
    [ $library != libvncore32.a ] || runtime="-lstdc++ $runtime"
    # shellcheck disable=SC2086
    "$triple-gcc-posix" -std=gnu99 -static examples/paint.c "-I$tree/include" "$tree/lib/$library" $runtime \
      -o "$program"
    WINEPATH=$PWD/$tree/bin "$here/../cmake/wine-emulator.sh" "$program" picture.ppm
    if [ -e first.ppm ]; then cmp picture.ppm first.ppm; else mv picture.ppm first.ppm; fi
    echo "$program paints"
  done
  strings -el "$tree/bin/VNCORE32.DLL" | grep -A1 -x ProductVersion | tail -n 1
done
