#!/usr/bin/env bash
# Packs the Windows library into a zip file: for 32 and for 64 bits the DLL with its version resource, the
# static form, import libraries for mingw-w64 and for Microsoft's linker, the headers, the CMake package;
# and the examples.
#
#   windows_zip.sh WIN32_BUILD WIN64_BUILD FOLDER      the zip file goes to FOLDER, alone of its kind
set -eu

win32=$(cd "$1" && pwd) win64=$(cd "$2" && pwd) folder=$(mkdir -p "$3" && cd "$3" && pwd)
cd "$(dirname "$0")/.."
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$win32/CMakeCache.txt")
name=vncore-$version-windows
rm -rf "${folder:?}/$name" "$folder"/vncore-*-windows.zip
mkdir "$folder/$name"

# BUILD TREE MACHINE TRIPLE: an installed tree, and what Microsoft's linker reads
add_tree() {
  local tree=$folder/$name/$2
  cmake --install "$1" --prefix "$tree" >/dev/null
  "$4-strip" --strip-unneeded "$tree/bin/VNCORE32.DLL"
  llvm-dlltool -m "$3" --kill-at -d "$1/vncore32.def" -D VNCORE32.DLL -l "$tree/lib/vncore32.lib"
}
add_tree "$win32" x86 i386 i686-w64-mingw32
add_tree "$win64" x64 i386:x86-64 x86_64-w64-mingw32
mkdir "$folder/$name/examples"
cp examples/paint.c examples/exchange.c examples/by_ordinal.c examples/CMakeLists.txt "$folder/$name/examples"
cp LICENSE CHANGELOG.md "$folder/$name"
cp docs/using.md docs/windows.md "$folder/$name"
cd "$folder"
zip -qr9 "$name.zip" "$name"
rm -rf "$name"
ls -l "$name.zip"
