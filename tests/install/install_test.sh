#!/usr/bin/env bash
# The library as a new user meets it. Installs the build into a folder, moves that folder, and builds
# programs in C against it: with the CMake package, with pkg-config, each with the shared and the
# static form, and the examples. Then runs them.
#
#   install_test.sh BUILD WORK_FOLDER
#
# Environment: CMAKE, GENERATOR, CC, SYSTEM (as CMAKE_SYSTEM_NAME), and for Windows RUN, which runs
# its programs.
set -eu

here=$(cd "$(dirname "$0")" && pwd)
examples=$here/../../examples
build=$1 work=$2
rm -rf "$work"
mkdir -p "$work"
cd "$work"

fail() { echo "install: $*" >&2; exit 1; }
quiet() { "$@" >log 2>&1 || { cat log >&2; fail "$*"; }; }

quiet "$CMAKE" --install "$build" --prefix "$work/first"
mv first moved
prefix=$work/moved
if grep -rlIF -e "$work/first" -e "$build" -e "$(cd "$here/../.." && pwd)" moved; then
  fail 'these name a folder of the build'
fi

configure=(-G "$GENERATOR" -DCMAKE_C_COMPILER="$CC" -DCMAKE_PREFIX_PATH="$prefix")
if [ "$SYSTEM" = Windows ]; then
  # Otherwise DLLs of the compiler's own would have to lie beside the programs.
  configure+=(-DCMAKE_SYSTEM_NAME=Windows -DCMAKE_EXE_LINKER_FLAGS=-static
    -DCMAKE_SHARED_LINKER_FLAGS=-static)
fi
quiet "$CMAKE" -S "$here/consumer" -B package "${configure[@]}"
quiet "$CMAKE" --build package
quiet "$CMAKE" -S "$examples" -B examples "${configure[@]}"
quiet "$CMAKE" --build examples

export PKG_CONFIG_LIBDIR=$(dirname "$(find moved -name vncore.pc)") PKG_CONFIG_PATH=
for source in "$here/consumer/consumer.c" "$examples/paint.c"; do
  name=$(basename "$source" .c)
  quiet "$CC" -std=gnu99 "$source" -o "$name.exe" $(pkg-config --cflags --libs vncore)
  quiet "$CC" -std=gnu99 "$source" -o "$name-static.exe" -static \
    $(pkg-config --static --cflags --libs vncore)
done

programs=(package/consumer package/consumer_static 'examples/example_paint one.ppm'
  ./consumer.exe ./consumer-static.exe './paint.exe two.ppm' './paint-static.exe three.ppm')
if [ "$SYSTEM" = Windows ]; then
  programs+=(examples/example_by_ordinal 'package/load_client package\libclient.dll
    package\libclient_entry.dll package\libclient_entry_static.dll')
  for program in "${programs[@]}"; do
    set -- $program
    printf '@%s\r\n@if errorlevel 1 exit 1\r\n' "${1//\//\\} ${*:2}"
  done >run.bat
  WINEPATH=$prefix/bin $RUN cmd /c run.bat || fail 'a program fails'
else
  export LD_LIBRARY_PATH=$(dirname "$(find moved -name libvncore.so)")
  for program in "${programs[@]}"; do
    $program || fail "$program fails"
  done
fi
cmp one.ppm two.ppm
cmp one.ppm three.ppm
