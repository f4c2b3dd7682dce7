#!/bin/sh
# Builds VNCORE32.DLL and the tests with the cross compiler and runs them under Wine: on a screen of
# 24 bits, on a palette device of 8 bits, and as on Win32s. Installs what is missing (Debian).
#
#   test-windows.sh [win32|win64] [CTEST_ARGUMENT...]      at 32 bits, if nothing is said
#
# Exit status: 0 passed; 77 when the cross compiler or Wine cannot be had; anything else failed.
set -eu
cd "$(dirname "$0")/.."

preset=win32
case ${1:-} in win32 | win64) preset=$1 && shift ;; esac
machine=i686 wine_folder=/usr/lib/i386-linux-gnu/wine wine_package=wine32:i386
if [ $preset = win64 ]; then
  machine=x86_64 wine_folder=/usr/lib/x86_64-linux-gnu/wine wine_package=wine64
fi

# Ends the run, loudly, without calling it a failure.
unavailable() {
  echo "!!! THE WINDOWS TESTS DID NOT RUN: $1 !!!" >&2
  exit 77
}

complete() {
  command -v $machine-w64-mingw32-g++-posix >/dev/null && command -v wine >/dev/null &&
    command -v xvfb-run >/dev/null && command -v xauth >/dev/null &&
    command -v cmake >/dev/null && command -v ninja >/dev/null &&
    [ -e $wine_folder ] && [ -e /usr/src/googletest/googletest ]
}

install() {
  scripts/install_packages.sh cmake ninja-build g++-mingw-w64-$(echo $machine | tr _ -)-posix googletest \
    wine $wine_package xvfb xauth ||
    unavailable "the cross compiler and Wine could not be installed"
}

complete || install
complete || unavailable "the cross compiler or Wine is incomplete"

cmake --preset $preset -G Ninja
cmake --build --preset $preset
ctest --preset $preset -j "$(nproc)" "$@"
